// Load: a room full of clients on loopback, who come in, see somebody's state change, hear lines in
// a trickle and in bursts; every line must reach everybody.
// Usage: kelvaron_server_load [CLIENTS] [SENDERS] [LINES PER SENDER]; 1000 10 200 by default.
// The server is a process of its own, so that its CPU time and memory are told apart.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "server/server.h"

namespace {

using Clock = std::chrono::steady_clock;
using asio::ip::tcp;

constexpr std::chrono::seconds kPatience(120);
constexpr std::size_t kTrickled = 500;  // lines, one each ten milliseconds
constexpr std::chrono::milliseconds kBetweenTrickled(10);
constexpr std::string_view kText = "a line of room chat of about the length that people type";

struct Load {
  std::size_t clients = 1000;
  std::size_t senders = 10;
  std::size_t lines = 200;  // of each sender
};

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Runs the server until the signal to end, after telling its port.
[[noreturn]] void serve(int tell) {
  kelvaron::server::Settings settings;
  settings.burstLines = settings.linesPerSecond = 1'000'000;
  settings.burstLogins = settings.connections = 1'000'000;
  settings.queueLimit = 1'073'741'824;
  settings.loginTimeoutMs = 600'000;
  const auto folder = std::filesystem::temp_directory_path() /
                      ("kelvaron-server-load-" + std::to_string(::getpid()));
  {
    asio::io_context io(1);
    kelvaron::server::Server server(
        io, {.address = "127.0.0.1", .port = 0, .folder = folder, .settings = settings});
    const std::uint16_t port = server.port();
    if (::write(tell, &port, sizeof port) != sizeof port) std::_Exit(1);
    asio::signal_set ends(io, SIGTERM);
    ends.async_wait([&](std::error_code, int) { server.stop(); });
    io.run();
  }
  std::filesystem::remove_all(folder);
  std::_Exit(0);
}

class Client {
 public:
  Client(asio::io_context& io, std::size_t number) : socket_(io), number_(number) {}

  void connect(std::uint16_t port) {
    socket_.connect({asio::ip::address_v4::loopback(), port});
    socket_.set_option(tcp::no_delay(true));
    say("Name\tuser" + std::to_string(number_) + "\t127.0.0.1\r\n");
    read();
  }
  void say(std::string lines) {
    auto kept = std::make_shared<std::string>(std::move(lines));
    asio::async_write(socket_, asio::buffer(*kept), [kept](std::error_code error, std::size_t) {
      if (error) std::cerr << "a client can't write: " << error.message() << '\n';
    });
  }
  /// Says so many lines, each as soon as the system has taken the one before; they are numbered
  /// from `sent` on.
  void talk(std::size_t lines, std::size_t sent = 0) {
    if (lines == 0) return;
    const std::string name = "user" + std::to_string(number_) + ": ";
    auto line = std::make_shared<std::string>("Message\t" + name + '\t' + std::to_string(sent) +
                                              ' ' + std::string(kText) + "\r\n");
    asio::async_write(socket_, asio::buffer(*line),
                      [this, line, lines, sent](std::error_code error, std::size_t) {
                        if (!error) talk(lines - 1, sent + 1);
                      });
  }

  std::size_t messages = 0;
  std::size_t listed = 0;  // entries in the newest user list
  std::size_t bytes = 0;
  bool seesTag = false;  // somebody is in a game, in the newest list
  bool inOrder = true;
  bool closed = false;

 private:
  void read() {
    socket_.async_read_some(asio::buffer(block_), [this](std::error_code error, std::size_t count) {
      closed = closed || error;
      if (error) return;
      bytes += count;
      received_.append(block_.data(), count);
      takeLines();
      read();
    });
  }
  void takeLines() {
    std::size_t start = 0;
    for (std::size_t end; (end = received_.find("\r\n", start)) != std::string::npos;
         start = end + 2) {
      take(std::string_view(received_).substr(start, end - start));
    }
    received_.erase(0, start);
  }
  void take(std::string_view line) {
    if (line == "Userscl") {
      listed = 0;
      seesTag = false;
    }
    if (line.starts_with("Users\t")) {
      ++listed;
      seesTag = seesTag || line.ends_with("[IG]");
    }
    if (!line.starts_with("Message\tuser")) return;
    ++messages;
    const auto sender = std::strtoul(line.data() + 12, nullptr, 10);
    const auto number = std::strtoul(line.data() + line.rfind('\t') + 1, nullptr, 10);
    if (next_.size() <= sender) next_.resize(sender + 1);
    inOrder = inOrder && number == next_[sender]++;
  }

