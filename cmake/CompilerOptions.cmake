# One interface target that every room links: the language, the warnings and the sanitizers.
add_library(vantor_options INTERFACE)
target_compile_features(vantor_options INTERFACE cxx_std_20)
target_include_directories(vantor_options INTERFACE ${PROJECT_SOURCE_DIR})
set(CMAKE_CXX_EXTENSIONS OFF)

if(MSVC)
  target_compile_options(vantor_options INTERFACE /W4 /utf-8 /permissive- $<$<BOOL:${VANTOR_WERROR}>:/WX>)
else()
  target_compile_options(vantor_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-align -Wimplicit-fallthrough
    -Wno-missing-field-initializers # a record's fields have their defaults; initializers name those that differ
    $<$<BOOL:${VANTOR_WERROR}>:-Werror>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(vantor_options INTERFACE -Wno-restrict) # GCC 12 sees it in its own operator+ of strings
  endif()
endif()

if(VANTOR_SANITIZE)
  target_compile_options(vantor_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vantor_options INTERFACE -fsanitize=address,undefined)
endif()

# Lets the fuzzer see which branches an input takes.
if(VANTOR_FUZZ)
  target_compile_options(vantor_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(VANTOR_COVERAGE)
  # Two test programs may end at once, and both add their counts to the same files.
  target_compile_options(vantor_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(vantor_options INTERFACE --coverage)
endif()
