// Sending a file to another machine: the transfer alone, without a form.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/edge.h"
#include "platform/file_streams.h"
#include "platform/socket.h"

namespace kelvaron {

/// Connects, sends the header and the bytes, and closes. What is sent is fixed when it begins.
class TransferSender {
 public:
  /// Bytes handed to the socket at once. The next block waits until the system has this one.
  static constexpr std::size_t kBlock = 2048;
  /// Most blocks handed over in one turn of the event loop, so that it stays responsive.
  static constexpr int kBlocksPerTurn = 64;

  /// The ports and the edge, through which its events run, outlive the sender.
  TransferSender(SocketPort& sockets, FileStreams& streams, Edge& edge);

  /// Opens the file at `path` and connects; it will be announced as `name`, with the length that it
  /// has now. What ran before is given up. Faults: 53 and 75 of the file, 75 too for one that is
  /// longer than a header can tell, those of `Socket::Connect`; then nothing runs.
  void begin(const std::string& path, const std::string& name, const std::string& host,
             std::uint16_t port);
  /// What is waited for takes too long: gives the transfer up and leaves the connection alone.
  void giveUp();
  /// Ends transfer and connection.
  void close();

  bool running() const { return stage_ != Stage::idle; }
  SocketState socketState() const { return socket_->State(); }
  /// Bytes of the file whose transfer began last, and how many of them were handed over.
  std::int64_t size() const { return size_; }
  std::int64_t sent() const { return sent_; }
  /// Bytes handed over since the last call.
  std::int64_t takeByteCount() { return std::exchange(byteCount_, 0); }

  /// The connection is there. The header goes out next.
  std::function<void()> onConnect;
  std::function<void()> onProgress;
  /// Something is waited for from now on, or nothing that needs a limit.
  std::function<void(bool limited)> onWait;
  /// The transfer ended by a fault.
  std::function<void(const Fault&)> onFault;

 private:
  enum class Stage { idle, connecting, announcing, sending, draining };

  void connected();
  void sendComplete();
  void sendBlocks();
  void readBlock();
  void lost();
  void waitFor(Stage stage);

  FileStreams& streams_;
  Edge& edge_;
  std::unique_ptr<Socket> socket_;
  Stage stage_ = Stage::idle;
  // Whether the system has taken all that was given to the socket.
  bool sendComplete_ = false;
  std::string path_;
  std::string name_;
  std::unique_ptr<FileReader> file_;
  std::int64_t size_ = 0;
  std::int64_t sent_ = 0;
  std::int64_t byteCount_ = 0;
  std::string block_;
};

}  // namespace kelvaron
