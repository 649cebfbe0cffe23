// Fuzz target: bytes from a chat server, cut into reads, with a whole live client behind them.
//
// The input is taken apart at each byte 0xFF: each piece is one read. Boxes are answered at once,
// and a client that ended is replaced by a new one.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "chat/main_window.h"
#include "client/kelvaron_client.h"
#include "tests/support/quiet_ports.h"

namespace kelvaron {
namespace {

// A connection whose other end is the fuzzer.
class FuzzSocket : public Socket {
 public:
  void Connect(const std::string&, std::uint16_t) override { state_ = SocketState::connected; }
  void Listen(std::uint16_t) override {}
  void Accept(int) override {}
  void SendData(std::string_view bytes) override {
    if (state_ != SocketState::connected) {
      throw Fault(fault_number::kNotConnected, "Not connected");
    }
    // Whatever arrived, what goes out is whole lines, and one line a call.
    const bool oneLine = bytes.ends_with("\r\n") && bytes.find_first_of("\r\n") == bytes.size() - 2;
    if (!oneLine) std::abort();
  }
  std::string GetData() override { return std::exchange(received, {}); }
  void Close() override { state_ = SocketState::closed; }
  SocketState State() const override { return state_; }
  std::string LocalIP() const override { return "127.0.0.1"; }
  std::uint16_t LocalPort() const override { return 0; }
  std::string RemoteHostIP() const override { return {}; }
  std::size_t BytesQueued() const override { return 0; }
  void HoldBackUnfinishedLine(std::chrono::milliseconds) override {}

  std::string received;

 private:
  SocketState state_ = SocketState::closed;
};

class FuzzDesktop : SocketPort, Dialogs, SoundPort, FilePort, Application, ProcessPort {
 public:
  FuzzDesktop()
      : client(
            makeClient(edge, Ports{*this, *this, *this, *this, *this, *this, registry, player})) {
    edge.run([this] { client->form<frmMain>().Show(); });
    edge.run([this] { client->sckClient().Connect("", 0); });
    client->UserName = "fuzz";
  }

  void arrive(std::string_view bytes) {
    // A handler may have closed the connection; the user connects again.
    edge.run([this] { client->sckClient().Connect("", 0); });
    socket->received = bytes;
    socket->onDataArrival();
  }

  testing::EmptyRegistry registry;
  testing::SilentPlayer player;
  Edge edge;
  FuzzSocket* socket = nullptr;
  std::unique_ptr<Client> client;

 private:
  std::unique_ptr<Socket> makeSocket() override {
    auto made = std::make_unique<FuzzSocket>();
    socket = made.get();
    return made;
  }
  void MsgBox(const std::string&, int, const std::string&) override { edge.throwIfEnded(); }
  bool confirm(const std::string&, const std::string&) override { return false; }
  std::optional<std::string> openFile(const FileDialog&) override { return std::nullopt; }
  std::string InputBox(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  void play(std::string_view) override {}
  void playBeside(std::string_view) override {}
  std::string folder() const override { return "/fuzz"; }
  std::string read(const std::string& name) override {
    throw Fault(fault_number::kFileNotFound, "The file " + name + " was not found");
  }
  void replace(const std::string&, const std::string&) override {}
  void run(const std::string&, WindowStyle) override {}
  void MkDir(const std::string&) override {}
  bool PrevInstance() const override { return false; }
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  void DoEvents() override { edge.throwIfEnded(); }
  void showPage(const std::string&) override {}
};

}  // namespace
}  // namespace kelvaron

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::unique_ptr<kelvaron::FuzzDesktop> desktop;
  constexpr std::size_t kFullView = 1'000'000;
  std::string_view input(reinterpret_cast<const char*>(data), size);
  while (true) {
    const bool usable =
        desktop && !desktop->edge.ended() &&
        desktop->client->form<kelvaron::frmMain>().txtOutput.Content.length() < kFullView;
    if (!usable) desktop = std::make_unique<kelvaron::FuzzDesktop>();
    const std::size_t cut = input.find('\xFF');
    desktop->arrive(input.substr(0, cut));
    if (cut == std::string_view::npos) break;
    input.remove_prefix(cut + 1);
  }
  return 0;
}
