// A desktop for tests: real sockets on a real loop, dialogs that answer from a script, and a
// record of what was shown and played.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "chat/main_window.h"
#include "client/kelvaron_client.h"
#include "native/echo.h"
#include "native/file_streams.h"
#include "native/native_socket.h"
#include "native/program_files.h"
#include "session/login_window.h"
#include "tests/support/form_timers.h"
#include "tests/support/poll_loop.h"
#include "tests/support/scripted_ports.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {

using Box = BoxRequest;

/// Has the list's entry at `index`, or none (-1), selected and current, as a click does.
inline void selectOnly(ListBox& list, int index) {
  for (int i = 0; i < list.ListCount(); ++i) list.setSelected(i, i == index);
  list.setListIndex(index);
}

/// Sockets whose connections to the port of chat servers go to a port of the test's own, and that
/// listen at a free port in place of the one for files.
class RoutedSocketPort : public SocketPort {
 public:
  RoutedSocketPort(EventLoop& loop, std::uint16_t port) : loop_(loop), port_(port) {}
  std::unique_ptr<Socket> makeSocket() override;

  /// Hosts that were connected to, in order.
  std::vector<std::string> hosts;
  void routeTo(std::uint16_t port) { port_ = port; }
  std::uint16_t port() const { return port_; }
  /// Whether the port for files is itself, rather than a free one.
  bool keepsFilePort = false;

 private:
  EventLoop& loop_;
  std::uint16_t port_;
  std::shared_ptr<ConnectionRequests> requests_ = std::make_shared<ConnectionRequests>();
};

/// One client with its desktop. Several can share a loop.
class TestDesktop : private Dialogs,
                    private SoundPort,
                    private Application,
                    private ProcessPort,
                    private EchoPort,
                    private LocalHostPort {
 public:
  TestDesktop(PollLoop& loop, std::uint16_t serverPort);

  /// Starts the client and logs in under the name; returns whether the room came up.
  bool logIn(const std::string& name);

  frmLogin& login() { return client->form<frmLogin>(); }
  frmMain& room() { return client->form<frmMain>(); }
  /// Whether a form of the kind is on the screen; makes none.
  template <class F>
  bool shows() const {
    const F* form = client->loadedForm<F>();
    return form != nullptr && form->Visible;
  }
  bool ended() const { return edge.ended(); }

  /// Raises an event as the shell does.
  template <class... Args, class... Values>
  void raise(const Event<Args...>& event, Values... values) {
    edge.run([&] { event(values...); });
  }
  /// Types the text into the input line and presses Enter.
  void enter(const std::string& text);
  /// What the chat view shows, lines joined by "\n".
  std::string chat();
  /// From now on timers of forms that are made tick by themselves; without this only a test raises
  /// their events.
  void runTimers() { timers_.emplace(loop, edge, client->slots); }
  /// Turns the loop until the condition holds; false after five seconds.
  bool until(const std::function<bool()>& condition);

  PollLoop& loop;
  Edge edge;
  RoutedSocketPort sockets;
  ScriptedRegistry registry;
  ScriptedPlayer player;
  std::unique_ptr<Client> client;

  std::vector<Box> boxes;
  /// Runs while a box is open.
  std::function<void(const Box&)> whileBoxIsOpen;
  std::deque<std::string> inputs;
  /// The texts that stood in the input boxes at first.
  std::vector<std::string> initialInputs;
  /// Answers to questions; No when there are none left.
  std::deque<bool> answers;
  /// Presses "Disconnect" where a box has it.
  bool leavesBoxes = false;
  /// What the user chooses in file dialogs; a dialog is dismissed when there is nothing left.
  std::deque<std::string> chosenFiles;
  std::vector<FileDialog> fileDialogs;
  struct Started {
    std::string command;
    WindowStyle style;
    bool operator==(const Started&) const = default;
  };
  std::vector<Started> started;
  /// The commands whose programs were told that the user is through with them.
  std::vector<std::string> left;
  /// What the start of the last one would call if it failed; empty where it is told as any other.
  std::function<void()> lastStartFailed;
  /// The program's folder, removed at the end, and what works in it.
  TemporaryFolder folder;
  ProgramFiles files{folder.path()};
  DiskStreams streams{folder.path()};
  /// What sends the echoes; a test may put another in its place.
  std::unique_ptr<EchoPort> nativeEcho = makeEcho(loop);
  EchoPort* echoes = nativeEcho.get();
  /// What looking this machine's name up gives.
  LocalHostAnswer localHost{"127.0.0.1", 0};
  std::vector<std::string> sounds;
  std::vector<std::string> pages;
  bool anotherInstance = false;
  std::string instanceProblem;

 private:
  BoxAnswer show(const BoxRequest& box) override;
  std::string InputBox(const std::string& prompt, const std::string& title,
                       const std::string& initial) override;
  std::optional<std::string> openFile(const FileDialog& dialog) override;
  void play(std::string_view name) override { sounds.emplace_back(name); }
  void playBeside(std::string_view name) override { sounds.push_back("/" + std::string(name)); }
  void leave(const std::string& command) override { left.push_back(command); }
  void run(const std::string& command, WindowStyle style, std::function<void()> failed) override {
    started.push_back({command, style});
    lastStartFailed = std::move(failed);
  }
  std::string InstanceProblem() const override { return instanceProblem; }
  bool PrevInstance() const override { return anotherInstance; }
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  void DoEvents() override;
  std::unique_ptr<Echo> send(std::uint32_t address, std::string_view data,
                             std::chrono::milliseconds timeOut, EchoPort::Done done) override;
  std::unique_ptr<LocalHostLookUp> localHostAddress(LocalHostPort::Done done) override;
  void showPage(const std::string& address) override { pages.push_back(address); }
  void showFolder(const std::string& path) override { pages.push_back(path); }

  std::optional<FormTimers> timers_;
};

}  // namespace kelvaron::testing
