# Draws a picture at the sizes that Windows asks for at scales from 100 to 300 %:
# cmake -D rsvg_convert=PROGRAM -D icotool=PROGRAM -D svg=FILE -D ico=FILE -P MakeIcon.cmake
cmake_minimum_required(VERSION 3.25)
set(pictures "")
foreach(size IN ITEMS 16 20 24 32 40 48 64 96)
  list(APPEND pictures ${ico}.${size}.png)
  execute_process(COMMAND ${rsvg_convert} --width=${size} --height=${size} --output=${ico}.${size}.png ${svg}
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
execute_process(COMMAND ${rsvg_convert} --width=256 --height=256 --output=${ico}.256.png ${svg} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${icotool} --create --output=${ico} ${pictures} --raw=${ico}.256.png COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE ${pictures} ${ico}.256.png)
