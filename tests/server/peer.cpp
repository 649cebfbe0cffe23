// Blocking sockets with a time-out on each read.
#include "tests/server/peer.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <asio/use_future.hpp>
#include <asio/write.hpp>
#include <chrono>

namespace kelvaron::server {

static constexpr int kPatienceSeconds = 5;

Settings quickSettings(Changes changes) {
  Settings settings;
  settings.burstLines = 100'000;
  settings.listDelayMs = 10;
  settings.leaveGraceMs = 200;
  settings.addressAnswerMs = 200;
  for (const auto& [setting, value] : changes) settings.*setting = value;
  return settings;
}

RunningServer::RunningServer(const std::filesystem::path& folder, Changes changes) {
  const auto log = [this](std::string_view text) {
    const std::lock_guard guard(logMutex_);
    log_.append(text).append("\n");
  };
  server_ = std::make_unique<Server>(io_, Options{.address = "127.0.0.1",
                                                  .port = 0,
                                                  .folder = folder,
                                                  .settings = quickSettings(changes),
                                                  .log = log});
  port_ = server_->port();
  thread_ = std::thread([this] { io_.run(); });
}

RunningServer::~RunningServer() {
  runOnLoop([](Server& server) { server.stop(); });
  thread_.join();
}

void RunningServer::runOnLoop(const std::function<void(Server&)>& call) {
  asio::post(io_, asio::use_future([&] { call(*server_); })).wait();
}

bool eventually(const std::function<bool()>& holds) {
  for (int i = 0; i < kPatienceSeconds * 100; ++i) {
    if (holds()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

bool RunningServer::logs(std::string_view text) {
  return eventually([&] {
    const std::lock_guard guard(logMutex_);
    const std::size_t at = log_.find(text, logRead_);
    if (at != std::string::npos) logRead_ = at + 1;
    return at != std::string::npos;
  });
}

Peer::Peer(std::uint16_t port) : socket_(io_) {
  socket_.connect({asio::ip::address_v4::loopback(), port});
  socket_.set_option(asio::ip::tcp::no_delay(true));
  timeval patience{};
  patience.tv_sec = kPatienceSeconds;
  ::setsockopt(socket_.native_handle(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
}

Peer::Peer(std::uint16_t port, std::string nick) : Peer(port) {
  nick_ = std::move(nick);
  logIn(nick_);
  EXPECT_TRUE(gets(welcome(nick_))) << nick_ << " can't log in";
}

std::string Peer::loginAnswer(std::uint16_t port, const std::string& nick) {
  Peer peer(port);
  peer.logIn(nick);
  return peer.next();
}

void Peer::send(std::string_view line) { sendRaw(std::string(line) + "\r\n"); }

void Peer::sendRaw(std::string_view bytes) {
  std::error_code closedByTheServer;
  asio::write(socket_, asio::buffer(bytes), closedByTheServer);
}

std::string Peer::next() {
  while (true) {
    const std::size_t end = received_.find("\r\n");
    if (end != std::string::npos) {
      std::string line = received_.substr(0, end);
      received_.erase(0, end + 2);
      return line;
    }
    std::array<char, 65536> block{};
    const ssize_t count = ::recv(socket_.native_handle(), block.data(), block.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return "(nothing)";
    if (count <= 0) return "(closed)";
    received_.append(block.data(), static_cast<std::size_t>(count));
  }
}

static bool isEnd(const std::string& line) { return line == "(closed)" || line == "(nothing)"; }

bool Peer::gets(std::string_view line) {
  while (true) {
    const std::string got = next();
    if (got == line) return true;
    if (isEnd(got)) return false;
  }
}

Lines Peer::lines(bool all) {
  const std::string fence = "fence " + std::to_string(++fences_);
  send("PM\t" + nick_ + "\t" + fence + "\t" + nick_);
  const std::string end = "PM\t" + nick_ + "\t" + fence;
  Lines result;
  for (std::string line = next(); line != end; line = next()) {
    if (isEnd(line)) {
      ADD_FAILURE() << nick_ << " gets no more lines: " << line;
      break;
    }
    const std::string keyword = line.substr(0, line.find('\t'));
    const bool common = keyword == "Users" || keyword == "Userscl" || keyword == "Announce";
    if (all || !common) result.push_back(std::move(line));
  }
  return result;
}

bool Peer::getsList(const Lines& entries) {
  Lines newest;
  while (newest != entries) {
    const std::string line = next();
    if (line == "Userscl") newest.clear();
    if (line.starts_with("Users\t")) newest.push_back(line.substr(6));
    if (isEnd(line)) return false;
  }
  return true;
}

}  // namespace kelvaron::server
