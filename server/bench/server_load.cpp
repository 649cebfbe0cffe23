// Load: a room full of clients on loopback, some of whom talk; every line must reach everybody.
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
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "server/server.h"

namespace {

using Clock = std::chrono::steady_clock;
using asio::ip::tcp;

constexpr std::chrono::seconds kPatience(60);
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
  settings.burstLines = 1'000'000;
  settings.linesPerSecond = 1'000'000;
  settings.queueLimit = 1'073'741'824;
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
  void talk(std::size_t lines, std::size_t sent = 0) {
    if (sent == lines) return;
    const std::string name = "user" + std::to_string(number_) + ": ";
    auto line = std::make_shared<std::string>("Message\t" + name + '\t' + std::to_string(sent) +
                                              ' ' + std::string(kText) + "\r\n");
    asio::async_write(socket_, asio::buffer(*line),
                      [this, line, lines, sent](std::error_code error, std::size_t) {
                        if (!error) talk(lines, sent + 1);
                      });
  }

  std::size_t messages = 0;
  std::size_t listed = 0;  // entries in the newest user list
  bool inOrder = true;
  bool closed = false;

 private:
  void read() {
    socket_.async_read_some(asio::buffer(block_), [this](std::error_code error, std::size_t count) {
      closed = closed || error;
      if (error) return;
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
    if (line == "Userscl") listed = 0;
    if (line.starts_with("Users\t")) ++listed;
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

int run(const Load& load, std::uint16_t port) {
  asio::io_context io(1);
  Clients clients;
  Clock::time_point start = Clock::now();
  for (std::size_t i = 0; i < load.clients; ++i) {
    clients.push_back(std::make_unique<Client>(io, i));
    clients.back()->connect(port);
    io.poll();
  }
  const bool allIn =
      runUntil(io, clients, [&](const auto& client) { return client->listed == load.clients; });
  std::cout << load.clients
            << " logins, until everybody has the whole list: " << secondsSince(start) << " s\n";

  start = Clock::now();
  for (std::size_t i = 0; i < load.senders; ++i) clients[i]->talk(load.lines);
  const std::size_t expected = load.senders * load.lines;
  const bool allThere =
      runUntil(io, clients, [&](const auto& client) { return client->messages >= expected; });
  const double taken = secondsSince(start);
  std::size_t delivered = 0;
  bool right = allIn && allThere;
  for (const auto& client : clients) {
    delivered += client->messages;
    right = right && client->messages == expected && client->inOrder && !client->closed;
  }
  std::cout << delivered << " of " << expected * load.clients << " lines delivered in " << taken
            << " s: " << static_cast<double>(delivered) / taken << " lines/s\n"
            << (right ? "every line reached everybody, in order\n" : "LINES ARE MISSING\n");
  return right ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  Load load;
  std::size_t* const values[] = {&load.clients, &load.senders, &load.lines};
  for (int i = 1; i < argc && i <= 3; ++i) *values[i - 1] = std::strtoul(argv[i], nullptr, 10);
  if (load.clients == 0 || load.senders > load.clients) return 2;

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
  if (::read(ends[0], &port, sizeof port) == sizeof port) result = run(load, port);
  ::kill(server, SIGTERM);
  int status = 0;
  rusage usage{};
  ::wait4(server, &status, 0, &usage);
  std::cout << "the server: " << seconds(usage.ru_utime) + seconds(usage.ru_stime)
            << " s of CPU time, " << static_cast<double>(usage.ru_maxrss) / 1024.0
            << " MiB at its peak\n";
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? result : 1;
}
