// The program kelvaron-server.
#include <pwd.h>
#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "build_settings.h"
#include "server/address.h"
#include "server/log_writer.h"
#include "server/options.h"
#include "server/password.h"
#include "server/readiness.h"
#include "server/server.h"
#include "server/status.h"
#include "server/store.h"
#include "server/text.h"

namespace {

using kelvaron::server::CommandLine;
using kelvaron::server::forLog;
using kelvaron::server::LogWriter;
using kelvaron::server::Options;
using kelvaron::server::Store;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

/// The service's folder where the program was installed, else one beside it. Throws `StoreError`
/// for the service's without the right to it.
std::filesystem::path defaultFolder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto beside = error ? std::filesystem::current_path() : program.parent_path();
  if (beside != kelvaron::build::kPrograms) return beside / "server-data";
  std::filesystem::path service(kelvaron::build::kServiceFolder);
  const auto looked = std::filesystem::exists(service, error) ? service : service.parent_path();
  if (::access(looked.c_str(), R_OK | W_OK | X_OK) == 0) return service;
  throw kelvaron::server::StoreError(
      service.string() +
      ": the service's folder is for root and the user kelvaron-server alone; become one of them, "
      "or name another folder with --folder");
}

/// Who gives a command, for the log.
std::string commander() {
  if (const char* name = std::getenv("SUDO_USER")) return name;
  const passwd* user = ::getpwuid(::getuid());
  return user == nullptr ? std::to_string(::getuid()) : user->pw_name;
}

void tellServer(const Store& store, const std::string& what) {
  kelvaron::server::tellServer(store.folder(), commander() + " commands: " + what);
}

termios shown;

extern "C" void showAgainAndEnd(int signal) {
  tcsetattr(STDIN_FILENO, TCSANOW, &shown);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

/// A password as typed or piped; nothing of it shows on a terminal, also when it is broken off.
std::string readPassword() {
  const bool terminal = tcgetattr(STDIN_FILENO, &shown) == 0;
  if (terminal) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, showAgainAndEnd);
    termios hidden = shown;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    std::cerr << "Password: " << std::flush;
  }
  std::string password;
  std::getline(std::cin, password);
  if (terminal) {
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_DFL);
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
  tellServer(store, "--add-moderator " + forLog(moderator.nick));
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

int removeModerator(const Store& store, const std::string& nick) {
  const bool removed = store.removeModerator(nick);
  if (removed) tellServer(store, "--remove-moderator " + forLog(nick));
  (removed ? std::cout : std::cerr)
      << forLog(nick) << (removed ? " is no moderator any more" : " is no moderator") << ", folder "
      << store.folder().string() << std::endl;
  return removed ? 0 : kFailed;
}

int listBans(const Store& store) {
  for (const auto& ban : store.bans()) {
    std::cout << forLog(ban.who()) << ", by " << forLog(ban.by) << ": " << forLog(ban.reason);
    if (ban.until) std::cout << ", until " << kelvaron::server::timeText(*ban.until) << " UTC";
    std::cout << '\n';
  }
  return 0;
}

int addBan(const Store& store, const CommandLine::NewBan& asked) {
  using kelvaron::server::BanKind;
  const bool address = kelvaron::server::isAddress(asked.who);
  kelvaron::server::Ban ban{.kind = address ? BanKind::address : BanKind::nick,
                            .by = kelvaron::server::fromConsole(commander()).value_or("?"),
                            .reason = asked.reason,
                            .until = asked.until};
  (address ? ban.address : ban.nick) = asked.who;
  store.prepare();
  store.addBans({ban});
  std::cout << forLog(asked.who) << " is banned now, folder " << store.folder().string()
            << std::endl;
  return 0;
}

int tellStatus(const Store& store, bool json) {
  const auto answer = kelvaron::server::askStatus(store.folder());
  std::cout << (json ? answer.json : answer.text) << std::endl;
  return answer.healthy ? 0 : kFailed;
}

int unban(const Store& store, const std::string& who) {
  const std::size_t removed = store.removeBans(who);
  if (removed > 0) tellServer(store, "--unban " + forLog(who));
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

int serve(Options options, const std::filesystem::path& logFile) {
  allowManyConnections();
  asio::io_context io(1);
  std::optional<LogWriter> log;
  logFile.empty() ? log.emplace(STDERR_FILENO) : log.emplace(logFile);
  options.log = [&log](std::string_view text) { log->write(text); };
  const std::string address = options.address;
  const std::string folder = options.folder.string();
  kelvaron::server::Server server(io, std::move(options));
  asio::signal_set signals(io, SIGINT, SIGTERM, SIGHUP);
  signals.add(SIGUSR1);
  std::function<void()> awaitSignal = [&] {
    signals.async_wait([&](std::error_code error, int number) {
      if (error) return;
      if (number == SIGHUP) {
        log->reopen();
        server.reload();
      }
      if (number == SIGUSR1) server.logStatistics();
      if (number == SIGINT || number == SIGTERM) {
        server.end(number == SIGINT ? "signal INT" : "signal TERM");
      }
      if (!server.hasStopped()) awaitSignal();
    });
  };
  awaitSignal();
  server.onStopped = [&] { signals.cancel(); };
  std::cout << "kelvaron-server listens on " << kelvaron::server::place(address, server.port())
            << ", folder " << folder << std::endl;
  kelvaron::server::tellManager("READY=1");
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
  if (line.status) return tellStatus(store, line.statusJson);
  if (line.newBan) return addBan(store, *line.newBan);
  if (line.bans) return listBans(store);
  if (line.unbanned) return unban(store, *line.unbanned);
  const std::string where = kelvaron::server::place(options.address, options.port);
  try {
    return serve(std::move(options), line.log);
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
