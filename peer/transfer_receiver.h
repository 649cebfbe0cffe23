// Receiving a file from another machine: the transfer alone, without a form.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "base/non_copyable.h"
#include "peer/transfer.h"
#include "platform/edge.h"
#include "platform/file_streams.h"
#include "platform/socket.h"

namespace kelvaron {

/// Listens, and hears whoever connects until one of them has sent a whole header: that one delivers
/// its file, and while it lasts nobody else is heard. When it has ended, listening is for the owner
/// to begin again.
class TransferReceiver : NonCopyable {
 public:
  using Time = std::chrono::steady_clock::time_point;
  /// Whoever takes so long for a header, or sends nothing of a file for so long, is let go.
  static constexpr std::chrono::seconds kLongestSilence{30};
  /// Most who are heard at once; one more takes the place of the first.
  static constexpr std::size_t kMostCallers = 64;

  /// The ports, the edge, through which its events run, and the clock outlive the receiver.
  TransferReceiver(SocketPort& sockets, FileStreams& streams, Edge& edge,
                   const std::function<Time()>& now);
  ~TransferReceiver() { close(); }

  /// Ends what ran before and listens (port 0: any free one). Faults of `Socket::Listen`.
  void listen(std::uint16_t port);
  /// Ends listening and connections. A file that isn't whole stays as far as it came.
  void close();
  /// Lets go whoever has been silent for too long. Whether that was the one whose file came: then
  /// all is closed.
  bool letSilentGo();

  /// Of the connection that is heard, else of listening.
  SocketState socketState() const;
  /// The port that was listened on last; 0 before.
  std::uint16_t port() const { return port_; }
  /// What the header announced, once it is there.
  const HeaderReader& header() const { return header_; }
  /// Bytes of the file that have come.
  std::int64_t received() const { return received_; }
  /// Bytes that have come since the last call, of whichever file.
  std::int64_t takeByteCount() { return std::exchange(byteCount_, 0); }

  /// Somebody has connected, or has gone without a header.
  std::function<void()> onCallers;
  /// The header is there.
  std::function<void()> onHeader;
  std::function<void()> onProgress;
  /// The connection of the file was ended by the other side.
  std::function<void()> onEnd;
  /// It was ended by a fault.
  std::function<void(const Fault&)> onFault;

 private:
  struct Caller {
    std::unique_ptr<Socket> socket;
    HeaderReader header;
    // When it connected; of the one whose file comes, when its last bytes came.
    Time heard;
  };

  void accept(int requestId);
  void arrived(Caller& from);
  void take(Caller& from, std::string_view arrival);
  void addContent(std::string_view bytes);
  void left(const Caller& who);
  void forget(const Caller& who);

  SocketPort& sockets_;
  FileStreams& streams_;
  Edge& edge_;
  const std::function<Time()>& now_;
  std::unique_ptr<Socket> listener_;
  // In the order in which they came; none of them has sent a whole header.
  std::vector<std::unique_ptr<Caller>> callers_;
  // Whose file comes.
  std::unique_ptr<Caller> sender_;
  std::uint16_t port_ = 0;
  HeaderReader header_;
  std::int64_t received_ = 0;
  std::int64_t byteCount_ = 0;
  // Open while content is expected.
  std::unique_ptr<ReceivedFile> file_;
};

}  // namespace kelvaron
