# Shows and converts the sample recipe: cmake -D cli=PROGRAM… -D examples=FOLDER -P CommandLineOnTheSample.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE sample)
file(COPY ${examples}/bakery-oven.rcp ${examples}/RecipeFile.Dat DESTINATION sample)

function(run)
  execute_process(COMMAND ${cli} ${ARGN} WORKING_DIRECTORY sample OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
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