  tcp::socket socket_;
  std::size_t number_;
  std::array<char, 8192> block_{};
  std::string received_;
  std::vector<std::size_t> next_;  // by sender: the number of its next line
};

using Clients = std::vector<std::unique_ptr<Client>>;

/// Runs the loop until `done` holds for all clients; whether it did within the time.
template <class Done>
bool runUntil(asio::io_context& io, const Clients& clients, Done done) {
  const Clock::time_point start = Clock::now();
  while (Clock::now() - start < kPatience) {
    if (std::all_of(clients.begin(), clients.end(), done)) return true;
    io.run_for(std::chrono::milliseconds(5));
  }
  return false;
}

/// A phase's time, the server's CPU time in it and the bytes that the clients got.
class Phase {
 public:
  Phase(pid_t server, const Clients& clients)
      : server_(server), clients_(clients), cpu_(cpuTime()), bytes_(bytes()) {}

  void print(std::string_view what) const {
    const double wall = secondsSince(start_);
    std::cout << what << ": " << wall << " s, the server's CPU " << cpuTime() - cpu_ << " s, "
              << static_cast<double>(bytes() - bytes_) / 1e6 << " MB to the clients\n";
  }
  double cpu() const { return cpuTime() - cpu_; }
  double wall() const { return secondsSince(start_); }

 private:
  double cpuTime() const {
    std::ifstream file("/proc/" + std::to_string(server_) + "/stat");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::string skipped;
    double user = 0;
    double system = 0;
    for (int i = 0; i < 11; ++i) fields >> skipped;
    fields >> user >> system;
    return (user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK));
  }
  std::size_t bytes() const {
    std::size_t all = 0;
    for (const auto& client : clients_) all += client->bytes;
    return all;
  }

  pid_t server_;
  const Clients& clients_;
  double cpu_;
  std::size_t bytes_;
  Clock::time_point start_ = Clock::now();
};

int run(const Load& load, std::uint16_t port, pid_t server) {
  asio::io_context io(1);
  Clients clients;
  bool right = true;
  {
    const Phase phase(server, clients);
    for (std::size_t i = 0; i < load.clients; ++i) {
      clients.push_back(std::make_unique<Client>(io, i));
      clients.back()->connect(port);
      io.poll();
    }
    right = runUntil(io, clients, [&](const auto& each) { return each->listed == load.clients; });
    phase.print(std::to_string(load.clients) + " logins, until everybody has the whole list");
  }
  {
    const Phase phase(server, clients);
    clients[0]->say("INGAME\tuser0\r\n");
    right &= runUntil(io, clients, [&](const auto& each) {
      return each->seesTag && each->listed == load.clients;
    });
    phase.print("one change of a state, until everybody sees it");
  }
  {
    const Phase phase(server, clients);
    asio::steady_timer timer(io);
    for (std::size_t i = 0; i < kTrickled; ++i) {
      clients[0]->talk(1, i);
      timer.expires_after(kBetweenTrickled);
      bool over = false;
      timer.async_wait([&](std::error_code) { over = true; });
      while (!over) io.run_one();
    }
    right &= runUntil(io, clients, [](const auto& each) { return each->messages >= kTrickled; });
    phase.print(std::to_string(kTrickled) + " lines, one each 10 ms");
    std::cout << "  that is " << 100 * phase.cpu() / phase.wall() << " % of a processor, "
              << phase.cpu() * 1e6 / static_cast<double>(kTrickled * load.clients)
              << " us a delivery\n";
  }
  const Phase phase(server, clients);
  for (std::size_t i = 1; i <= load.senders; ++i) clients[i]->talk(load.lines);
  const std::size_t expected = kTrickled + load.senders * load.lines;
  right &= runUntil(io, clients, [&](const auto& each) { return each->messages >= expected; });
  phase.print(std::to_string(load.senders * load.lines) + " lines at once");
  std::cout << "  that is "
            << phase.cpu() * 1e6 / static_cast<double>(load.senders * load.lines * load.clients)
            << " us a delivery\n";
  for (const auto& client : clients) {
    right = right && client->messages == expected && client->inOrder && !client->closed;
  }
  std::cout << (right ? "every line reached everybody, in order\n" : "LINES ARE MISSING\n");
  return right ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  Load load;
  std::size_t* const values[] = {&load.clients, &load.senders, &load.lines};
  for (int i = 1; i < argc && i <= 3; ++i) *values[i - 1] = std::strtoul(argv[i], nullptr, 10);
  if (load.clients == 0 || load.senders >= load.clients) return 2;

  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);

  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return 1;
  const pid_t server = ::fork();
  if (server == 0) serve(ends[1]);
  std::uint16_t port = 0;
  int result = 1;
  if (::read(ends[0], &port, sizeof port) == sizeof port) result = run(load, port, server);
  ::kill(server, SIGTERM);
  int status = 0;
  rusage usage{};
  ::wait4(server, &status, 0, &usage);
  std::cout << "the server: " << seconds(usage.ru_utime) + seconds(usage.ru_stime)
            << " s of CPU time, " << static_cast<double>(usage.ru_maxrss) / 1024.0
            << " MiB at its peak\n";
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? result : 1;
}
