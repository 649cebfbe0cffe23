// A whole client whose every port is the fuzzer's.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "chat/main_window.h"
#include "client/kelvaron_client.h"
#include "fuzz/require.h"
#include "tests/support/quiet_ports.h"

namespace kelvaron {

/// A connection whose other end is the fuzzer.
class FuzzSocket : public Socket {
 public:
  void Connect(const std::string&, std::uint16_t) override { state_ = SocketState::connected; }
  void Listen(std::uint16_t) override { state_ = SocketState::listening; }
  void Accept(int) override { state_ = SocketState::connected; }
  void SendData(std::string_view bytes) override {
    if (state_ != SocketState::connected) {
      throw Fault(fault_number::kNotConnected, "Not connected");
    }
    // Whatever arrived, what goes out is whole lines, and one line a call.
    require(bytes.ends_with("\r\n") && bytes.find_first_of("\r\n") == bytes.size() - 2);
  }
  bool SendNow(std::string_view bytes) override {
    SendData(bytes);
    return true;
  }
  std::string GetData() override { return std::exchange(received, {}); }
  void Close() override { state_ = SocketState::closed; }
  SocketState State() const override { return state_; }
  std::string LocalIP() const override { return "127.0.0.1"; }
  std::uint16_t LocalPort() const override { return 0; }
  void HoldBackUnfinishedLine(std::chrono::milliseconds) override {}

  std::string received;

 private:
  SocketState state_ = SocketState::closed;
};

/// Timers that are due whenever the fuzzer says so.
class FuzzLoop : public EventLoop {
 public:
  std::unique_ptr<LoopWatch> watch(int, Readiness, std::function<void()>) override {
    return std::make_unique<LoopWatch>();
  }
  std::unique_ptr<LoopWatch> after(std::chrono::milliseconds, std::function<void()> due) override {
    auto timer = std::make_unique<Timer>();
    timer->due = std::make_shared<std::function<void()>>(std::move(due));
    waiting_.push_back(timer->due);
    return timer;
  }
  void run() {
    while (!waiting_.empty()) {
      const auto next = waiting_.front().lock();
      waiting_.pop_front();
      if (next) (*next)();
    }
  }

 private:
  struct Timer : LoopWatch {
    std::shared_ptr<std::function<void()>> due;
  };
  std::deque<std::weak_ptr<std::function<void()>>> waiting_;
};

/// A file that came, in memory.
struct FuzzFile {
  std::string content;
  bool open = true;
  bool kept = false;
};

class FuzzDesktop : SocketPort,
                    Dialogs,
                    SoundPort,
                    FilePort,
                    Application,
                    ProcessPort,
                    EchoPort,
                    FileStreams,
                    LocalHostPort {
 public:
  FuzzDesktop()
      : client(makeClient(edge, Ports{.sockets = *this,
                                      .dialogs = *this,
                                      .sound = *this,
                                      .files = *this,
                                      .application = *this,
                                      .processes = *this,
                                      .registry = registry,
                                      .player = player,
                                      .echo = *this,
                                      .streams = *this,
                                      .localHost = *this,
                                      .loop = loop})),
        chat(newest) {
    edge.run([this] { client->form<frmMain>().Show(); });
    edge.run([this] { client->sckClient().Connect("", 0); });
    client->UserName = "fuzz";
  }

  /// Bytes from the chat server.
  void arrive(std::string_view bytes) {
    // A handler may have closed the connection; the user connects again.
    edge.run([this] { client->sckClient().Connect("", 0); });
    chat->received = bytes;
    chat->onDataArrival();
    loop.run();
  }

  FuzzLoop loop;
  testing::EmptyRegistry registry;
  testing::SilentPlayer player;
  Edge edge;
  /// The socket made last.
  FuzzSocket* newest = nullptr;
  /// All that was received since it was last emptied.
  std::vector<std::shared_ptr<FuzzFile>> files;
  std::unique_ptr<Client> client;
  FuzzSocket* const chat;

 private:
  class Received : public ReceivedFile {
   public:
    explicit Received(std::shared_ptr<FuzzFile> file) : file_(std::move(file)) {}
    ~Received() override { file_->open = false; }
    void write(std::string_view bytes) override {
      require(!file_->kept);
      file_->content += bytes;
    }
    void commit() override { require(!std::exchange(file_->kept, true)); }

   private:
    std::shared_ptr<FuzzFile> file_;
  };

  std::unique_ptr<Socket> makeSocket() override {
    auto made = std::make_unique<FuzzSocket>();
    newest = made.get();
    return made;
  }
  BoxAnswer show(const BoxRequest& box) override {
    edge.throwIfEnded();
    return box.question ? BoxAnswer::no : BoxAnswer::ok;
  }
  std::optional<std::string> openFile(const FileDialog&) override { return std::nullopt; }
  std::string InputBox(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  void play(std::string_view) override {}
  void playBeside(std::string_view) override {}
  std::string folder() const override { return "/fuzz"; }
  std::string read(const std::string& name) override {
    if (name == "kvconfig.cfg") return "z\r\ng\r\nd\r\nd2\r\nf\r\np\r\ne\r\nx\r\n\r\ns\r\nc\r\n";
    if (name == "profile.dat") return "fuzz\r\n4.1\r\nFirst\r\nLast, and more\r\n";
    throw Fault(fault_number::kFileNotFound, "The file " + name + " was not found");
  }
  void replace(const std::string&, const std::string&) override {}
  void run(const std::string&, WindowStyle, std::function<void()>) override {}
  void leave(const std::string&) override {}
  void MkDir(const std::string&) override {}
  std::string InstanceProblem() const override { return {}; }
  bool PrevInstance() const override { return false; }
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  void DoEvents() override { edge.throwIfEnded(); }
  void showPage(const std::string&) override {}
  void showFolder(const std::string&) override {}
  std::unique_ptr<Echo> send(std::uint32_t, std::string_view, std::chrono::milliseconds,
                             EchoPort::Done) override {
    return std::make_unique<Echo>();
  }
  std::unique_ptr<FileReader> open(const std::string& path) override {
    throw Fault(fault_number::kFileNotFound, "The file " + path + " was not found");
  }
  std::unique_ptr<ReceivedFile> receive(const std::string& name) override {
    // One file in one folder, whatever was announced.
    require(!name.empty() && name != "." && name != ".." && name.size() <= 255);
    require(std::ranges::none_of(name, [](char character) {
      const auto byte = static_cast<unsigned char>(character);
      return byte < 32 || byte == 127 || character == '/' || character == '\\';
    }));
    files.push_back(std::make_shared<FuzzFile>());
    return std::make_unique<Received>(files.back());
  }
  std::unique_ptr<LocalHostLookUp> localHostAddress(LocalHostPort::Done) override {
    return std::make_unique<LocalHostLookUp>();
  }
};

}  // namespace kelvaron
