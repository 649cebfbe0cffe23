// The program kelvaron-server.
#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <csignal>
#include <exception>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "build_settings.h"
#include "server/log_writer.h"
#include "server/options.h"
#include "server/password.h"
#include "server/server.h"
#include "server/store.h"
#include "server/text.h"

namespace {

using kelvaron::server::CommandLine;
using kelvaron::server::forLog;
using kelvaron::server::Options;
using kelvaron::server::Store;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

std::filesystem::path defaultFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return (error ? std::filesystem::current_path() : program.parent_path()) / "server-data";
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
  std::cout << forLog(moderator.nick) << " is a moderator now, folder " << store.folder().string()
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

int removeModerator(const Store& store, const std::string& nick) {
  const bool removed = store.removeModerator(nick);
  (removed ? std::cout : std::cerr)
      << forLog(nick) << (removed ? " is no moderator any more" : " is no moderator") << ", folder "
      << store.folder().string() << std::endl;
  return removed ? 0 : kFailed;
}

int listBans(const Store& store) {
  using kelvaron::server::BanKind;
  for (const auto& ban : store.bans()) {
    std::string text;
    if (ban.kind != BanKind::address) text += forLog(ban.nick);
    if (ban.kind == BanKind::user) text += ' ';
    if (ban.kind != BanKind::nick) text += forLog(ban.address);
    std::cout << text << ", by " << forLog(ban.by) << ": " << forLog(ban.reason) << '\n';
  }
  return 0;
}

int unban(const Store& store, const std::string& who) {
  const std::size_t removed = store.removeBans(who);
  (removed > 0 ? std::cout : std::cerr)
      << (removed == 0   ? "no ban"
          : removed == 1 ? "1 ban"
                         : std::to_string(removed) + " bans")
      << " of " << forLog(who) << (removed > 0 ? " taken away" : "") << ", folder "
      << store.folder().string() << std::endl;
  return removed > 0 ? 0 : kFailed;
}

int check(const Store& store) {
  const std::vector<std::string> problems = store.problems();
  for (const std::string& problem : problems) std::cerr << "kelvaron-server: " << problem << '\n';
  if (!problems.empty()) return kFailed;
  std::cout << "The folder " << store.folder().string()
            << " is in order: " << store.moderators().size() << " moderators, "
            << store.bans().size() << " bans" << std::endl;
  return 0;
}

int serve(Options options) {
  allowManyConnections();
  asio::io_context io(1);
  kelvaron::server::LogWriter log(STDERR_FILENO);
  options.log = [&log](std::string_view text) { log.write(text); };
  const std::string address = options.address;
  const std::string folder = options.folder.string();
  kelvaron::server::Server server(io, std::move(options));
  asio::signal_set signals(io, SIGINT, SIGTERM, SIGHUP);
  signals.add(SIGUSR1);
  std::function<void()> awaitSignal = [&] {
    signals.async_wait([&](std::error_code error, int number) {
      if (error) return;
      if (number == SIGHUP) server.reload();
      if (number == SIGUSR1) server.logStatistics();
      if (number == SIGINT || number == SIGTERM) server.end();
      if (!server.hasStopped()) awaitSignal();
    });
  };
  awaitSignal();
  server.onStopped = [&] { signals.cancel(); };
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
  if (line.version) {
    std::cout << "kelvaron-server " << kelvaron::build::kVersion << '\n';
    return 0;
  }
  Options& options = line.options;
  if (options.folder.empty()) options.folder = defaultFolder();
  const Store store(options.folder);
  if (line.check) return check(store);
  if (line.newModerator) return addModerator(store, *line.newModerator);
  if (line.removedModerator) return removeModerator(store, *line.removedModerator);
  if (line.bans) return listBans(store);
  if (line.unbanned) return unban(store, *line.unbanned);
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
