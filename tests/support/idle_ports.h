// What a client has besides its connection and its dialogs, for tests and benchmarks: what the disk
// and the network give in a folder of its own, silence, and no other program.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "native/echo.h"
#include "native/file_streams.h"
#include "native/local_host.h"
#include "native/program_files.h"
#include "session/client.h"
#include "tests/support/quiet_ports.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {

class IdlePorts : private SoundPort, private Application, private ProcessPort {
 public:
  explicit IdlePorts(EventLoop& loop) : loop_(loop), echo_(makeEcho(loop)), localHost_(loop) {}

  /// All of a client's ports; with a player that plays nothing unless told.
  Ports with(SocketPort& sockets, Dialogs& dialogs, MediaPlayer* player = nullptr) {
    return {.sockets = sockets,
            .dialogs = dialogs,
            .sound = *this,
            .files = files,
            .application = *this,
            .processes = *this,
            .registry = registry_,
            .player = player == nullptr ? player_ : *player,
            .echo = *echo_,
            .streams = streams_,
            .localHost = localHost_,
            .loop = loop_};
  }

  TemporaryFolder folder;
  ProgramFiles files{folder.path()};
  /// The pages that the browser was asked for.
  std::vector<std::string> pages;

 private:
  void play(std::string_view /*name*/) override {}
  void playBeside(std::string_view /*name*/) override {}
  std::string InstanceProblem() const override { return {}; }
  bool PrevInstance() const override { return false; }
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  void DoEvents() override {}
  void showPage(const std::string& address) override { pages.push_back(address); }
  void showFolder(const std::string& path) override { pages.push_back(path); }
  void leave(const std::string& /*command*/) override {}
  void run(const std::string& command, WindowStyle /*style*/,
           std::function<void()> /*failed*/) override {
    throw std::logic_error("started: " + command);
  }

  EventLoop& loop_;
  EmptyRegistry registry_;
  SilentPlayer player_;
  std::unique_ptr<EchoPort> echo_;
  DiskStreams streams_{folder.path()};
  NativeLocalHost localHost_;
};

}  // namespace kelvaron::testing
