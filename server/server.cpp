// Listening, taking connections in, and the clock of the lobby.
#include "server/server.h"

#include <algorithm>
#include <asio/ip/v6_only.hpp>
#include <utility>

#include "server/lobby.h"
#include "server/store.h"

namespace kelvaron::server {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLongestSweep(500);
constexpr milliseconds kShortestSweep(5);

// Time-outs are met to a tenth of the shortest.
milliseconds sweepTime(const Settings& settings) {
  const long shortest = std::min({settings.loginTimeoutMs, settings.leaveGraceMs,
                                  settings.stallTimeoutMs, settings.addressAnswerMs});
  return std::clamp(milliseconds(shortest / 10), kShortestSweep, kLongestSweep);
}

Settings preparedSettings(const Store& store, const Options& options) {
  store.prepare();
  return options.settings ? *options.settings : store.settings();
}

Log orSilence(Log log) {
  return log ? std::move(log) : [](std::string_view /*text*/) {};
}

}  // namespace

Server::Server(asio::io_context& io, Options options)
    : io_(io), acceptor_(io), acceptTimer_(io), sweepTimer_(io) {
  const Store store(options.folder);
  const Settings settings = preparedSettings(store, options);
  acceptPause_ = milliseconds(settings.acceptPauseMs);
  sweepEvery_ = sweepTime(settings);
  lobby_ = std::make_unique<Lobby>(io, store, settings, orSilence(std::move(options.log)));

  const asio::ip::tcp::endpoint endpoint(asio::ip::make_address(options.address), options.port);
  acceptor_.open(endpoint.protocol());
  acceptor_.set_option(asio::socket_base::reuse_address(true));
  if (endpoint.address().is_v6()) acceptor_.set_option(asio::ip::v6_only(false));
  acceptor_.bind(endpoint);
  acceptor_.listen();
  accept();
  sweep();
}

Server::~Server() { stop(); }

std::uint16_t Server::port() const { return acceptor_.local_endpoint().port(); }

void Server::reload() { lobby_->reload(); }

void Server::stop() {
  if (stopped_) return;
  stopped_ = true;
  std::error_code ignored;
  acceptor_.close(ignored);
  acceptTimer_.cancel();
  sweepTimer_.cancel();
  lobby_->closeAll();
}

void Server::accept() {
  acceptor_.async_accept(
      [this, alive = std::weak_ptr(alive_)](std::error_code error, asio::ip::tcp::socket socket) {
        if (alive.expired() || stopped_) return;
        if (error) {
          if (!acceptFailed_) lobby_->log("no connection can be taken in: " + error.message());
          acceptFailed_ = true;
          return pauseAccepting();
        }
        acceptFailed_ = false;
        lobby_->adopt(std::move(socket));
        accept();
      });
}

// With no file descriptor left an accept fails at once, again and again.
void Server::pauseAccepting() {
  acceptTimer_.expires_after(acceptPause_);
  acceptTimer_.async_wait([this, alive = std::weak_ptr(alive_)](std::error_code /*ignored*/) {
    if (!alive.expired() && !stopped_) accept();
  });
}

void Server::sweep() {
  sweepTimer_.expires_after(sweepEvery_);
  sweepTimer_.async_wait([this, alive = std::weak_ptr(alive_)](std::error_code /*ignored*/) {
    if (alive.expired() || stopped_) return;
    lobby_->sweep(Clock::now());
    sweep();
  });
}

}  // namespace kelvaron::server
