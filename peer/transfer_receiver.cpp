#include "peer/transfer_receiver.h"

#include <utility>

namespace kelvaron {

TransferReceiver::TransferReceiver(SocketPort& sockets, FileStreams& streams, Edge& edge)
    : streams_(streams), edge_(edge), socket_(sockets.makeSocket()) {
  socket_->onConnectionRequest = [this](int id) { edge_.runUnasked([this, id] { accept(id); }); };
  socket_->onDataArrival = [this] { edge_.runUnasked([this] { arrived(); }); };
  socket_->onClose = [this] { edge_.runUnasked([this] { ended(); }); };
  socket_->onError = [this](int, const std::string&) { edge_.runUnasked([this] { ended(); }); };
}

void TransferReceiver::listen(std::uint16_t port) {
  close();
  socket_->Listen(port);
  port_ = socket_->LocalPort();
}

void TransferReceiver::close() {
  socket_->Close();
  file_.reset();
  header_ = HeaderReader();
  received_ = 0;
  stage_ = Stage::header;
}

void TransferReceiver::accept(int requestId) {
  close();
  socket_->Accept(requestId);
  if (onConnect) onConnect();
}

void TransferReceiver::arrived() {
  const std::string arrival = socket_->GetData();
  if (const auto fault = FaultRule::stop().handle([&] { take(arrival); })) {
    close();
    if (onFault) onFault(*fault);
  }
}

void TransferReceiver::take(std::string_view arrival) {
  if (stage_ == Stage::header) {
    const HeaderReader::Outcome outcome = header_.take(arrival);
    if (outcome == HeaderReader::Outcome::unfinished) return;
    if (outcome == HeaderReader::Outcome::refused) {
      close();
      if (onRefused) onRefused();
      return;
    }
    if (onHeader) onHeader();
    file_ = streams_.receive(header_.name());
    stage_ = Stage::content;
  }
  if (stage_ == Stage::content) addContent(arrival);
}

void TransferReceiver::addContent(std::string_view bytes) {
  // What goes beyond the announced size is dropped.
  bytes = bytes.substr(0, static_cast<std::size_t>(header_.size() - received_));
  if (bytes.empty() && header_.size() > 0) return;
  file_->write(bytes);
  received_ += static_cast<std::int64_t>(bytes.size());
  byteCount_ += static_cast<std::int64_t>(bytes.size());
  if (received_ == header_.size()) {
    stage_ = Stage::complete;
    std::exchange(file_, nullptr)->commit();
  }
  if (onProgress) onProgress();
}

void TransferReceiver::ended() {
  close();
  if (onEnd) onEnd();
}

}  // namespace kelvaron
