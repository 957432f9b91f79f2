# The programs for Windows lie in one folder with the toolkit's libraries, as those are there looked for, and with its plugins.
# The toolkit may be exchanged for another build of it: its libraries are files of their own.
if(NOT CMAKE_INSTALL_BINDIR STREQUAL .)
  return() # tests alone are built, and nothing is installed
endif()

install(FILES
    $<TARGET_FILE:Qt6::Core>
    $<TARGET_FILE:Qt6::Gui>
    $<TARGET_FILE:Qt6::Widgets>
    $<TARGET_FILE:Qt6::PrintSupport>
  DESTINATION .)
install(FILES $<TARGET_FILE:Qt6::QWindowsIntegrationPlugin> DESTINATION platforms)
install(FILES $<TARGET_FILE:Qt6::QWindowsVistaStylePlugin> DESTINATION styles)
install(FILES $<TARGET_FILE:Qt6::QICOPlugin> DESTINATION imageformats)

# What others wrote of it, and under which terms: beside our own text the licences that it names.
install(FILES ${PROJECT_SOURCE_DIR}/packaging/share/doc/vantor/copyright DESTINATION licences RENAME copyright.txt)
install(DIRECTORY ${VANTOR_WINDOWS_TOOLKIT}/licences DESTINATION .)
