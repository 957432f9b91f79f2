# The Debian package. Which libraries it depends on is found out from the programs.
if(NOT VANTOR_CMARK_GFM)
  message(FATAL_ERROR "The Debian package has the guide as pages for a browser: it needs cmark-gfm")
endif()
install(FILES debian/doc-base DESTINATION ${CMAKE_INSTALL_DATADIR}/doc-base RENAME vantor)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "hicolor-icon-theme, libqt6svg6") # the icons are drawn by a plugin
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "editor for the recipe files of operator panels")
set(CPACK_PACKAGE_DESCRIPTION [[
Vantor lays a named data format over the 16-bit words of a panel's recipe
memory, shows them as a table and lets you change values in the table. It
saves exactly the words that the table shows: all others stay as they are.
.
The package holds the window program vantor and the command line
vantor-cli, which shows, changes, converts and merges recipe files without
a display, and makes sheets of them with vantor-sheet.]])
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/FinishTree.cmake)
