# vantor_borrow_headers(TARGET FOLDER…): an imported library of this machine's header folders named, found as
# #include <FOLDER/…>. They are linked into a folder of their own: with all of /usr/include, this machine's C library
# would come along.
function(vantor_borrow_headers target)
  set(borrowed ${PROJECT_BINARY_DIR}/borrowed)
  file(MAKE_DIRECTORY ${borrowed})
  foreach(folder IN LISTS ARGN)
    if(NOT IS_DIRECTORY /usr/include/${folder})
      message(FATAL_ERROR "There is no /usr/include/${folder}")
    endif()
    file(CREATE_LINK /usr/include/${folder} ${borrowed}/${folder} SYMBOLIC)
  endforeach()
  if(NOT TARGET ${target})
    add_library(${target} INTERFACE IMPORTED)
    target_include_directories(${target} INTERFACE ${borrowed})
  endif()
endfunction()
