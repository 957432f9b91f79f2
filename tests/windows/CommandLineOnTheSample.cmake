# Shows and converts the sample recipe: cmake -D cli=PROGRAM… -D examples=FOLDER -P CommandLineOnTheSample.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE sample)
file(COPY ${examples}/bakery-oven.rcp ${examples}/RecipeFile.Dat DESTINATION sample)

# read_written(FILE VARIABLE): what was written to it, whose lines are to end as on other systems. cmake leaves the carriage
# returns before ends of lines out of all texts that it reads, so that they show by the length alone.
function(read_written file variable)
  file(READ ${file} text)
  string(LENGTH "${text}" length)
  file(SIZE ${file} size)
  if(NOT length EQUAL size)
    message(FATAL_ERROR "Lines do not end as on other systems:\n${text}")
  endif()
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

function(run)
  execute_process(COMMAND ${cli} ${ARGN} WORKING_DIRECTORY sample OUTPUT_FILE output.txt COMMAND_ERROR_IS_FATAL ANY)
  read_written(sample/output.txt output)
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(show bakery-oven.rcp --library RecipeFile.Dat)
set(rows "${output}")
if(NOT rows MATCHES "1  RW100    101  Farmhouse loaf  FL0800       235.0       240.0")
  message(FATAL_ERROR "The first row is not the sample's:\n${rows}")
endif()

foreach(type IN ITEMS erp frp)
  run(convert bakery-oven.rcp converted.${type} --library RecipeFile.Dat)
  run(show converted.${type} --library RecipeFile.Dat)
  if(NOT output STREQUAL rows)
    message(FATAL_ERROR "converted.${type} shows other rows:\n${output}")
  endif()
endforeach()

run(convert bakery-oven.rcp converted.csv --library RecipeFile.Dat)
file(READ sample/converted.csv mark LIMIT 2 HEX)
if(NOT mark STREQUAL fffe)
  message(FATAL_ERROR "The table begins with ${mark}, not with the mark of UTF-16")
endif()

# Names that no ANSI code page holds all of.
set(name "烤炉 été 🍞.rcp")
run(convert bakery-oven.rcp ${name} --library RecipeFile.Dat)
if(NOT EXISTS "${CMAKE_CURRENT_BINARY_DIR}/sample/${name}")
  message(FATAL_ERROR "There is no file ${name}")
endif()
run(show ${name} --library RecipeFile.Dat)
if(NOT output STREQUAL rows)
  message(FATAL_ERROR "${name} shows other rows:\n${output}")
endif()

# An option of Windows' own kind would begin so, too.
run(show ${CMAKE_CURRENT_BINARY_DIR}/sample/bakery-oven.rcp --library RecipeFile.Dat)
if(NOT output STREQUAL rows)
  message(FATAL_ERROR "By its full name the sample shows other rows:\n${output}")
endif()

execute_process(COMMAND ${cli} show missing.rcp WORKING_DIRECTORY sample ERROR_FILE error.txt)
read_written(sample/error.txt message)
if(NOT message STREQUAL "Open error! missing.rcp doesn't exit!\n")
  message(FATAL_ERROR "A message is not as on other systems: ${message}")
endif()

# On a console of another code page, which a terminal of the machine's is the screen of. What the command interpreter there
# does not know in that code page comes as an argument.
list(GET cli 0 wine)
list(GET cli 1 program)
string(REPLACE "/" "\\" program "Z:${program}")
file(WRITE sample/console.bat "@chcp 437\r\n@\"${program}\" show bakery-oven.rcp --library RecipeFile.Dat\r\n@\"${program}\" show %1\r\n")
execute_process(COMMAND script --quiet --command "stty cols 250; '${wine}' cmd /c console.bat '烤炉 été.rcp'" /dev/null
  WORKING_DIRECTORY sample INPUT_FILE /dev/null OUTPUT_VARIABLE screen)
foreach(text IN ITEMS "Active code page: 437" "Zone °C(4)" "Farmhouse loaf" "Open error! 烤炉 été.rcp doesn't exit!")
  string(FIND "${screen}" "${text}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "A console of code page 437 does not show ${text}:\n${screen}")
  endif()
endforeach()
