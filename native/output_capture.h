// What a program prints: the last of it is kept in a nameless file (see output_keeper.h). The
// program can go on printing when this one has ended, and its last lines can be read when it fails.
#pragma once

#include <string>

#include "native/disk_file.h"

namespace kelvaron {

class OutputCapture {
 public:
  /// Makes the file in the folder for temporary files. Where that or its keeper fails, what is
  /// printed is lost.
  OutputCapture();

  /// Where the program's output and errors go. Above the three descriptors that programs know; -1
  /// where this process can open no more, and once the program was started.
  int descriptor() const { return output_.get(); }
  /// The program has its own descriptor now.
  void started() { output_.reset(); }
  /// Whether all is in the file that was printed, by the program and whoever it has started.
  bool complete() const;

  /// Up to the last five lines that hold anything, each behind a line end (CR LF) and cut after 200
  /// characters. Code page 1252; control characters are blanks.
  std::string last() const;

 private:
  FileDescriptor file_;
  FileDescriptor output_;
  // At its end when the keeper has gone.
  FileDescriptor done_;
};

}  // namespace kelvaron
