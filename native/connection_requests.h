// Connections that a listening socket has taken and no socket has accepted yet.
#pragma once

#include <limits>
#include <map>
#include <utility>

#include "native/sockets.h"

namespace kelvaron {

/// Shared by the sockets of one port, so that any of them can accept.
class ConnectionRequests {
 public:
  /// Returns the id that travels in `onConnectionRequest`, from 1.
  int add(SocketDescriptor connection) {
    lastId_ = lastId_ == std::numeric_limits<int>::max() ? 1 : lastId_ + 1;
    waiting_.insert_or_assign(lastId_, std::move(connection));
    return lastId_;
  }

  /// The connection, or none when the id does not wait (any more).
  SocketDescriptor take(int id) {
    auto node = waiting_.extract(id);
    return node ? std::move(node.mapped()) : SocketDescriptor();
  }

 private:
  std::map<int, SocketDescriptor> waiting_;
  int lastId_ = 0;
};

}  // namespace kelvaron
