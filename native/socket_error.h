// Numbers and words for what goes wrong with a connection.
#pragma once

#include <string>

namespace kelvaron {

/// A number of the Winsock family (10013 to 11004) and a description for people.
struct SocketError {
  int number;
  std::string text;
};

namespace socket_error_number {
inline constexpr int kAddressInvalid = 10049;
}  // namespace socket_error_number

/// From `errno`. One that the family lacks keeps its own number and the system's words.
SocketError systemSocketError(int errnoValue);

/// From what getaddrinfo(3) returned; `errnoValue` counts when that says so.
SocketError lookUpError(int result, int errnoValue);

}  // namespace kelvaron
