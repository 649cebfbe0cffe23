#include "tests/support/test_desktop.h"

#include "session/protocol_line.h"

namespace kelvaron::testing {
namespace {

constexpr std::chrono::milliseconds kPatience{5000};

class RoutedSocket : public NativeSocket {
 public:
  RoutedSocket(EventLoop& loop, std::shared_ptr<ConnectionRequests> requests,
               RoutedSocketPort& port)
      : NativeSocket(loop, std::move(requests)), port_(port) {}

  void Connect(const std::string& host, std::uint16_t port) override {
    const bool routed = port == kChatPort;
    NativeSocket::Connect(host, routed ? port_.port() : port);
    if (routed) port_.hosts.push_back(host);
  }
  void Listen(std::uint16_t port) override {
    constexpr std::uint16_t kFilePort = 5050;  // another test's receiver may have it
    NativeSocket::Listen(port == kFilePort && !port_.keepsFilePort ? 0 : port);
  }

 private:
  RoutedSocketPort& port_;
};

template <class T>
std::optional<T> next(std::deque<T>& script) {
  if (script.empty()) return std::nullopt;
  T answer = script.front();
  script.pop_front();
  return answer;
}

}  // namespace

std::unique_ptr<Socket> RoutedSocketPort::makeSocket() {
  return std::make_unique<RoutedSocket>(loop_, requests_, *this);
}

TestDesktop::TestDesktop(PollLoop& sharedLoop, std::uint16_t serverPort)
    : loop(sharedLoop), sockets(sharedLoop, serverPort) {
  client = makeClient(edge, Ports{.sockets = sockets,
                                  .dialogs = *this,
                                  .sound = *this,
                                  .files = files,
                                  .application = *this,
                                  .processes = *this,
                                  .registry = registry,
                                  .player = player,
                                  .echo = *this,
                                  .streams = streams,
                                  .localHost = *this,
                                  .loop = loop});
}

bool TestDesktop::logIn(const std::string& name) {
  start(*client);
  edge.run([&] {
    login().txtUserName.Text = name;
    login().cmdOK.Click();
  });
  return until([&] { return shows<frmMain>(); });
}

void TestDesktop::enter(const std::string& text) {
  edge.run([&] { room().txtinput.Text = text; });
  raise(room().txtinput.KeyDown, key_code::kEnter, 0);
}

std::string TestDesktop::chat() {
  const StyledText& content = room().txtOutput.Content;
  return content.text({}, content.end(), "\n");
}

bool TestDesktop::until(const std::function<bool()>& condition) {
  return loop.runUntil(condition, kPatience);
}

BoxAnswer TestDesktop::show(const BoxRequest& box) {
  boxes.push_back(box);
  if (whileBoxIsOpen) whileBoxIsOpen(boxes.back());
  edge.throwIfEnded();
  if (box.offersDisconnect && leavesBoxes) return BoxAnswer::disconnect;
  if (!box.question) return BoxAnswer::ok;
  return next(answers).value_or(false) ? BoxAnswer::yes : BoxAnswer::no;
}

std::string TestDesktop::InputBox(const std::string& prompt, const std::string& title,
                                  const std::string& initial) {
  initialInputs.push_back(initial);
  boxes.push_back({.text = prompt, .title = title});
  return next(inputs).value_or("");
}

std::optional<std::string> TestDesktop::openFile(const FileDialog& dialog) {
  fileDialogs.push_back(dialog);
  return next(chosenFiles);
}

std::unique_ptr<Echo> TestDesktop::send(std::uint32_t address, std::string_view data,
                                        std::chrono::milliseconds timeOut, EchoPort::Done done) {
  return echoes->send(address, data, timeOut, std::move(done));
}

std::unique_ptr<LocalHostLookUp> TestDesktop::localHostAddress(LocalHostPort::Done done) {
  struct Answered : LocalHostLookUp {
    std::unique_ptr<LoopWatch> turn;
  };
  auto answered = std::make_unique<Answered>();
  answered->turn = loop.after(std::chrono::milliseconds(0),
                              [answer = localHost, done = std::move(done)] { done(answer); });
  return answered;
}

void TestDesktop::DoEvents() {
  loop.runOnce(std::chrono::milliseconds(0));
  edge.throwIfEnded();
}

}  // namespace kelvaron::testing
