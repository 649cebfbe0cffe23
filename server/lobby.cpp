// Coming, going and waiting; what a line does stands with its handler.
#include "server/lobby.h"

#include <algorithm>
#include <asio/post.hpp>
#include <utility>

#include "server/dispatch.h"
#include "server/line.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::chrono::minutes kProofsRemembered(10);
// Each job waiting for a hash holds a client; a queue longer than this takes longer than people
// wait.
constexpr std::size_t kProofsWaiting = 16;

}  // namespace

Lobby::Lobby(asio::io_context& io, Store store, const Settings& settings, Log log)
    : io_(io),
      store_(std::move(store)),
      settings_(settings),
      log_(std::move(log)),
      reserved_(store_.reserved()),
      bans_(store_.bans()),
      motd_(store_.motd()),
      room_(io, settings_),
      worker_(io) {
  (void)store_.moderators();  // read at each use; a fault in the file is better told at the start
}

Lobby::~Lobby() {
  for (const auto& [id, client] : clients_) client->connection->detach();
}

void Lobby::adopt(asio::ip::tcp::socket socket) {
  auto connection = std::make_shared<Connection>(std::move(socket), ++lastId_, settings_, *this);
  const std::string& address = connection->address();
  const bool full = clients_.size() >= static_cast<std::size_t>(settings_.connections);
  const bool tooMany =
      !isLoopback(address) && connectionsFrom_[address] >= settings_.connectionsPerAddress;
  ++connectionsFrom_[address];
  Client& client =
      *clients_.emplace(connection->id(), std::make_unique<Client>(connection)).first->second;
  client.phaseEnds = Clock::now() + std::chrono::milliseconds(settings_.loginTimeoutMs);
  connection->start();
  if (!full && !tooMany) return;
  log(address + " is refused: " + (full ? "the server is full" : "too many connections"));
  refuse(client, full ? "The server is full. Try again later."
                      : "There are too many connections from your address.");
  connection->flush();
  connection->close("refused");
}

void Lobby::sweep(Clock::time_point now) {
  for (const auto& [id, client] : clients_) {
    if (client->phase != Phase::member && now >= client->phaseEnds) {
      client->connection->close(client->phase == Phase::greeting ? "told no nickname"
                                                                 : "asked to leave");
    } else if (client->connection->isStalled(now)) {
      client->connection->close("takes nothing of what is sent");
    }
  }
  const auto expired = [&](const AddressQuestion& question) { return now >= question.ends; };
  for (const AddressQuestion& question : questions_) {
    if (expired(question)) answer(question, "");
  }
  std::erase_if(questions_, expired);
  std::erase_if(failedProofs_, [&](const auto& each) { return now >= each.second.forgottenAt; });
}

// By the worker, so that a ban that is just being stored is among what is read.
void Lobby::reload() {
  struct Files {
    std::vector<std::string> reserved;
    std::vector<Ban> bans;
    std::string motd;
  };
  const auto job = [store = store_] { return Files{store.reserved(), store.bans(), store.motd()}; };
  worker_.run(job, [this](std::optional<Files> files, const std::string& error) {
    if (!files) return log("not read anew: " + error);
    reserved_ = std::move(files->reserved);
    bans_ = std::move(files->bans);
    motd_ = std::move(files->motd);
    log("reserved nicknames, bans and the message of the day are read anew");
  });
}

void Lobby::closeAll() {
  for (const auto& [id, client] : clients_) {
    client->connection->flush();
    client->connection->close("the server ends");
  }
}

Client* Lobby::member(std::uint64_t id) const {
  const auto found = clients_.find(id);
  if (found == clients_.end() || found->second->phase != Phase::member) return nullptr;
  return found->second.get();
}

std::string_view Lobby::loginRefusal(std::string_view nick, std::string_view address) const {
  const auto isNick = [&](const std::string& other) { return fold(other) == fold(nick); };
  if (!isValidNick(nick) || std::any_of(reserved_.begin(), reserved_.end(), isNick)) return "BAD";
  const auto keepsOut = [&](const Ban& ban) { return ban.keepsOut(nick, address); };
  if (std::any_of(bans_.begin(), bans_.end(), keepsOut)) return "banned";
  if (room_.find(nick) != nullptr) return "DOUBLE";
  return {};
}

