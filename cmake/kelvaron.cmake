# One way to build every part: the same warnings, sanitizers and include root. What foreign programs
# load, and what stands in for these, is plain: without sanitizers.
add_library(kelvaron_plain_options INTERFACE)
target_include_directories(kelvaron_plain_options INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR}/generated)
target_compile_options(kelvaron_plain_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-qual -Wformat=2)
if(KELVARON_STRICT)
  target_compile_options(kelvaron_plain_options INTERFACE -Werror)
endif()
if(WIN32)
  # Windows 10, without the macros that hide the standard library's names.
  target_compile_definitions(kelvaron_plain_options INTERFACE
    _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN UNICODE _UNICODE)
endif()
# g++ 12 warns of overlapping copies in std::string's own operator+ (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(kelvaron_plain_options INTERFACE -Wno-restrict)
endif()
add_library(kelvaron_options INTERFACE)
target_link_libraries(kelvaron_options INTERFACE kelvaron_plain_options)
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

# kelvaron_sources(<variable> [<subfolder>...]): all sources of this folder and of the subfolders but
# main.cpp, which is a program's.
function(kelvaron_sources variable)
  set(sources)
  foreach(folder . ${ARGN})
    file(GLOB found CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${folder}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  list(REMOVE_ITEM sources main.cpp)
  set(${variable} ${sources} PARENT_SCOPE)
endfunction()

# kelvaron_library(<name> [FOLDERS <subfolders...>] [LINKS <targets...>]): of this folder's sources.
function(kelvaron_library name)
  cmake_parse_arguments(ARG "" "" "FOLDERS;LINKS" ${ARGN})
  kelvaron_sources(sources ${ARG_FOLDERS})
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC kelvaron_options ${ARG_LINKS})
endfunction()

# kelvaron_program(<name> SOURCES <files...> LINKS <targets...>)
function(kelvaron_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE kelvaron_options ${ARG_LINKS})
endfunction()
