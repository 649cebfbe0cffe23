#include "server/readiness.h"

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/local/datagram_protocol.hpp>
#include <cstdlib>
#include <string>
#include <system_error>

namespace kelvaron::server {

void tellManager(std::string_view state) {
  const char* const named = std::getenv("NOTIFY_SOCKET");
  if (named == nullptr) return;
  std::string path(named);
  // An abstract name, which is no file's.
  if (path.starts_with('@')) path[0] = '\0';
  try {
    asio::io_context io;
    asio::local::datagram_protocol::socket socket(io, asio::local::datagram_protocol());
    socket.send_to(asio::buffer(state), asio::local::datagram_protocol::endpoint(path));
  } catch (const std::system_error&) {  // nobody is there to be told
  }
}

}  // namespace kelvaron::server
