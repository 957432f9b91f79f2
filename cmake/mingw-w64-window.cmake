# Builds for 64-bit Windows as mingw-w64.cmake does, and the window, too: with the toolkit that
# packaging/windows/build-toolkit made, in the folder that VANTOR_WINDOWS_TOOLKIT in the environment names or in the build folder.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)

if(DEFINED ENV{VANTOR_WINDOWS_TOOLKIT})
  set(VANTOR_WINDOWS_TOOLKIT $ENV{VANTOR_WINDOWS_TOOLKIT}/installed CACHE PATH "The toolkit for Windows, in full" FORCE)
else() # as it was named before, if it was
  get_filename_component(toolkit ${CMAKE_CURRENT_LIST_DIR}/../build/windows-toolkit ABSOLUTE)
  set(VANTOR_WINDOWS_TOOLKIT ${toolkit}/installed CACHE PATH "The toolkit for Windows, in full")
endif()
list(APPEND CMAKE_FIND_ROOT_PATH ${VANTOR_WINDOWS_TOOLKIT})
list(APPEND CMAKE_PREFIX_PATH ${VANTOR_WINDOWS_TOOLKIT})
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VANTOR_WINDOWS_TOOLKIT)

# What takes part in the build, such as moc, runs here.
set(QT_HOST_PATH /usr)
file(GLOB host_packages /usr/lib/*/cmake/Qt6HostInfo)
get_filename_component(QT_HOST_PATH_CMAKE_DIR "${host_packages}" DIRECTORY)
