// Listening, taking connections in, and the clock of the lobby.
#include "server/server.h"

#include <sys/resource.h>

#include <algorithm>
#include <asio/ip/v6_only.hpp>
#include <utility>

#include "build_settings.h"
#include "server/address.h"
#include "server/file.h"
#include "server/lobby.h"
#include "server/status.h"
#include "server/store.h"

namespace kelvaron::server {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLongestSweep(500);
constexpr milliseconds kShortestSweep(5);
constexpr std::chrono::seconds kFarewell(2);
constexpr milliseconds kFarewellLook(10);
constexpr std::chrono::minutes kBetweenStatistics(10);
// Descriptors for files, the listening socket and what the system's libraries open.
constexpr long kDescriptorReserve = 32;

// Time-outs are met to a tenth of the shortest.
milliseconds sweepTime(const Settings& settings) {
  const long shortest = std::min({settings.loginTimeoutMs, settings.leaveGraceMs,
                                  settings.stallTimeoutMs, settings.addressAnswerMs});
  return std::clamp(milliseconds(shortest / 10), kShortestSweep, kLongestSweep);
}

/// The settings with no more connections than there can be descriptors.
Settings fitted(Settings settings, const Log& log) {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_max == RLIM_INFINITY) return settings;
  const long most = std::max(static_cast<long>(limit.rlim_max) - kDescriptorReserve, 1L);
  if (settings.connections <= most) return settings;
  log("connections: " + std::to_string(settings.connections) +
      " are more than the system's limit of " + "open files allows; there will be " +
      std::to_string(most));
  settings.connections = most;
  return settings;
}

Log orSilence(Log log) {
  return log ? std::move(log) : [](std::string_view /*text*/) {};
}

}  // namespace

Server::Server(asio::io_context& io, Options options)
    : io_(io), acceptor_(io), acceptTimer_(io), sweepTimer_(io) {
  const Store store(options.folder);
  store.prepare();
  claim_ = std::make_unique<FolderClaim>(options.folder);
  const Log log = orSilence(std::move(options.log));
  ownSettings_ = options.settings.has_value();
  const Settings settings = fitted(ownSettings_ ? *options.settings : store.settings(), log);
  lobby_ = std::make_unique<Lobby>(io, store, settings, log);
  statisticsAt_ = Clock::now() + kBetweenStatistics;

  const asio::ip::tcp::endpoint endpoint(asio::ip::make_address(options.address), options.port);
  acceptor_.open(endpoint.protocol());
  acceptor_.set_option(asio::socket_base::reuse_address(true));
  if (endpoint.address().is_v6()) acceptor_.set_option(asio::ip::v6_only(false));
  acceptor_.bind(endpoint);
  acceptor_.listen();
  log("kelvaron-server " + std::string(build::kVersion) + " listens on " +
      place(options.address, port()) + ", folder " + options.folder.string());
  openStatus(options.folder);
  accept();
  sweep();
}

// The room does without: a path may be too long for such a socket.
void Server::openStatus(const std::filesystem::path& folder) {
  try {
    status_ = std::make_unique<StatusSocket>(io_, folder, [this] {
      Status status = lobby_->status();
      if (acceptFailed_) status.problems.emplace_back("no connection can be taken in");
      return status;
    });
    status_->onNote = [this](std::string_view note) { lobby_->log(note); };
  } catch (const std::system_error& error) {
    lobby_->log(std::string("nobody can ask for the status: ") + error.what());
  }
}

Server::~Server() { stop(); }

std::uint16_t Server::port() const { return acceptor_.local_endpoint().port(); }

void Server::reload() {
  lobby_->reload([this](const Settings& settings) {
    if (ownSettings_) return;
    lobby_->use(fitted(settings, [this](std::string_view text) { lobby_->log(text); }));
  });
}

void Server::end(std::string_view why) {
  if (std::exchange(ending_, true)) return stop();
  lobby_->log("the server ends: " + std::string(why));
  stopAccepting();
  lobby_->farewell();
  awaitEmptyRoom(Clock::now() + kFarewell);
}

void Server::awaitEmptyRoom(std::chrono::steady_clock::time_point until) {
  if (lobby_->closeRead() || Clock::now() >= until) return stop();
  acceptTimer_.expires_after(kFarewellLook);
  acceptTimer_.async_wait(alive_.guard([this, until](std::error_code /*ignored*/) {
    if (!stopped_) awaitEmptyRoom(until);
  }));
}

void Server::stopAccepting() {
  std::error_code ignored;
  acceptor_.close(ignored);
  acceptTimer_.cancel();
}

void Server::stop() {
  if (std::exchange(stopped_, true)) return;
  stopAccepting();
  sweepTimer_.cancel();
  if (status_) status_->close();
  lobby_->closeAll();
  if (onStopped) onStopped();
}

void Server::logStatistics() { lobby_->logStatistics(false); }

void Server::accept() {
  acceptor_.async_accept(alive_.guard([this](std::error_code error, asio::ip::tcp::socket socket) {
    if (stopped_ || ending_) return;
    if (error) {
      if (!acceptFailed_) lobby_->log("no connection can be taken in: " + error.message());
      acceptFailed_ = true;
      return pauseAccepting();
    }
    acceptFailed_ = false;
    lobby_->adopt(std::move(socket));
    accept();
  }));
}

// With no file descriptor left an accept fails at once, again and again.
void Server::pauseAccepting() {
  acceptTimer_.expires_after(milliseconds(lobby_->settings().acceptPauseMs));
  acceptTimer_.async_wait(alive_.guard([this](std::error_code /*ignored*/) {
    if (!stopped_ && !ending_) accept();
  }));
}

void Server::sweep() {
  sweepTimer_.expires_after(sweepTime(lobby_->settings()));
  sweepTimer_.async_wait(alive_.guard([this](std::error_code /*ignored*/) {
    if (stopped_) return;
    const Clock::time_point now = Clock::now();
    lobby_->sweep(now);
    if (now >= statisticsAt_) {
      statisticsAt_ = now + kBetweenStatistics;
      lobby_->logStatistics(true);
    }
    sweep();
  }));
}

}  // namespace kelvaron::server
