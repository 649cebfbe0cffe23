// Receiving a file from another machine: the transfer alone, without a form.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

#include "base/non_copyable.h"
#include "peer/transfer.h"
#include "platform/edge.h"
#include "platform/file_streams.h"
#include "platform/socket.h"

namespace kelvaron {

/// Listens; one connection at a time delivers one file. While it lasts nobody else is heard, and
/// when it has ended, listening is for its owner to begin again.
class TransferReceiver : NonCopyable {
 public:
  /// The ports and the edge, through which its events run, outlive the receiver.
  TransferReceiver(SocketPort& sockets, FileStreams& streams, Edge& edge);
  ~TransferReceiver() { close(); }

  /// Ends what ran before and listens (port 0: any free one). Faults of `Socket::Listen`.
  void listen(std::uint16_t port);
  /// Ends listening or connection. A file that isn't whole stays as far as it came.
  void close();

  SocketState socketState() const { return socket_->State(); }
  /// The port that was listened on last; 0 before.
  std::uint16_t port() const { return port_; }
  /// What the header announced, once it is there.
  const HeaderReader& header() const { return header_; }
  /// Bytes of the file that have come.
  std::int64_t received() const { return received_; }
  /// Bytes that have come since the last call, of whichever file.
  std::int64_t takeByteCount() { return std::exchange(byteCount_, 0); }

  /// Somebody has connected; a header is awaited.
  std::function<void()> onConnect;
  /// The header is there.
  std::function<void()> onHeader;
  std::function<void()> onProgress;
  /// Whoever connected sent something else than a header.
  std::function<void()> onRefused;
  /// The connection was ended by the other side.
  std::function<void()> onEnd;
  /// The connection was ended by a fault.
  std::function<void(const Fault&)> onFault;

 private:
  enum class Stage { header, content, complete };

  void accept(int requestId);
  void arrived();
  void take(std::string_view arrival);
  void addContent(std::string_view bytes);
  void ended();

  FileStreams& streams_;
  Edge& edge_;
  std::unique_ptr<Socket> socket_;
  std::uint16_t port_ = 0;
  Stage stage_ = Stage::header;
  HeaderReader header_;
  std::int64_t received_ = 0;
  std::int64_t byteCount_ = 0;
  // Open while content is expected.
  std::unique_ptr<ReceivedFile> file_;
};

}  // namespace kelvaron
