// The whole client on a display, with a plain blocking socket as its server: lines a second from
// the socket to the view, bytes a line, rebuilds of the user list, and latencies both ways.
//
//   room_bench              everything
//   room_bench lines N      N lines in a process of their own, for the memory

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "base/resident_bytes.h"
#include "bench/blocking_peer.h"
#include "chat/main_window.h"
#include "client/kelvaron_client.h"
#include "desktop/ports/dialogs.h"
#include "desktop/ports/qt_event_loop.h"
#include "desktop/shell/shell.h"
#include "desktop/shell/theme.h"
#include "session/login_window.h"
#include "tests/support/idle_ports.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::bench {
namespace {

using Clock = std::chrono::steady_clock;

double microseconds(Clock::duration time) {
  return std::chrono::duration<double, std::micro>(time).count();
}

struct Spread {
  double median;
  double p95;
};

Spread spreadOf(std::vector<double> values) {
  std::ranges::sort(values);
  return {values[values.size() / 2], values[values.size() * 95 / 100]};
}

/// Turns the event loop until the condition holds.
void turnUntil(const std::function<bool()>& done) {
  while (!done()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// Notes when a widget was painted last.
class Paints : public QObject {
 public:
  explicit Paints(QWidget* widget) { widget->installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Paint) return false;
    // Let the widget paint first: the time is that of the finished picture.
    watched->removeEventFilter(this);
    QCoreApplication::sendEvent(watched, event);
    watched->installEventFilter(this);
    ++count;
    last = Clock::now();
    return true;
  }
  int count = 0;
  Clock::time_point last;
};

/// A client that has logged in to a blocking peer, with its room on the screen.
class Desk {
 public:
  Desk() {
    std::thread accepting([this] { peer.accept(); });
    start(*client);
    gate_.run([this] {
      client->form<frmLogin>().txtUserName.Text = "bench";
      client->form<frmLogin>().cmdOK.Click();
    });
    turnUntil([this] { return client->mainWindowShown(); });
    accepting.join();
    QElapsedTimer settled;
    settled.start();
    while (settled.elapsed() < 300) QCoreApplication::processEvents();
    for (std::size_t got = 0; got < kGreeting.size();) got += peer.receive();
  }

  frmMain& room() { return client->form<frmMain>(); }
  QWidget& widgetOf(Control& control) { return shell_.shown(room())->viewOf(control)->widget(); }
  EventGate& gate() { return gate_; }

  BlockingPeer peer;

 private:
  static constexpr std::string_view kGreeting = "Name\tbench\t127.0.0.1\r\nMOTD\r\n";
  Edge edge_;
  EventGate gate_{edge_};
  QtEventLoop loop_;
  testing::RoutedSocketPort sockets_{loop_, peer.port()};
  QtDialogs dialogs_{gate_};
  testing::IdlePorts ports_{loop_};

 public:
  const std::unique_ptr<Client> client = makeClient(edge_, ports_.with(sockets_, dialogs_));

 private:
  Shell shell_{*client, gate_};
};

/// A room line whose text in the view has 62 characters.
std::string roomLine(std::size_t number) {
  const std::string sender = "player" + std::to_string(number % 100) + ": ";
  std::string text = "line " + std::to_string(number) + " ";
  text.resize(62 - sender.size(), "abcdefgh "[number % 9]);
  return "Message\t" + sender + "\t" + text + "\r\n";
}

void lines(std::size_t count) {
  std::string batch;
  for (std::size_t i = 0; i < 1000; ++i) batch += roomLine(i);
  Desk desk;
  StyledText& view = desk.room().txtOutput.Content;
  Paints paints(static_cast<QAbstractScrollArea&>(desk.widgetOf(desk.room().txtOutput)).viewport());
  const std::size_t before = residentBytes();
  const auto begun = Clock::now();
  std::thread feeding([&] {
    for (std::size_t sent = 0; sent < count; sent += 1000) desk.peer.send(batch);
  });
  turnUntil([&] { return view.lineCount() > count; });
  const int paintsSoFar = paints.count;
  turnUntil([&] { return paints.count > paintsSoFar; });
  const double seconds = microseconds(paints.last - begun) / 1e6;
  feeding.join();
  const std::size_t after = residentBytes();
  std::printf("lines %9zu: %9.0f lines/s socket to view, %5.1f bytes/line resident, %d paints\n",
              count, static_cast<double>(count) / seconds,
              static_cast<double>(after - before) / static_cast<double>(count), paints.count);
}

void rebuilds(Desk& desk, std::size_t users) {
  constexpr std::size_t kRuns = 21;
  // Two lists in turn, as a list that is the same as before need not be painted.
  std::array<std::string, 2> bursts = {"Userscl\r\n", "Userscl\r\n"};
  std::array<QStringList, 2> names;
  for (std::size_t i = 0; i < users; ++i) {
    for (std::size_t which : {0U, 1U}) {
      const std::string name = (which == 0 ? "user" : "player") + std::to_string(i * 7919 % users);
      bursts.at(which) += "Users\t" + name + "\r\n";
      names.at(which) << QString::fromStdString(name);
    }
  }
  QWidget* list = static_cast<QAbstractScrollArea&>(desk.widgetOf(desk.room().List1)).viewport();
  Paints paints(list);
  std::vector<double> ours;
  for (std::size_t i = 0; i < kRuns; ++i) {
    // A long list is shown ten times a second; each rebuild is to find the last one shown.
    const auto rested = Clock::now() + std::chrono::milliseconds(120);
    while (Clock::now() < rested) QCoreApplication::processEvents();
    const int before = paints.count;
    const auto begun = Clock::now();
    desk.gate().runUnattended([&] {
      ArrivalRead read{.lines = bursts.at(i % 2U)};
      handleArrival(*desk.client, read, inboundTable());
    });
    turnUntil([&] { return paints.count > before; });
    ours.push_back(microseconds(paints.last - begun) / 1e3);
  }

  QListWidget plain;
  plain.setSortingEnabled(true);
  plain.resize(list->size());
  plain.show();
  Paints plainPaints(plain.viewport());
  turnUntil([&] { return plainPaints.count > 0; });
  std::vector<double> theirs;
  for (std::size_t i = 0; i < (users > 5000 ? 5 : kRuns); ++i) {
    const int before = plainPaints.count;
    const auto begun = Clock::now();
    plain.clear();
    for (const QString& name : names.at(i % 2U)) plain.addItem(name);
    turnUntil([&] { return plainPaints.count > before; });
    theirs.push_back(microseconds(plainPaints.last - begun) / 1e3);
  }
  const Spread mine = spreadOf(ours);
  std::printf(
      "rebuild of %5zu users: %6.2f ms median, %6.2f ms p95; QListWidget %7.2f ms (%.0fx)\n", users,
      mine.median, mine.p95, spreadOf(theirs).median, spreadOf(theirs).median / mine.median);
}

void latencies(Desk& desk) {
  constexpr int kRuns = 200;
  auto& input = desk.widgetOf(desk.room().txtinput);
  std::vector<double> out;
  for (int i = 0; i < kRuns; ++i) {
    std::atomic<Clock::rep> arrived{0};
    std::thread peer([&] {
      desk.peer.receive();
      arrived = Clock::now().time_since_epoch().count();
    });
    static_cast<QLineEdit&>(input).setText(QStringLiteral("hello"));
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    const auto begun = Clock::now();
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&input, &enter);
    while (arrived == 0) QCoreApplication::processEvents();
    peer.join();
    out.push_back(microseconds(Clock::duration(arrived - begun.time_since_epoch().count())));
  }

  StyledText& view = desk.room().txtOutput.Content;
  Paints paints(static_cast<QAbstractScrollArea&>(desk.widgetOf(desk.room().txtOutput)).viewport());
  std::vector<double> in;
  for (int i = 0; i < kRuns; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(15));
    QCoreApplication::processEvents();
    const std::size_t before = view.lineCount();
    const auto begun = Clock::now();
    desk.peer.send(roomLine(static_cast<std::size_t>(i)));
    turnUntil([&] { return view.lineCount() > before; });
    turnUntil([&] { return paints.last > begun; });
    in.push_back(microseconds(paints.last - begun));
  }

