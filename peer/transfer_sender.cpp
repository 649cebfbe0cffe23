#include "peer/transfer_sender.h"

#include <algorithm>
#include <utility>

#include "peer/transfer.h"

namespace kelvaron {
namespace {

// Fault 75 for a file whose length the header can't tell.
std::int64_t lengthToAnnounce(const FileReader& file, const std::string& path) {
  const std::int64_t length = file.length();
  if (length <= kLongestFile) return length;
  throw Fault(fault_number::kPathAccess, "The file " + path + " is too long to be sent: it has " +
                                             std::to_string(length) + " bytes, and at most " +
                                             std::to_string(kLongestFile) + " can be sent.");
}

}  // namespace

TransferSender::TransferSender(SocketPort& sockets, FileStreams& streams, Edge& edge)
    : streams_(streams), edge_(edge), socket_(sockets.makeSocket()) {
  socket_->onConnect = [this] { edge_.runUnasked([this] { connected(); }); };
  socket_->onSendComplete = [this] { edge_.runUnasked([this] { sendComplete(); }); };
  socket_->onClose = [this] { edge_.runUnasked([this] { lost(); }); };
  socket_->onError = [this](int, const std::string&) { edge_.runUnasked([this] { lost(); }); };
  // Nothing is meant to come back; what does is dropped.
  socket_->onDataArrival = [this] { socket_->GetData(); };
}

void TransferSender::begin(const std::string& path, const std::string& name,
                           const std::string& host, std::uint16_t port) {
  close();
  // Looked at before anybody is bothered with a connection.
  std::unique_ptr<FileReader> file = streams_.open(path);
  const std::int64_t size = lengthToAnnounce(*file, path);
  socket_->Connect(host, port);
  path_ = path;
  name_ = name;
  file_ = std::move(file);
  size_ = size;
  sent_ = 0;
  waitFor(Stage::connecting);
}

void TransferSender::giveUp() {
  stage_ = Stage::idle;
  file_.reset();
  block_.clear();
  if (onWait) onWait(false);
}

void TransferSender::close() {
  giveUp();
  socket_->Close();
}

void TransferSender::connected() {
  if (onConnect) onConnect();
  if (stage_ != Stage::connecting) return;
  sendComplete_ = false;
  waitFor(Stage::announcing);
  if (const auto fault =
          FaultRule::stop().handle([&] { socket_->SendData(transferHeader(size_, name_)); })) {
    giveUp();
    if (onFault) onFault(*fault);
  }
}

void TransferSender::sendComplete() {
  sendComplete_ = true;
  switch (stage_) {
    case Stage::announcing:
    case Stage::sending:
      if (const auto fault = FaultRule::stop().handle([&] { sendBlocks(); })) {
        close();
        if (onFault) onFault(*fault);
      }
      break;
    case Stage::draining:
      close();
      break;
    case Stage::idle:
    case Stage::connecting:
      break;
  }
}

void TransferSender::sendBlocks() {
  if (stage_ == Stage::announcing) readBlock();
  for (int blocks = 1; sendComplete_ && !block_.empty(); ++blocks) {
    sent_ += static_cast<std::int64_t>(block_.size());
    byteCount_ += static_cast<std::int64_t>(block_.size());
    // What is sent last in a turn is reported in the next one.
    if (blocks < kBlocksPerTurn) {
      sendComplete_ = socket_->SendNow(block_);
    } else {
      socket_->SendData(block_);
      sendComplete_ = false;
    }
    readBlock();
  }
  if (onProgress) onProgress();
  if (!block_.empty()) return waitFor(Stage::sending);
  // Without a limit: what is left is the system's to deliver.
  stage_ = Stage::draining;
  if (onWait) onWait(false);
  if (sendComplete_) sendComplete();
}

void TransferSender::readBlock() {
  block_.resize(static_cast<std::size_t>(std::min<std::int64_t>(size_ - sent_, kBlock)));
  if (file_->read(block_) == block_.size()) return;
  throw Fault(fault_number::kPathAccess,
              "The file " + path_ +
                  " became shorter while it was sent, so that the transfer was broken off.");
}

void TransferSender::lost() {
  // Whoever does not answer may have no time yet: the attempt counts until its time is over.
  if (stage_ != Stage::connecting) giveUp();
}

void TransferSender::waitFor(Stage stage) {
  stage_ = stage;
  if (onWait) onWait(true);
}

}  // namespace kelvaron
