// What a program prints, kept in a nameless file: the program can go on printing when this one has
// ended, and its last lines can be read when it fails.
#pragma once

#include <string>

#include "native/file_descriptor.h"

namespace kelvaron {

class OutputCapture {
 public:
  /// Makes the file in the folder for temporary files. Where that fails, what is printed is lost.
  OutputCapture();

  /// Where the program's output and errors go. Above the three descriptors that programs know; -1
  /// where this process can open no more.
  int descriptor() const { return file_.get(); }

  /// Up to the last five lines that hold anything, each behind a line end (CR LF) and cut after 200
  /// characters. Code page 1252; control characters are blanks.
  std::string last() const;

 private:
  FileDescriptor file_;
};

}  // namespace kelvaron