  // The same hop between two threads that do nothing else.
  BlockingPeer one;
  std::vector<double> bare;
  const int other = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(one.port());
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(other, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) std::abort();
  one.accept();
  for (int i = 0; i < kRuns; ++i) {
    std::atomic<Clock::rep> arrived{0};
    std::thread peer([&] {
      one.receive();
      arrived = Clock::now().time_since_epoch().count();
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    const auto begun = Clock::now();
    if (::send(other, "hello\r\n", 7, MSG_NOSIGNAL) != 7) std::abort();
    peer.join();
    bare.push_back(microseconds(Clock::duration(arrived - begun.time_since_epoch().count())));
  }
  ::close(other);
  const Spread sent = spreadOf(out);
  const Spread shown = spreadOf(in);
  const Spread hop = spreadOf(bare);
  std::printf("Enter to bytes at the peer: %6.0f us median, %6.0f us p95\n", sent.median, sent.p95);
  std::printf("bytes to the painted line:  %6.0f us median, %6.0f us p95\n", shown.median,
              shown.p95);
  std::printf("one bare hop of loopback:   %6.0f us median, %6.0f us p95\n", hop.median, hop.p95);
}

}  // namespace
}  // namespace kelvaron::bench

int main(int argc, char** argv) {
  using namespace kelvaron::bench;
  if (argc == 1) {
    for (const char* count : {"10000", "100000", "1000000"}) {
      const std::string command = std::string(argv[0]) + " lines " + count;
      if (std::system(command.c_str()) != 0) return 1;  // NOLINT(concurrency-mt-unsafe)
    }
  }
  QApplication application(argc, argv);
  kelvaron::applyTheme(application);
  if (argc == 3 && std::strcmp(argv[1], "lines") == 0) {
    lines(std::stoul(argv[2]));
    return 0;
  }
  Desk desk;
  for (const std::size_t users : {std::size_t{100}, std::size_t{1000}, std::size_t{10'000}}) {
    rebuilds(desk, users);
  }
  latencies(desk);
  return 0;
}
