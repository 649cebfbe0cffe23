// The error of a server folder's file, in words for the person who runs the server.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace kelvaron::server {

/// Its text names the file, the line where one is at fault, and what is wrong.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  /// `line` counts from 1.
  StoreError(const std::string& file, std::size_t line, const std::string& what)
      : std::runtime_error(file + ", line " + std::to_string(line) + ": " + what) {}
};

}  // namespace kelvaron::server
