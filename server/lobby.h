// The lobby: all clients with their connections, the room, and what the handlers of lines work
// with.
#pragma once

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/liveness.h"
#include "server/client.h"
#include "server/log.h"
#include "server/proofs.h"
#include "server/records.h"
#include "server/room.h"
#include "server/source.h"
#include "server/statistics.h"
#include "server/status.h"

namespace kelvaron::server {

class Lobby final : public ConnectionOwner {
 public:
  /// Throws `StoreError` when a file of the store can't be read.
  Lobby(asio::io_context& io, Store store, const Settings& settings, Log log);
  ~Lobby() override;

  /// Takes in a new connection, or refuses it with a notice when there are too many. When all
  /// places are taken, the oldest connection that has told no nickname gives way.
  void adopt(asio::ip::tcp::socket socket);
  /// Closes what has overstayed its time and ends the waits for addresses. Called every so often.
  void sweep(Clock::time_point now);
  /// Reads the files of the folder anew. One that can't be read is told to the log, and all stay as
  /// they were. The settings reach the lobby by `use`.
  void reload(std::function<void(const Settings&)> taken) { records_.reload(std::move(taken)); }
  void use(const Settings& settings) { settings_ = settings; }
  /// Tells the room that the server ends, and closes each connection once its client has read that.
  void farewell();
  /// Closes those whose machines have taken all, after `farewell`. Whether nobody is left.
  bool closeRead();
  void closeAll();
  /// One line of what has happened since the last one; nothing when `onlyTraffic` and there was
  /// none.
  void logStatistics(bool onlyTraffic);
  Status status() const;

  // What the handlers of lines use.

  Room& room() { return room_; }
  Records& records() { return records_; }
  Proofs& proofs() { return proofs_; }
  const Settings& settings() const { return settings_; }
  /// The client of that connection if it is still in the room.
  Client* member(std::uint64_t id) const;

  /// The keyword that refuses a login, or nothing when the nickname may come in.
  std::string_view loginRefusal(std::string_view nick, std::string_view address) const;
  /// Takes a client whose nickname is set into the room, and tells the room.
  void enter(Client& client);
  /// Takes a client out of the room, sends it its last lines and leaves it a moment to close.
  void dismiss(Client& client, std::string lastLines);
  /// Dismisses everybody whom the ban keeps out, and tells the room. `named`, whose nickname the
  /// ban has, is asked for the address.
  void dropBanned(const Ban& ban, const Client* named = nullptr);
  /// Every client, also who hasn't told a nickname yet; only until the next turn of the loop.
  std::vector<Client*> clients() const;

  /// Tells one client that it can't have what it asked for.
  void refuse(const Client& client, std::string_view text);
  void log(std::string_view text) const { log_(text); }
  /// To the log, but no more than one a second and address; how many were left out is told.
  void logRefusal(Client& client, std::string_view text);

  /// Asks a member for its address on behalf of another.
  void askAddress(const Client& asker, const Client& target);
  /// A member tells its address: to all who have asked for it.
  void addressTold(const Client& target, std::string_view told);

 private:
  struct AddressQuestion {
    std::uint64_t asker;
    std::uint64_t target;
    std::string nick;
    std::string seen;
    Clock::time_point ends;
  };

  Clock::duration waitFor(Connection& connection, std::string_view line) override;
  void onLine(Connection& connection, std::string_view line) override;
  void onLineTooLong(Connection& connection) override;
  void onClosed(Connection& connection, std::string_view why) override;
  void onUnsent(std::shared_ptr<Connection> connection) override;
  void onWritten(std::size_t bytes) override { statistics_.countBytes(bytes); }

  bool makePlace();
  void boundMemory();
  void overstayed(Client& client, Clock::time_point now);
  bool isLeaving(const Client& old, Client& newcomer, Clock::time_point now) const;
  void answer(const AddressQuestion& question, std::string_view told) const;
  void flushUnsent();
  void logHeldBack(const Client& client, Clock::time_point now);

  asio::io_context& io_;
  Settings settings_;
  Log log_;
  Statistics statistics_;
  Held held_ = std::make_shared<std::size_t>(0);
  std::uint64_t lastId_ = 0;
  std::unordered_map<std::uint64_t, std::unique_ptr<Client>> clients_;
  // In the order of their coming: who may not have told a nickname yet, and some who have.
  std::deque<std::uint64_t> newcomers_;
  std::vector<AddressQuestion> questions_;
  std::vector<std::shared_ptr<Connection>> unsent_;
  asio::steady_timer gatherTimer_;
  Clock::time_point gatherUntil_{};
  Liveness alive_;
  Sources sources_;
  Room room_;
  Records records_;
  Proofs proofs_;
};

}  // namespace kelvaron::server
