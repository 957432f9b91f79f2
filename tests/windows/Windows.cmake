# How the core's tests run on Windows, or under wine: each suite as one test, for a program starts slowly there.
include(${CMAKE_CURRENT_LIST_DIR}/LeftOut.cmake)

target_include_directories(vantor_test_support PUBLIC ${CMAKE_CURRENT_LIST_DIR})
target_compile_options(vantor_test_support PUBLIC "SHELL:-include ${CMAKE_CURRENT_LIST_DIR}/Posix.h")

set(wine_environment "")
if(VANTOR_WINE)
  # A Windows of the build's own. It is made first, and once.
  set(wine_environment "WINEPREFIX=${PROJECT_BINARY_DIR}/wine" WINEDEBUG=-all DISPLAY= WAYLAND_DISPLAY=)
  add_test(NAME Wine.Starts COMMAND ${VANTOR_WINE} wineboot --init)
  set_tests_properties(Wine.Starts PROPERTIES FIXTURES_SETUP wine TIMEOUT 300 ENVIRONMENT "${wine_environment}")
endif()

function(vantor_add_suite target)
  list(JOIN ${target}_left_out ":" left_out)
  add_test(NAME ${target} COMMAND ${target} --gtest_brief=1 --gtest_filter=-${left_out})
  set_tests_properties(${target} PROPERTIES FIXTURES_REQUIRED wine TIMEOUT 600 ENVIRONMENT "${wine_environment}" ${ARGN})
endfunction()

# What users run, on the sample files.
add_test(NAME CommandLine.WorksOnTheSample
  COMMAND ${CMAKE_COMMAND} -D "cli=${VANTOR_WINE};$<TARGET_FILE:vantor-cli>" -D examples=${PROJECT_SOURCE_DIR}/examples
    -P ${CMAKE_CURRENT_LIST_DIR}/CommandLineOnTheSample.cmake)
set_tests_properties(CommandLine.WorksOnTheSample PROPERTIES
  FIXTURES_REQUIRED wine TIMEOUT 120
  ENVIRONMENT "${wine_environment};LC_ALL=C.UTF-8") # wine takes names and arguments apart by it
