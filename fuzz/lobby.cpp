// Fuzz target: bytes from clients of the companion server, with the whole lobby behind them.
//
// The byte 0xFF parts two writes, 0xFE two clients: what stands behind it comes from the next one
// of three, the first of which is a moderator. What each is sent is whole lines of known keywords.
#include <algorithm>
#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "base/non_copyable.h"
#include "fuzz/require.h"
#include "server/password.h"
#include "server/server.h"
#include "server/store.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::server {
namespace {

constexpr std::array kKeywords = std::to_array<std::string_view>(
    {"BANUSER", "STATUSTEXT", "BAD",         "banned",    "XCEPT",   "Announce",
     "Message", "Kicked",     "Kicker",      "DOUBLE",    "Users",   "Userscl",
     "MOTD",    "PM",         "GAME",        "START",     "DECLINE", "PROFILE",
     "getip",   "BANIP",      "GETPROFILE2", "PING",      "THEPING", "GETUSERIP",
     "GETIPFT", "OKUSERIP",   "RETURNFT",    "PLAYSOUND", "MSGBOX"});

void checkLine(std::string_view line) {
  require(std::ranges::find(kKeywords, line.substr(0, line.find('\t'))) != kKeywords.end());
  require(std::ranges::none_of(
      line, [](char each) { return each != '\t' && static_cast<unsigned char>(each) < ' '; }));
}

class Client {
 public:
  Client(asio::io_context& io, std::uint16_t port) : socket_(io) {
    socket_.connect({asio::ip::address_v4::loopback(), port});
    socket_.non_blocking(true);
  }
  void send(std::string_view bytes) {
    std::error_code ignored;
    socket_.write_some(asio::buffer(bytes), ignored);
  }
  /// Whether the text was among what came; false too when the connection has ended.
  bool takes(std::string_view text) {
    std::array<char, 65536> block;
    std::error_code error;
    bool found = false;
    while (const std::size_t count = socket_.read_some(asio::buffer(block), error)) {
      received_.append(block.data(), count);
    }
    open = open && error == asio::error::would_block;
    for (std::size_t end = 0; (end = received_.find("\r\n")) != std::string::npos;) {
      const std::string line = received_.substr(0, end);
      received_.erase(0, end + 2);
      checkLine(line);
      found = found || line.find(text) != std::string::npos;
    }
    return found;
  }

  bool open = true;

 private:
  asio::ip::tcp::socket socket_;
  std::string received_;
};

/// A server with its moderator logged in and granted.
class Room : NonCopyable {
 public:
  Room() {
    static const std::string hash = hashPassword("right");
    Store(folder_.path()).setModerator({"ann", "a", hash});
    Settings settings;
    settings.burstLines = settings.burstLogins = 1'000'000;
    settings.listDelayMs = settings.leaveGraceMs = 0;
    settings.lineLimit = 1024;
    server_ = std::make_unique<Server>(
        io_,
        Options{.address = "127.0.0.1", .port = 0, .folder = folder_.path(), .settings = settings});
    ann_ = connect();
    ann_->send("Name\tann\t1\r\nRequestOP\tann\ta\tright\r\n");
    for (int i = 0; i < 5000 && !ann_->takes("Moderator Privlidges"); ++i) {
      io_.run_for(std::chrono::milliseconds(1));
    }
  }
  ~Room() {
    server_->stop();
    settle();
    server_.reset();
  }

  bool usable() { return ann_->open && Store(folder_.path()).bans().empty(); }
  Client& moderator() { return *ann_; }
  std::unique_ptr<Client> connect() {
    auto client = std::make_unique<Client>(clientIo_, server_->port());
    settle();
    return client;
  }
  void settle() {
    io_.restart();
    for (int i = 0; i < 3; ++i) io_.poll();
  }

 private:
  asio::io_context io_{1};
  asio::io_context clientIo_{1};
  testing::TemporaryFolder folder_;
  std::unique_ptr<Server> server_;
  std::unique_ptr<Client> ann_;
};

}  // namespace
}  // namespace kelvaron::server

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvaron;
  static std::unique_ptr<server::Room> room;
  if (!room || !room->usable()) {
    room.reset();
    room = std::make_unique<server::Room>();
  }
  std::array<std::unique_ptr<server::Client>, 2> strangers = {room->connect(), room->connect()};
  std::array<server::Client*, 3> clients = {&room->moderator(), strangers[0].get(),
                                            strangers[1].get()};
  strangers[0]->send("Name\tbob\t2\r\n");
  std::size_t speaker = 0;
  for (const std::string_view part : pieces(asText(data, size), '\xFE')) {
    for (const std::string_view write : pieces(part, '\xFF')) {
      clients[speaker]->send(write);
      room->settle();
      for (server::Client* each : clients) each->takes("");
    }
    speaker = (speaker + 1) % clients.size();
  }
  return 0;
}
