// Files that are read and written block by block: what users send to one another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "base/non_copyable.h"

namespace kelvaron {

/// A file being read from its start. It stays readable when its name goes.
class FileReader : NonCopyable {
 public:
  virtual ~FileReader() = default;

  /// Bytes in the file at this moment.
  virtual std::int64_t length() const = 0;
  /// The next bytes of the file into `block`. Returns how many; fewer than its size only at the
  /// end. Fault 75 when they can't be read.
  virtual std::size_t read(std::span<char> block) = 0;
};

/// A file that comes from somebody else. Until `commit` it has a name of its own, under which it
/// stays when it is destroyed without.
class ReceivedFile : NonCopyable {
 public:
  virtual ~ReceivedFile() = default;

  /// Adds bytes at the end. Fault 61 when the disk is full, else 75.
  virtual void write(std::string_view bytes) = 0;
  /// Closes the file and gives it the name it was begun for, in place of a file that had it.
  /// Fault 61 or 75; the file then stays under its own name.
  virtual void commit() = 0;
};

class FileStreams : NonCopyable {
 public:
  virtual ~FileStreams() = default;

  /// Opens any file. Paths are code page 1252, may part folders by "\" and need not tell capitals.
  /// Fault 53 when there is none, 75 when it is no file or can't be read.
  virtual std::unique_ptr<FileReader> open(const std::string& path) = 0;
  /// Begins the file `name` in the folder `received` of the program's folder, which is made where
  /// it is missing. `name` is a bare name (code page 1252). Fault 61 when the disk is full,
  /// else 75.
  virtual std::unique_ptr<ReceivedFile> receive(const std::string& name) = 0;
};

}  // namespace kelvaron
