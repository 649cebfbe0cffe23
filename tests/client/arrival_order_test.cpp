// Lines, boxes, ends and reconnections in every order, within a turn and between turns, against a
// plain model that handles everything at once.
#include <gtest/gtest.h>

#include "chat/main_window.h"
#include "client/kelvaron_client.h"
#include "session/connection.h"
#include "tests/support/idle_ports.h"
#include "tests/support/poll_loop.h"

namespace kelvaron::testing {
namespace {

using namespace std::chrono_literals;

constexpr std::string_view kLost = "* Connection to the server has been lost!\r\n";

/// A connection that the test plays: what comes, comes when the test says so.
class PlayedSocket : public Socket {
 public:
  void Connect(const std::string&, std::uint16_t) override {
    state_ = SocketState::connected;
    onConnect();
  }
  void Listen(std::uint16_t) override {}
  void Accept(int) override {}
  void SendData(std::string_view) override {}
  bool SendNow(std::string_view) override { return true; }
  std::string GetData() override { return std::exchange(unread_, {}); }
  void Close() override {
    state_ = SocketState::closed;
    unread_.clear();
  }
  SocketState State() const override { return state_; }
  std::string LocalIP() const override { return "127.0.0.1"; }
  std::uint16_t LocalPort() const override { return 0; }
  void HoldBackUnfinishedLine(std::chrono::milliseconds) override {}

  void arrive(std::string_view bytes) {
    if (state_ != SocketState::connected || bytes.empty()) return;
    unread_ += bytes;
    onDataArrival();
  }
  void end(char how) {
    if (state_ != SocketState::connected || how == ' ') return;
    state_ = how == 'c' ? SocketState::peerClosing : SocketState::failed;
    if (how == 'c') return onClose();
    onError(10054, "reset");
  }

 private:
  SocketState state_ = SocketState::closed;
  std::string unread_;
};

struct Script {
  /// What comes in a read each: "a" a line, "b" one with a box, "x" one with a box that closes.
  std::string first;
  std::string second;
  /// How the connection ends behind them: ' ' not, 'c' closed, 'r' reset.
  char end;
  /// When the user connects again, to a server that says a line and closes.
  enum { never, inTheEnd, inTheFirstBox } again;
  /// Each line takes a turn of its own.
  bool slow;
  /// What comes behind the first read waits until nothing is left to do.
  bool idle;
  /// What comes behind the first read comes while its first box is open.
  bool behindBox;

  bool hasBox() const { return first.find_first_of("bx") != std::string::npos; }
};

// What the user sees, in order: lines, and boxes in brackets.
std::string model(const Script& script) {
  std::string seen;
  const std::string again = "again\r\n" + std::string(kLost);
  bool closed = false;
  for (const std::string& read : {script.first, script.second}) {
    if (closed) break;
    for (const char each : read) {
      if (each == 'a') seen += "line\r\n";
      if (each == 'b') seen += "[look]";
      if (each == 'x') seen += "[banned]";
      if (each != 'a' && script.again == Script::inTheFirstBox) return seen + again;
      closed = closed || each == 'x';
    }
  }
  if (!closed && script.end == 'c') seen += kLost;
  if (!closed && script.end == 'r') return seen + "[Error]";
  return script.again == Script::inTheEnd ? seen + again : seen;
}

class Played : SocketPort, Dialogs {
 public:
  explicit Played(IdlePorts& ports, PollLoop& loop, const Script& script)
      : script_(script), loop_(loop), client_(makeClient(edge_, ports.with(*this, *this))) {
    if (script.slow) {
      client_->now = [this] { return time_ += 10ms; };
    }
    edge_.run([this] { client_->connect(""); });
  }

  std::string seen() {
    chat_->arrive(bytes(script_.first));
    if (script_.idle) turnUntilIdle();
    if (!behindCame_) comeBehind();
    turnUntilIdle();
    if (script_.again == Script::inTheEnd) connectAgain();
    turnUntilIdle();
    noteLines();
    return seen_;
  }

 private:
  static std::string bytes(const std::string& read) {
    std::string lines;
    for (const char each : read) {
      lines += each == 'a' ? "Announce\tline\r\n" : each == 'b' ? "MSGBOX\tlook\r\n" : "banned\r\n";
    }
    return lines;
  }
  void comeBehind() {
    behindCame_ = true;
    chat_->arrive(bytes(script_.second));
    chat_->end(script_.end);
  }
  void connectAgain() {
    if (edge_.ended()) return;
    edge_.run([this] { reconnect(*client_); });
    chat_->arrive("Announce\tagain\r\n");
    chat_->end('c');
  }
  void turnUntilIdle() {
    for (int turn = 0; turn < 12; ++turn) loop_.runOnce(0ms);
  }
  void noteLines() {
    const std::string all = client_->form<frmMain>().txtOutput.Content.text();
    seen_ += all.substr(noted_);
    noted_ = all.size();
  }

  std::unique_ptr<Socket> makeSocket() override {
    auto made = std::make_unique<PlayedSocket>();
    if (chat_ == nullptr) chat_ = made.get();
    return made;
  }
  BoxAnswer show(const BoxRequest& box) override {
    noteLines();
    const std::string text = box.text.substr(0, box.text.find_first_of(":!"));
    seen_ += text.starts_with("You have been banned") ? "[banned]" : "[" + text + "]";
    if (script_.behindBox && !behindCame_) comeBehind();
    if (script_.again == Script::inTheFirstBox && !std::exchange(againCame_, true)) connectAgain();
    if (script_.slow) loop_.runOnce(0ms);
    return BoxAnswer::ok;
  }
  std::optional<std::string> openFile(const FileDialog&) override { return std::nullopt; }
  std::string InputBox(const std::string&, const std::string&, const std::string&) override {
    return {};
  }

  Script script_;
  PollLoop& loop_;
  Edge edge_;
  PlayedSocket* chat_ = nullptr;
  std::unique_ptr<Client> client_;
  std::chrono::steady_clock::time_point time_{};
  std::string seen_;
  std::size_t noted_ = 0;
  bool behindCame_ = false;
  bool againCame_ = false;
};

std::vector<std::string> readsUpTo(std::size_t length) {
  std::vector<std::string> reads = {""};
  for (std::size_t at = 0; at < reads.size(); ++at) {
    if (reads[at].size() == length) break;
    for (const char each : {'a', 'b', 'x'}) reads.push_back(reads[at] + each);
  }
  return reads;
}

TEST(ArrivalOrder, EveryOrderIsSeenAsItCame) {
  PollLoop loop;
  IdlePorts ports(loop);
  for (const std::string& first : readsUpTo(3)) {
    for (const std::string& second : readsUpTo(1)) {
      for (const char end : {' ', 'c', 'r'}) {
        for (unsigned way = 0; way < 24; ++way) {
          const Script script{.first = first,
                              .second = second,
                              .end = end,
                              .again = static_cast<decltype(Script::again)>(way / 8),
                              .slow = (way & 1U) != 0,
                              .idle = (way & 2U) != 0,
                              .behindBox = (way & 4U) != 0};
          // In a box without one, and at an unread end, nothing can be said of the order.
          const bool inBox = script.behindBox || script.again == Script::inTheFirstBox;
          if (inBox && !script.hasBox()) continue;
          ASSERT_EQ(Played(ports, loop, script).seen(), model(script))
              << first << "|" << second << "|" << end << ", way " << way;
        }
      }
    }
  }
}

}  // namespace
}  // namespace kelvaron::testing
