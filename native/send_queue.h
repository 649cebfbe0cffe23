// Bytes to be sent that the system has not taken yet.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvaron {

/// Appending and consuming cost the same at any length, spread over the bytes.
class SendQueue {
 public:
  void append(std::string_view bytes) { bytes_.append(bytes); }
  /// Forgets the first `count` bytes of `pending()`.
  void consume(std::size_t count);
  void clear();

  std::string_view pending() const { return std::string_view(bytes_).substr(consumed_); }
  std::size_t size() const { return bytes_.size() - consumed_; }
  bool empty() const { return size() == 0; }

 private:
  std::string bytes_;
  std::size_t consumed_ = 0;
};

}  // namespace kelvaron
