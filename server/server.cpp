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
milliseconds sweep_time(const Settings& settings) {
  const long shortest = std::min({settings.login_timeout_ms, settings.leave_grace_ms,
                                  settings.stall_timeout_ms, settings.address_answer_ms});
  return std::clamp(milliseconds(shortest / 10), kShortestSweep, kLongestSweep);
}

Settings prepared_settings(const Store& store, const Options& options) {
  store.prepare();
  return options.settings ? *options.settings : store.settings();
}

Log or_silence(Log log) {
  return log ? std::move(log) : [](std::string_view /*text*/) {};
}

}  // namespace

Server::Server(asio::io_context& io, Options options)
    : io_(io), acceptor_(io), accept_timer_(io), sweep_timer_(io) {
  const Store store(options.folder);
  const Settings settings = prepared_settings(store, options);
  accept_pause_ = milliseconds(settings.accept_pause_ms);
  sweep_every_ = sweep_time(settings);
  lobby_ = std::make_unique<Lobby>(io, store, settings, or_silence(std::move(options.log)));

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
  accept_timer_.cancel();
  sweep_timer_.cancel();
  lobby_->close_all();
}

void Server::accept() {
  acceptor_.async_accept(
      [this, alive = std::weak_ptr(alive_)](std::error_code error, asio::ip::tcp::socket socket) {
        if (alive.expired() || stopped_) return;
        if (error) {
          if (!accept_failed_) lobby_->log("no connection can be taken in: " + error.message());
          accept_failed_ = true;
          return pause_accepting();
        }
        accept_failed_ = false;
        lobby_->adopt(std::move(socket));
        accept();
      });
}

// With no file descriptor left an accept fails at once, again and again.
void Server::pause_accepting() {
  accept_timer_.expires_after(accept_pause_);
  accept_timer_.async_wait([this, alive = std::weak_ptr(alive_)](std::error_code /*ignored*/) {
    if (!alive.expired() && !stopped_) accept();
  });
}

void Server::sweep() {
  sweep_timer_.expires_after(sweep_every_);
  sweep_timer_.async_wait([this, alive = std::weak_ptr(alive_)](std::error_code /*ignored*/) {
    if (alive.expired() || stopped_) return;
    lobby_->sweep(Clock::now());
    sweep();
  });
}

}  // namespace kelvaron::server
