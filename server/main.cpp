// The program kelvaron-server.
#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <chrono>
#include <csignal>
#include <ctime>
#include <exception>
#include <iostream>
#include <string>

#include "server/options.h"
#include "server/password.h"
#include "server/server.h"
#include "server/store.h"

namespace {

using kelvaron::server::CommandLine;
using kelvaron::server::Options;
using kelvaron::server::Store;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

std::filesystem::path defaultFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return (error ? std::filesystem::current_path() : program.parent_path()) / "server-data";
}

void logLine(std::string_view text) {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  char stamp[32];
  const std::size_t size = std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S ", &parts);
  std::cerr << std::string_view(stamp, size) << text << std::endl;
}

/// A password as typed or piped; nothing of it shows on a terminal.
std::string readPassword() {
  termios shown{};
  const bool terminal = tcgetattr(STDIN_FILENO, &shown) == 0;
  if (terminal) {
    termios hidden = shown;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    std::cerr << "Password: " << std::flush;
  }
  std::string password;
  std::getline(std::cin, password);
  if (terminal) {
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown);
    std::cerr << '\n';
  }
  if (password.ends_with('\r')) password.pop_back();
  return password;
}

int addModerator(const Store& store, const CommandLine::NewModerator& moderator) {
  const std::string password = readPassword();
  const auto isPlain = [](char c) { return c >= ' ' && c <= '~'; };
  if (password.empty() || !std::all_of(password.begin(), password.end(), isPlain)) {
    std::cerr << "kelvaron-server: the password, the first line of standard input, must hold 1 or "
                 "more plain letters, digits, signs or blanks\n";
    return kWrongUsage;
  }
  store.prepare();
  store.setModerator({moderator.nick, moderator.email, kelvaron::server::hashPassword(password)});
  std::cout << moderator.nick << " is a moderator now, folder " << store.folder().string()
            << std::endl;
  return 0;
}

// Each client takes a descriptor, and the usual soft limit of 1,024 is soon reached.
void allowManyConnections() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

/// "127.0.0.1:3069", "[::1]:3069".
std::string place(const std::string& address, std::uint16_t port) {
  const bool v6 = address.find(':') != std::string::npos;
  return (v6 ? '[' + address + ']' : address) + ':' + std::to_string(port);
}

int serve(Options options) {
  allowManyConnections();
  asio::io_context io(1);
  options.log = logLine;
  const std::string address = options.address;
  const std::string folder = options.folder.string();
  kelvaron::server::Server server(io, std::move(options));
  asio::signal_set ends(io, SIGINT, SIGTERM);
  asio::signal_set reloads(io, SIGHUP);
  ends.async_wait([&](std::error_code error, int) {
    if (error) return;
    reloads.cancel();
    server.stop();
  });
  std::function<void()> awaitReload = [&] {
    reloads.async_wait([&](std::error_code error, int) {
      if (error) return;
      server.reload();
      awaitReload();
    });
  };
  awaitReload();
  std::cout << "kelvaron-server listens on " << place(address, server.port()) << ", folder "
            << folder << std::endl;
  io.run();
  return 0;
}

int run(CommandLine line) {
  if (line.help) {
    std::cout << kelvaron::server::usage();
    return 0;
  }
  Options& options = line.options;
  if (options.folder.empty()) options.folder = defaultFolder();
  if (line.newModerator) return addModerator(Store(options.folder), *line.newModerator);
  const std::string where = place(options.address, options.port);
  try {
    return serve(std::move(options));
  } catch (const std::system_error& error) {
    const bool inUse = error.code() == asio::error::address_in_use;
    std::cerr << "kelvaron-server: can't listen on " << where << ": "
              << (inUse ? "another program has this port" : error.code().message()) << '\n';
    return kFailed;
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::signal(SIGPIPE, SIG_IGN);
    const std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
    return run(kelvaron::server::parseCommandLine(arguments.subspan(argc > 0 ? 1 : 0)));
  } catch (const kelvaron::server::UsageError& error) {
    std::cerr << "kelvaron-server: " << error.what() << "\n\n" << kelvaron::server::usage();
    return kWrongUsage;
  } catch (const std::exception& error) {
    std::cerr << "kelvaron-server: " << error.what() << '\n';
    return kFailed;
  }
}
