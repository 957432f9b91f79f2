# What a program for Windows carries besides its code: its icons, version and manifest. Qt's drawing of SVG is a plugin of
# another module, so the icons are drawn while the program is built.
enable_language(RC)
find_program(VANTOR_RSVG_CONVERT rsvg-convert)
find_program(VANTOR_ICOTOOL icotool)

set(vantor_file_type_icons "")
foreach(type IN ITEMS rcp erp frp)
  list(APPEND vantor_file_type_icons
    ${PROJECT_SOURCE_DIR}/packaging/share/icons/hicolor/scalable/mimetypes/org.vantor.Vantor-${type}.svg)
endforeach()

# vantor_draw_icon(SVG FILE): FILE is made, an .ico of several sizes whatever its name.
function(vantor_draw_icon svg file)
  foreach(tool IN ITEMS VANTOR_RSVG_CONVERT VANTOR_ICOTOOL)
    if(NOT ${tool})
      message(FATAL_ERROR "The icons are drawn by rsvg-convert and icotool, in Debian's librsvg2-bin and icoutils")
    endif()
  endforeach()
  add_custom_command(OUTPUT ${file}
    COMMAND ${CMAKE_COMMAND} -D rsvg_convert=${VANTOR_RSVG_CONVERT} -D icotool=${VANTOR_ICOTOOL} -D svg=${svg} -D ico=${file}
      -P ${PROJECT_SOURCE_DIR}/packaging/windows/MakeIcon.cmake
    DEPENDS ${svg} ${PROJECT_SOURCE_DIR}/packaging/windows/MakeIcon.cmake VERBATIM)
endfunction()

# vantor_add_drawn_icons(TARGET QRC): the resources of QRC with each picture drawn, under the name that it has there.
function(vantor_add_drawn_icons target qrc)
  get_filename_component(folder ${qrc} DIRECTORY)
  configure_file(${qrc} ${CMAKE_CURRENT_BINARY_DIR}/drawn/vantor.qrc COPYONLY)
  file(STRINGS ${qrc} entries REGEX "<file ")
  foreach(entry IN LISTS entries)
    string(REGEX REPLACE ".*>(.*)</file>.*" "\\1" name "${entry}")
    vantor_draw_icon(${folder}/${name} ${CMAKE_CURRENT_BINARY_DIR}/drawn/${name})
    list(APPEND drawn ${CMAKE_CURRENT_BINARY_DIR}/drawn/${name})
  endforeach()
  target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/drawn/vantor.qrc)
  set_property(TARGET ${target} APPEND PROPERTY AUTOGEN_TARGET_DEPENDS ${drawn})
  # This machine's rcc would pack them in a way that the toolkit for Windows was built without.
  set_property(TARGET ${target} APPEND PROPERTY AUTORCC_OPTIONS --no-zstd)
endfunction()

# vantor_add_resources(TARGET DESCRIPTION SVG…): the program's version and manifest, and its icons, numbered from 1.
function(vantor_add_resources target description)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/resources)
  set(number 0)
  set(icons "")
  foreach(svg IN LISTS ARGN)
    math(EXPR number "${number} + 1")
    get_filename_component(name ${svg} NAME_WLE)
    vantor_draw_icon(${svg} ${folder}/${name}.ico)
    list(APPEND files ${folder}/${name}.ico)
    string(APPEND icons "${number} ICON \"${name}.ico\"\n")
  endforeach()
  set(program ${target})
  set(manifest ${PROJECT_SOURCE_DIR}/packaging/windows/vantor.manifest)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/vantor.rc.in ${folder}/${target}.rc @ONLY)
  set_source_files_properties(${folder}/${target}.rc PROPERTIES OBJECT_DEPENDS "${files};${manifest}")
  target_sources(${target} PRIVATE ${folder}/${target}.rc)
endfunction()
