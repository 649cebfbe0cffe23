kelvaron_program(chat_view_bench
  SOURCES ${CMAKE_SOURCE_DIR}/bench/chat_view_bench.cpp
  LINKS kelvaron_desktop)
