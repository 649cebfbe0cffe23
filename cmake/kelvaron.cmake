# One way to build every part: the same warnings, sanitizers and include root.
add_library(kelvaron_options INTERFACE)
target_include_directories(kelvaron_options INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR}/generated)
target_compile_options(kelvaron_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-qual -Wformat=2)
if(KELVARON_STRICT)
  target_compile_options(kelvaron_options INTERFACE -Werror)
endif()
# g++ 12 warns of overlapping copies in std::string's own operator+ (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(kelvaron_options INTERFACE -Wno-restrict)
endif()
if(KELVARON_SANITIZE)
  target_compile_options(kelvaron_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kelvaron_options INTERFACE -fsanitize=address,undefined)
  # Instrumented code makes g++ 12 see paths that don't exist, as its manual tells.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(kelvaron_options INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
if(KELVARON_FUZZ)
  target_compile_options(kelvaron_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# kelvaron_library(<name> SOURCES <files...> LINKS <targets...>)
function(kelvaron_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC kelvaron_options ${ARG_LINKS})
endfunction()

# kelvaron_program(<name> SOURCES <files...> LINKS <targets...>)
function(kelvaron_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE kelvaron_options ${ARG_LINKS})
endfunction()
