#include "session/arrival_queue.h"

#include <utility>

#include "base/scope_exit.h"
#include "session/client.h"
#include "session/connection.h"

namespace kelvaron {
namespace {

// Lines of one turn take so long at most, and the one that is at work then.
constexpr std::chrono::milliseconds kLongestTurn{10};
constexpr std::chrono::milliseconds kNextTurn{0};

}  // namespace

void ArrivalQueue::arrived() {
  if (!nextTurn_) turn();
}

void ArrivalQueue::closed() { comes({}); }

void ArrivalQueue::failed(int number, const std::string& description) {
  comes({.error = number, .description = description});
}

void ArrivalQueue::comes(End end) {
  end_ = std::move(end);
  if (!nextTurn_) turn();
}

void ArrivalQueue::drop() {
  connectionClosed();
  read_.reset();
  nextTurn_.reset();
  dropped_ = handling_;
}

void ArrivalQueue::turn() {
  if (handling_) return;
  if (!handleReads()) {
    nextTurn_ = client_.ports.loop.after(kNextTurn, [this] {
      nextTurn_.reset();
      client_.edge.runUnasked([this] { turn(); });
    });
    return;
  }
  ++handled_;
  if (!end_) return;
  const End end = *std::exchange(end_, std::nullopt);
  if (end.error) {
    sckClient_Error(client_, *end.error, end.description);
  } else {
    sckClient_Close(client_);
  }
}

/// Whether all is handled that has arrived.
bool ArrivalQueue::handleReads() {
  handling_ = true;
  const ScopeExit done([this] { handling_ = false; });
  const auto until = client_.now() + kLongestTurn;
  while (true) {
    // In a handler's box the user may leave the connection, so the bytes are nobody else's.
    Read read = read_ ? std::move(*read_) : Read{.bytes = client_.sckClient().GetData()};
    read_.reset();
    dropped_ = false;
    if (read.bytes.empty()) return true;
    ArrivalRead rest{std::string_view(read.bytes).substr(read.done), read.rule};
    handleArrival(client_, rest, table_, until);
    if (rest.lines.empty()) continue;
    read.done = read.bytes.size() - rest.lines.size();
    read.rule = rest.rule;
    read_ = std::move(read);
    return false;
  }
}

}  // namespace kelvaron
