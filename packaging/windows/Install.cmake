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
install(FILES ${PROJECT_SOURCE_DIR}/packaging/windows/qt.conf DESTINATION .) # read by the toolkit

# vantor_install_text(SOURCE FOLDER NAME): a text for readers, with the ends of lines that Windows has; @…@ is filled in.
function(vantor_install_text source folder name)
  configure_file(${source} ${CMAKE_CURRENT_BINARY_DIR}/texts/${name} @ONLY NEWLINE_STYLE WIN32)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/texts/${name} DESTINATION ${folder})
endfunction()

# What others wrote of it, and under which terms: beside our own text the licences that it names. The version of the
# toolkit is that of Debian's package whose source it was built from.
file(STRINGS ${VANTOR_WINDOWS_TOOLKIT}/../complete toolkit_version LIMIT_COUNT 1)
vantor_install_text(${PROJECT_SOURCE_DIR}/packaging/share/doc/vantor/copyright licences copyright.txt)
vantor_install_text(${CMAKE_CURRENT_LIST_DIR}/libraries.txt.in licences libraries.txt)
file(GLOB toolkit_licences ${VANTOR_WINDOWS_TOOLKIT}/licences/*.txt)
if(NOT toolkit_licences)
  message(FATAL_ERROR "There are no licences with the toolkit in ${VANTOR_WINDOWS_TOOLKIT}")
endif()
foreach(licence IN LISTS toolkit_licences)
  get_filename_component(name ${licence} NAME)
  vantor_install_text(${licence} licences ${name})
endforeach()
vantor_install_text(/usr/share/doc/mingw-w64-x86-64-dev/copyright licences mingw-w64.txt)
vantor_install_text(/usr/share/doc/gcc-mingw-w64-x86-64-posix/copyright licences gcc.txt)

if(NOT VANTOR_USER_LIBRARY)
  vantor_install_text(${CMAKE_CURRENT_LIST_DIR}/ReadMe.txt.in . ReadMe.txt)
endif()
