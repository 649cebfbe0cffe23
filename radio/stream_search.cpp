#include "radio/stream_search.h"

#include <charconv>
#include <utility>

#include "base/code_page.h"
#include "platform/fault.h"
#include "radio/asx_playlist.h"

namespace kelvaron {
namespace {

constexpr int kMostHops = 5;
constexpr std::size_t kPageLimit = std::size_t{64} << 10U;
// So many bytes of a page tell whether it is a playlist.
constexpr std::size_t kEnoughToTell = 256;

struct Answer {
  int status = 0;
  std::string location;
  std::string_view page;
};

// None while the head of the answer isn't whole.
std::optional<Answer> readAnswer(std::string_view received) {
  std::size_t end = received.find("\r\n\r\n");
  std::size_t gap = 4;
  if (end == std::string_view::npos) {
    end = received.find("\n\n");
    gap = 2;
  }
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view head = received.substr(0, end);
  Answer answer;
  answer.page = received.substr(end + gap);
  if (const std::size_t blank = head.find(' '); blank != std::string_view::npos) {
    std::from_chars(head.data() + blank + 1, head.data() + head.size(), answer.status);
  }
  constexpr std::string_view kLocation = "\nLOCATION:";
  if (std::size_t at = upper(head).find(kLocation); at != std::string::npos) {
    at += kLocation.size();
    answer.location = head.substr(at, head.find('\n', at) - at);
  }
  return answer;
}

// Whether an address, as its name ends, leads to another playlist.
bool namesPlaylist(const std::string& address) {
  const std::string path = lower(address.substr(0, address.find('?')));
  return path.ends_with(".asx") || path.ends_with(".wax") || path.ends_with(".wvx");
}

}  // namespace

StreamSearch::StreamSearch(SocketPort& sockets, EventLoop& loop, std::string address, Done done,
                           std::chrono::milliseconds patience)
    : done_(std::move(done)), address_(std::move(address)), socket_(sockets.makeSocket()) {
  socket_->onDataArrival = [this] {
    received_ += socket_->GetData();
    look(received_.size() >= kPageLimit);
  };
  socket_->onClose = [this] { look(true); };
  socket_->onError = [this](int, const std::string&) { look(true); };
  const bool canLook = parseWebAddress(address_).has_value();
  patience_ = loop.after(canLook ? patience : std::chrono::milliseconds(0), [this, canLook] {
    finish(canLook ? std::vector<std::string>{} : std::vector{address_});
  });
  if (canLook) fetch(address_);
}

void StreamSearch::fetch(const std::string& address) {
  const auto web = parseWebAddress(address);
  ++hops_;
  if (!web || hops_ > kMostHops) {
    finish(hops_ > kMostHops ? std::vector<std::string>{} : std::vector{address});
    return;
  }
  address_ = address;
  received_.clear();
  socket_->Close();
  const std::string port = web->port == 80 ? "" : ":" + std::to_string(web->port);
  // The older version, in which the page ends with the connection and comes in one piece.
  socket_->onConnect = [this, request = "GET " + web->target + " HTTP/1.0\r\nHost: " + web->host +
                                        port + "\r\nUser-Agent: Kelvaron\r\nAccept: */*\r\n\r\n"] {
    socket_->SendData(request);
  };
  socket_->Connect(web->host, web->port);
}

void StreamSearch::look(bool complete) {
  const auto answer = readAnswer(received_);
  if (!answer) {
    if (complete) finish({});
    return;
  }
  if (answer->status >= 300 && answer->status < 400) {
    const auto next = resolveAddress(address_, answer->location);
    next ? fetch(*next) : finish({});
  } else if (answer->status < 200 || answer->status >= 300) {
    finish({});
  } else {
    lookIntoPage(answer->page, complete);
  }
}

void StreamSearch::lookIntoPage(std::string_view page, bool complete) {
  if (isAsx(page)) {
    if (complete || upper(page).find("</ASX>") != std::string::npos) {
      found(asxStreams(page, address_));
    }
  } else if (complete || page.size() >= kEnoughToTell) {
    finish({address_});
  }
}

void StreamSearch::found(std::vector<std::string> streams) {
  if (!streams.empty() && namesPlaylist(streams.front())) {
    fetch(streams.front());
  } else {
    finish(std::move(streams));
  }
}

void StreamSearch::finish(std::vector<std::string> streams) {
  socket_->Close();
  patience_.reset();
  // It may destroy this object.
  const Done done = std::exchange(done_, nullptr);
  if (done) done(std::move(streams));
}

}  // namespace kelvaron
