# How the tests run on Windows, or under wine: each suite, or share of one, as one test, for a program starts slowly there.
include(${CMAKE_CURRENT_LIST_DIR}/LeftOut.cmake)

target_include_directories(vantor_test_support PUBLIC ${CMAKE_CURRENT_LIST_DIR})
target_compile_options(vantor_test_support PUBLIC "SHELL:-include ${CMAKE_CURRENT_LIST_DIR}/Posix.h")
target_sources(vantor_test_support PRIVATE ${CMAKE_CURRENT_LIST_DIR}/WindowsRun.cpp)
target_compile_definitions(vantor_test_support PRIVATE VANTOR_DRIVES="${PROJECT_BINARY_DIR}/wine/dosdevices")

set(wine_environment "")
if(VANTOR_WINE)
  # A Windows of the build's own. It is made first, and once.
  set(wine_environment "WINEPREFIX=${PROJECT_BINARY_DIR}/wine" WINEDEBUG=-all DISPLAY= WAYLAND_DISPLAY=)
  add_test(NAME Wine.Starts COMMAND ${VANTOR_WINE} wineboot --init)
  set_tests_properties(Wine.Starts PROPERTIES FIXTURES_SETUP wine TIMEOUT 300 ENVIRONMENT "${wine_environment}")
endif()

# Beside the suites: the toolkit's libraries, and where its plugins are. The platform without a display has no fonts of the
# system's; it looks for some in a folder below its libraries. wine hands no variable of the toolkit's on.
if(VANTOR_GUI)
  set(platform_folder ${PROJECT_BINARY_DIR}/platform)
  file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY} ${platform_folder})
  foreach(library IN ITEMS Core Gui Widgets PrintSupport Test)
    file(CREATE_LINK ${VANTOR_WINDOWS_TOOLKIT}/bin/Qt6${library}.dll ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Qt6${library}.dll SYMBOLIC)
  endforeach()
  file(CREATE_LINK /usr/share/fonts/truetype/dejavu ${platform_folder}/fonts SYMBOLIC)
  file(WRITE ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/qt.conf
    "[Paths]\nPlugins = Z:${VANTOR_WINDOWS_TOOLKIT}/plugins\nLibraries = Z:${platform_folder}\n")
endif()

function(vantor_add_suite target)
  cmake_parse_arguments(PARSE_ARGV 1 suite WINDOW SHARDS ENVIRONMENT)
  if(suite_WINDOW)
    target_precompile_headers(${target} REUSE_FROM vantor_gui_test_support)
  elseif(VANTOR_GUI)
    target_precompile_headers(${target} REUSE_FROM vantor_test_support)
  endif()
  list(JOIN ${target}_left_out ":" left_out)
  set(command ${target} --gtest_brief=1 --gtest_filter=-${left_out})
  set(environment ${wine_environment} ${suite_ENVIRONMENT})
  if(NOT suite_SHARDS)
    add_test(NAME ${target} COMMAND ${command})
    set_tests_properties(${target} PROPERTIES FIXTURES_REQUIRED wine TIMEOUT 600 ENVIRONMENT "${environment}")
    return()
  endif()
  foreach(shard RANGE 1 ${suite_SHARDS})
    math(EXPR index "${shard} - 1")
    add_test(NAME ${target}.${shard} COMMAND ${command})
    set_tests_properties(${target}.${shard} PROPERTIES FIXTURES_REQUIRED wine TIMEOUT 600
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${suite_SHARDS};GTEST_SHARD_INDEX=${index};${environment}")
  endforeach()
endfunction()

# vantor_add_scaled_suite(TARGET FILTER SCALE): the tests that match, on a screen of that scale. The command interpreter
# there sets the variable, for wine does not hand it on.
function(vantor_add_scaled_suite target filter scale)
  string(REGEX REPLACE "[.*]" "" name ${filter})
  add_test(NAME ${name}AtScale${scale} COMMAND ${VANTOR_WINE} cmd /c
    "set QT_SCALE_FACTOR=${scale}&& ${target}.exe --gtest_brief=1 --gtest_filter=${filter}")
  set_tests_properties(${name}AtScale${scale} PROPERTIES FIXTURES_REQUIRED wine TIMEOUT 300
    WORKING_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY} ENVIRONMENT "${wine_environment}")
endfunction()

# What users run, on the sample files.
add_test(NAME CommandLine.WorksOnTheSample
  COMMAND ${CMAKE_COMMAND} -D "cli=${VANTOR_WINE};$<TARGET_FILE:vantor-cli>" -D examples=${PROJECT_SOURCE_DIR}/examples
    -P ${CMAKE_CURRENT_LIST_DIR}/CommandLineOnTheSample.cmake)
set_tests_properties(CommandLine.WorksOnTheSample PROPERTIES
  FIXTURES_REQUIRED wine TIMEOUT 120
  ENVIRONMENT "${wine_environment};LC_ALL=C.UTF-8") # wine takes names and arguments apart by it
