#include "tests/support/line_server.h"

namespace kelvaron::testing {

LineServer::LineServer(PollLoop& loop) : sockets_(loop), listener_(sockets_.makeSocket()) {
  listener_->onConnectionRequest = [this](int id) {
    peer_ = sockets_.makeSocket();
    peer_->onDataArrival = [this] { take(); };
    peer_->Accept(id);
    unfinished_.clear();
    ++connections;
  };
  listener_->Listen(0);
}

void LineServer::say(std::string_view bytes) { peer_->SendData(bytes); }

void LineServer::take() {
  unfinished_ += peer_->GetData();
  for (std::size_t end = 0; (end = unfinished_.find("\r\n")) != std::string::npos;) {
    lines.push_back(unfinished_.substr(0, end));
    unfinished_.erase(0, end + 2);
  }
}

}  // namespace kelvaron::testing
