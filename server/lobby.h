// The lobby: all clients with their connections, the room, and what the handlers of lines work
// with.
#pragma once

#include <asio/io_context.hpp>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "server/client.h"
#include "server/room.h"
#include "server/store.h"
#include "server/worker.h"

namespace kelvaron::server {

using Log = std::function<void(std::string_view)>;

class Lobby final : public ConnectionOwner {
 public:
  /// Throws `StoreError` when a file of the store can't be read.
  Lobby(asio::io_context& io, Store store, const Settings& settings, Log log);
  ~Lobby() override;
  Lobby(const Lobby&) = delete;
  Lobby& operator=(const Lobby&) = delete;

  /// Takes in a new connection, or refuses it with a notice when there are too many.
  void adopt(asio::ip::tcp::socket socket);
  /// Closes what has overstayed its time and ends the waits for addresses. Called every so often.
  void sweep(Clock::time_point now);
  /// Reads the reserved nicknames, the bans and the message of the day anew. A file that can't be
  /// read is told to the log, and what it held before stays.
  void reload();
  void closeAll();

  // What the handlers of lines use.

  Room& room() { return room_; }
  const Store& store() const { return store_; }
  Worker& worker() { return worker_; }
  const Settings& settings() const { return settings_; }
  const std::string& motd() const { return motd_; }
  /// The client of that connection if it is still in the room.
  Client* member(std::uint64_t id) const;

  /// The keyword that refuses a login, or nothing when the nickname may come in.
  std::string_view loginRefusal(std::string_view nick, std::string_view address) const;
  void enter(Client& client);
  /// Takes a client out of the room, sends it its last lines and leaves it a moment to close.
  void dismiss(Client& client, std::string lastLines);

  /// Tells one client that it can't have what it asked for.
  void refuse(const Client& client, std::string_view text) const;
  void log(std::string_view text) const { log_(text); }

  /// Keeps what the ban names out from now on; the second time for the same ban does nothing.
  void addBan(const Ban& ban);

  /// Whether this client may try a password now; counts wrong ones by connection and by address.
  bool mayProve(const Client& client);
  void proofFailed(Client& client);

  /// Asks a member for its address on behalf of another.
  void askAddress(const Client& asker, const Client& target);
  void addressTold(const Client& target, std::string_view told);

 private:
  struct AddressQuestion {
    std::uint64_t asker;
    std::uint64_t target;
    std::string nick;
    std::string seen;
    Clock::time_point ends;
  };
  struct FailedProofs {
    long count = 0;
    Clock::time_point forgottenAt;
  };

  void onLine(Connection& connection, std::string_view line) override;
  void onLineTooLong(Connection& connection) override;
  void onClosed(Connection& connection, std::string_view why) override;
  void onUnsent(std::shared_ptr<Connection> connection) override;

  void answer(const AddressQuestion& question, std::string_view told) const;

  asio::io_context& io_;
  Store store_;
  Settings settings_;
  Log log_;
  std::vector<std::string> reserved_;
  std::vector<Ban> bans_;
  std::string motd_;

  std::uint64_t lastId_ = 0;
  std::unordered_map<std::uint64_t, std::unique_ptr<Client>> clients_;
  std::map<std::string, long> connectionsFrom_;
  std::map<std::string, FailedProofs> failedProofs_;
  std::vector<AddressQuestion> questions_;
  std::vector<std::shared_ptr<Connection>> unsent_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  Room room_;
  Worker worker_;
};

}  // namespace kelvaron::server