void Lobby::enter(Client& client) {
  client.phase = Phase::member;
  room_.join(client);
  room_.announce(client.nick + " has entered Kelvaron");
}

void Lobby::dismiss(Client& client, std::string lastLines) {
  if (client.phase == Phase::member) room_.leave(client);
  client.phase = Phase::leaving;
  client.phaseEnds = Clock::now() + std::chrono::milliseconds(settings_.leaveGraceMs);
  client.send(std::move(lastLines));
}

void Lobby::refuse(const Client& client, std::string_view text) const {
  client.send(statusLine(Colour::kRefusal, text));
}

void Lobby::addBan(const Ban& ban) {
  if (std::find(bans_.begin(), bans_.end(), ban) == bans_.end()) bans_.push_back(ban);
}

bool Lobby::mayProve(const Client& client) {
  const auto failed = failedProofs_.find(client.connection->address());
  return !client.proofRunning && client.proofsFailed < settings_.proofsPerConnection &&
         worker_.pending() < kProofsWaiting &&
         (failed == failedProofs_.end() || failed->second.count < settings_.proofsPerAddress);
}

void Lobby::proofFailed(Client& client) {
  ++client.proofsFailed;
  FailedProofs& failed = failedProofs_[client.connection->address()];
  ++failed.count;
  failed.forgottenAt = Clock::now() + kProofsRemembered;
}

void Lobby::askAddress(const Client& asker, const Client& target) {
  questions_.push_back({asker.connection->id(), target.connection->id(), target.nick,
                        target.connection->address(),
                        Clock::now() + std::chrono::milliseconds(settings_.addressAnswerMs)});
  target.send(makeLine({"getip"}));
}

void Lobby::addressTold(const Client& target, std::string_view told) {
  const auto isAbout = [&](const AddressQuestion& question) {
    return question.target == target.connection->id();
  };
  for (const AddressQuestion& question : questions_) {
    if (isAbout(question)) answer(question, told);
  }
  std::erase_if(questions_, isAbout);
}

void Lobby::answer(const AddressQuestion& question, std::string_view told) const {
  const Client* asker = member(question.asker);
  if (asker == nullptr) return;
  std::string text = question.nick;
  text += told.empty() ? " tells no address" : " tells the address " + std::string(told);
  asker->send(statusLine(Colour::kAnswer, text + "; the server sees " + question.seen));
}

void Lobby::onLine(Connection& connection, std::string_view line) {
  dispatch(*this, *clients_.at(connection.id()), line);
}

void Lobby::onLineTooLong(Connection& connection) {
  Client& client = *clients_.at(connection.id());
  const bool wasMember = client.phase == Phase::member;
  dismiss(client, statusLine(Colour::kRefusal, "Your line was too long. You are disconnected."));
  log(connection.address() + " sent a line that is too long");
  if (wasMember) room_.announce(client.nick + " has left Kelvaron");
}

void Lobby::onClosed(Connection& connection, std::string_view why) {
  const auto node = clients_.extract(connection.id());
  const Client& client = *node.mapped();
  const auto from = connectionsFrom_.find(connection.address());
  if (--from->second == 0) connectionsFrom_.erase(from);
  if (client.phase != Phase::member) return;
  room_.leave(client);
  log(client.nick + " (" + connection.address() + ") has left: " + std::string(why));
  room_.announce(client.nick + " has left Kelvaron");
}

// All that one turn of the loop has for a connection goes out together.
void Lobby::onUnsent(std::shared_ptr<Connection> connection) {
  unsent_.push_back(std::move(connection));
  if (unsent_.size() > 1) return;
  asio::post(io_, [this, alive = std::weak_ptr(alive_)] {
    if (alive.expired()) return;
    for (const auto& each : std::exchange(unsent_, {})) each->flush();
  });
}

}  // namespace kelvaron::server
