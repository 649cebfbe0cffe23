#include "peer/transfer_receiver.h"

#include <algorithm>
#include <string>

namespace kelvaron {

TransferReceiver::TransferReceiver(SocketPort& sockets, FileStreams& streams, Edge& edge,
                                   const std::function<Time()>& now)
    : sockets_(sockets),
      streams_(streams),
      edge_(edge),
      now_(now),
      listener_(sockets.makeSocket()) {
  listener_->onConnectionRequest = [this](int id) { edge_.runUnasked([this, id] { accept(id); }); };
}

void TransferReceiver::listen(std::uint16_t port) {
  close();
  listener_->Listen(port);
  port_ = listener_->LocalPort();
}

void TransferReceiver::close() {
  listener_->Close();
  callers_.clear();
  sender_.reset();
  file_.reset();
  header_ = HeaderReader();
  received_ = 0;
}

bool TransferReceiver::letSilentGo() {
  const Time latest = now_() - kLongestSilence;
  const auto silent = [&](const auto& caller) { return caller->heard <= latest; };
  if (std::erase_if(callers_, silent) > 0 && onCallers) onCallers();
  // A file that is whole waits for nothing.
  if (!sender_ || !file_ || !silent(sender_)) return false;
  close();
  return true;
}

SocketState TransferReceiver::socketState() const {
  if (sender_) return sender_->socket->State();
  return callers_.empty() ? listener_->State() : SocketState::connected;
}

void TransferReceiver::accept(int requestId) {
  if (callers_.size() == kMostCallers) callers_.erase(callers_.begin());
  Caller& caller = *callers_.emplace_back(std::make_unique<Caller>(
      Caller{.socket = sockets_.makeSocket(), .header = {}, .heard = now_()}));
  const auto gone = [this, &caller] { edge_.runUnasked([&] { left(caller); }); };
  caller.socket->onDataArrival = [this, &caller] { edge_.runUnasked([&] { arrived(caller); }); };
  caller.socket->onClose = gone;
  caller.socket->onError = [gone](int, const std::string&) { gone(); };
  caller.socket->Accept(requestId);
  if (onCallers) onCallers();
}

void TransferReceiver::arrived(Caller& from) {
  const std::string arrival = from.socket->GetData();
  if (const auto fault = FaultRule::stop().handle([&] { take(from, arrival); })) {
    close();
    if (onFault) onFault(*fault);
  }
}

void TransferReceiver::take(Caller& from, std::string_view arrival) {
  if (&from != sender_.get()) {
    switch (from.header.take(arrival)) {
      case HeaderReader::Outcome::unfinished:
        return;
      case HeaderReader::Outcome::refused:
        return forget(from);
      case HeaderReader::Outcome::whole:
        break;
    }
    sender_ = std::move(*std::ranges::find(callers_, &from, &std::unique_ptr<Caller>::get));
    callers_.clear();
    listener_->Close();
    header_ = from.header;
    if (onHeader) onHeader();
    file_ = streams_.receive(header_.name());
  }
  from.heard = now_();
  if (file_) addContent(arrival);
}

void TransferReceiver::addContent(std::string_view bytes) {
  // What goes beyond the announced size is dropped.
  bytes = bytes.substr(0, static_cast<std::size_t>(header_.size() - received_));
  if (bytes.empty() && header_.size() > 0) return;
  file_->write(bytes);
  received_ += static_cast<std::int64_t>(bytes.size());
  byteCount_ += static_cast<std::int64_t>(bytes.size());
  if (received_ == header_.size()) std::exchange(file_, nullptr)->commit();
  if (onProgress) onProgress();
}

void TransferReceiver::left(const Caller& who) {
  if (&who != sender_.get()) return forget(who);
  close();
  if (onEnd) onEnd();
}

void TransferReceiver::forget(const Caller& who) {
  std::erase_if(callers_, [&](const auto& each) { return each.get() == &who; });
  if (onCallers) onCallers();
}

}  // namespace kelvaron
