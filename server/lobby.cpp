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

// How long a login waits for its user's old connection to end, and how often it looks.
constexpr std::chrono::seconds kOldConnection(2);
constexpr std::chrono::milliseconds kLookAgain(20);
// What is to be sent is gathered for so many times as long as sending took the last time, so that a
// busy room costs fewer, larger writes; a quiet one has nothing to wait for.
constexpr int kGatherTimes = 3;
constexpr std::chrono::milliseconds kLongestGather(30);
constexpr std::chrono::seconds kBetweenRefusals(1);
constexpr std::chrono::minutes kBetweenHeldBack(1);

}  // namespace

Lobby::Lobby(asio::io_context& io, Store store, const Settings& settings, Log log)
    : io_(io),
      settings_(settings),
      log_(std::move(log)),
      gatherTimer_(io),
      sources_(settings_),
      room_(io, settings_, statistics_, held_),
      records_(io, std::move(store), log_),
      proofs_(io, settings_) {
  records_.onNewBan = [this](const Ban& ban) { dropBanned(ban); };
}

Lobby::~Lobby() {
  for (const auto& [id, client] : clients_) client->connection->detach();
}

void Lobby::adopt(asio::ip::tcp::socket socket) {
  auto connection =
      std::make_shared<Connection>(std::move(socket), ++lastId_, settings_, *this, held_);
  const std::string& address = connection->address();
  const std::shared_ptr<Source> source = sources_.of(address);
  const bool tooMany = !source->local && source->connections >= settings_.connectionsPerAddress;
  const bool full = !tooMany &&
                    clients_.size() >= static_cast<std::size_t>(settings_.connections) &&
                    !makePlace();
  ++source->connections;
  Client& client = *clients_.emplace(connection->id(), std::make_unique<Client>(connection, source))
                        .first->second;
  client.phaseEnds = Clock::now() + std::chrono::milliseconds(settings_.loginTimeoutMs);
  newcomers_.push_back(connection->id());
  connection->start();
  if (!full && !tooMany) return;
  logRefusal(client,
             address + " is refused: " + (full ? "the server is full" : "too many connections"));
  refuse(client, full ? "The server is full. Try again later."
                      : "There are too many connections from your address.");
  connection->flush();
  connection->close("refused");
}

// Those who have told a nickname meanwhile, or are gone, are dropped from the queue on the way.
bool Lobby::makePlace() {
  while (!newcomers_.empty()) {
    const auto oldest = clients_.find(newcomers_.front());
    newcomers_.pop_front();
    if (oldest == clients_.end() || oldest->second->phase != Phase::greeting) continue;
    if (oldest->second->connection->isClosed()) continue;
    oldest->second->connection->close("gave way to a new one");
    return true;
  }
  return false;
}

void Lobby::sweep(Clock::time_point now) {
  while (!newcomers_.empty()) {
    const auto oldest = clients_.find(newcomers_.front());
    if (oldest != clients_.end() && oldest->second->phase == Phase::greeting) break;
    newcomers_.pop_front();
  }
  for (Client* client : clients()) overstayed(*client, now);
  const auto expired = [&](const AddressQuestion& question) { return now >= question.ends; };
  for (const AddressQuestion& question : questions_) {
    if (expired(question)) answer(question, "");
  }
  std::erase_if(questions_, expired);
  if (const Sources::Untold untold = sources_.sweep(now); untold.refusals > 0) {
    log(std::to_string(untold.refusals) + " more refusals of " + std::to_string(untold.addresses) +
        (untold.addresses == 1 ? " address" : " addresses") + " that left");
  }
  proofs_.sweep(now);
  records_.sweep(now);
  statistics_.sample(now);
  boundMemory();
}

void Lobby::overstayed(Client& client, Clock::time_point now) {
  Connection& connection = *client.connection;
  if (connection.isStalled(now)) return connection.close("takes nothing of what is sent");
  if (client.phase == Phase::member) {
    if (!client.proofEnds || now < *client.proofEnds) return;
    log(forLog(client.nick) + " (" + connection.address() +
        ") is dropped: a moderator's nickname, and no password");
    dismiss(client,
            statusLine(Colour::kRefusal, "The password for this nickname did not come in time."));
    room_.announce(client.nick + " has left Kelvaron");
    return;
  }
  if (now < client.phaseEnds) return;
  if (client.phase == Phase::leaving) return connection.close("asked to leave");
  if (!client.loginWaits) return connection.close("told no nickname");
  logRefusal(client, connection.address() + " is refused: too many logins");
  dismiss(client, statusLine(Colour::kRefusal,
                             "There are too many logins from your address. Try again later."));
}

void Lobby::farewell() {
  room_.sendToAll(statusLine(Colour::kServer, "The server ends now. Try to connect again later."));
  for (const auto& [id, client] : clients_) client->connection->finish();
}

bool Lobby::closeRead() {
  for (Client* client : clients()) {
    if (client->connection->isAllTaken()) client->connection->close("the server ends");
  }
  return clients_.empty();
}

void Lobby::closeAll() {
  gatherTimer_.cancel();
  for (const auto& [id, client] : clients_) {
    client->connection->flush();
    client->connection->close("the server ends");
  }
}

void Lobby::logStatistics(bool onlyTraffic) {
  if (const auto line = statistics_.next(clients_.size(), onlyTraffic)) log(*line);
}

Client* Lobby::member(std::uint64_t id) const {
  const auto found = clients_.find(id);
  if (found == clients_.end() || found->second->phase != Phase::member) return nullptr;
  return found->second.get();
}

std::vector<Client*> Lobby::clients() const {
  std::vector<Client*> all;
  all.reserve(clients_.size());
  for (const auto& [id, client] : clients_) all.push_back(client.get());
  return all;
}

std::string_view Lobby::loginRefusal(std::string_view nick, std::string_view address) const {
  if (!isValidNick(nick) || records_.isReserved(nick)) return "BAD";
  if (records_.isBanned(nick, address)) return "banned";
  if (room_.findLike(nick) != nullptr) return "DOUBLE";
  return {};
}

void Lobby::enter(Client& client) {
  client.phase = Phase::member;
  room_.join(client);
  room_.announce(client.nick + " has entered Kelvaron");
  if (settings_.moderatorProofMs > 0 && records_.moderator(client.nick) != nullptr) {
    const std::chrono::milliseconds time(settings_.moderatorProofMs);
    client.proofEnds = Clock::now() + time;
    refuse(client, "This nickname is a moderator's. Request the operator status within " +
                       std::to_string(std::chrono::ceil<std::chrono::seconds>(time).count()) +
                       " seconds, or you will be disconnected.");
  }
  // Announcements take the colour of the line before them: from here on that of the talk, for
  // everybody alike.
  client.send(
      statusLine(Colour::kTalk, "Welcome, " + client.nick + ". Type /? to see the commands."));
}

void Lobby::dismiss(Client& client, std::string lastLines) {
  if (client.phase == Phase::member) room_.leave(client);
  client.phase = Phase::leaving;
  client.phaseEnds = Clock::now() + std::chrono::milliseconds(settings_.leaveGraceMs);
  client.send(std::move(lastLines));
}

void Lobby::dropBanned(const Ban& ban, const Client* named) {
  for (Client* each : clients()) {
    if (each->phase == Phase::leaving) continue;
    if (!ban.keepsOut(each->nick, each->connection->address())) continue;
    each->banned = each == named;
    const bool wasMember = each->phase == Phase::member;
    // The client closes on `BANUSER`, so the question for its address goes first.
    dismiss(*each,
            (each->banned ? makeLine({"BANIP"}) : "") + makeLine({"BANUSER", ban.by, ban.reason}));
    if (!wasMember) continue;
    room_.announce(each->nick + " was banned by " + ban.by + inBrackets(ban.reason));
  }
}

Status Lobby::status() const {
  Status status = statistics_.status(Clock::now());
  status.clients = clients_.size();
  status.waiting = *held_;
  if (!records_.areStored()) status.problems.emplace_back("bans can't be stored");
  return status;
}

void Lobby::refuse(const Client& client, std::string_view text) {
  statistics_.countRefusal();
  client.send(statusLine(Colour::kRefusal, text));
}

void Lobby::logRefusal(Client& client, std::string_view text) {
  Source& source = *client.source;
  const Clock::time_point now = Clock::now();
  if (now - source.refusalLogged < kBetweenRefusals) {
    ++source.refusalsNotLogged;
    return;
  }
  source.refusalLogged = now;
  const long others = std::exchange(source.refusalsNotLogged, 0);
  log(std::string(text) +
      (others == 0 ? "" : "; " + std::to_string(others) + " more refusals of this address before"));
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

// The address pays for its lines, so that reconnecting gains nothing; behind a tunnel, where all
// come from this machine, each connection pays too.
Clock::duration Lobby::waitFor(Connection& connection, std::string_view line) {
  Client& client = *clients_.at(connection.id());
  Source& source = *client.source;
  const Clock::time_point now = Clock::now();
  const bool login = client.phase == Phase::greeting && isLogin(line);
  if (login) {
    const Fields fields = split(line);
    const Client* old = fields.size() > 1 ? room_.findLike(fields[1]) : nullptr;
    if (old != nullptr && isLeaving(*old, client, now)) return kLookAgain;
  }
  const Rate own{static_cast<double>(settings_.burstLines),
                 static_cast<double>(settings_.linesPerSecond)};
  Clock::duration wait = std::max(client.allowance.waitFor(own, now),
                                  source.lines.waitFor(sources_.lineRate(source), now));
  if (login) wait = std::max(wait, source.logins.waitFor(sources_.loginRate(source), now));
  client.loginWaits = login && wait > Clock::duration::zero();
  if (wait > Clock::duration::zero()) {
    logHeldBack(client, now);
    return wait;
  }
  const double price = priceOf(line);
  client.allowance.take(price);
  source.lines.take(price);
  if (login) source.logins.take(1);
  return wait;
}

void Lobby::logHeldBack(const Client& client, Clock::time_point now) {
  Source& source = *client.source;
  if (now < source.heldBackLoggedUntil) return;
  source.heldBackLoggedUntil = now + kBetweenHeldBack;
  log((client.nick.empty() ? "" : forLog(client.nick) + " at ") + client.connection->address() +
      " is slowed down: " + (client.loginWaits ? "too many logins" : "too many lines"));
}

// A user who leaves and comes back at once is ahead of what the old connection has still to read.
bool Lobby::isLeaving(const Client& old, Client& newcomer, Clock::time_point now) const {
  Connection& connection = *old.connection;
  const bool gone = connection.peerHasClosed();
  if (connection.address() != newcomer.connection->address() || (!gone && !connection.isBehind())) {
    return false;
  }
  if (!newcomer.waitsForOldUntil) newcomer.waitsForOldUntil = now + kOldConnection;
  if (now < *newcomer.waitsForOldUntil) return true;
  if (gone) connection.close("its user is back");
  return gone;
}

void Lobby::onLine(Connection& connection, std::string_view line) {
  statistics_.countLine();
  dispatch(*this, *clients_.at(connection.id()), line);
  boundMemory();
}

// Who takes least of what is sent has most waiting.
void Lobby::boundMemory() {
  const auto limit = static_cast<std::size_t>(settings_.memoryLimit);
  if (*held_ <= limit) return;
  std::vector<std::pair<std::size_t, Client*>> slowest;
  for (Client* client : clients()) slowest.emplace_back(client->connection->kept(), client);
  std::ranges::sort(slowest, std::greater());
  for (const auto& [kept, client] : slowest) {
    if (*held_ <= limit) return;
    client->connection->close("too much waits for all clients, and the most for this one");
  }
}

void Lobby::onLineTooLong(Connection& connection) {
  Client& client = *clients_.at(connection.id());
  const bool wasMember = client.phase == Phase::member;
  dismiss(client, statusLine(Colour::kRefusal, "Your line was too long. You are disconnected."));
  logRefusal(client, connection.address() + " sent a line that is too long");
  if (wasMember) room_.announce(client.nick + " has left Kelvaron");
}

void Lobby::onClosed(Connection& connection, std::string_view why) {
  const auto node = clients_.extract(connection.id());
  const Client& client = *node.mapped();
  --client.source->connections;
  if (client.phase != Phase::member) return;
  room_.leave(client);
  log(forLog(client.nick) + " (" + connection.address() + ") has left: " + std::string(why));
  room_.announce(client.nick + " has left Kelvaron");
}

// All that one turn of the loop has for a connection goes out together, and under load what a few
// milliseconds have.
void Lobby::onUnsent(std::shared_ptr<Connection> connection) {
  unsent_.push_back(std::move(connection));
  if (unsent_.size() > 1) return;
  if (Clock::now() >= gatherUntil_) {
    return asio::post(io_, alive_.guard([this] { flushUnsent(); }));
  }
  gatherTimer_.expires_at(gatherUntil_);
  gatherTimer_.async_wait(alive_.guard([this](std::error_code /*ignored*/) { flushUnsent(); }));
}

void Lobby::flushUnsent() {
  const Clock::time_point begin = Clock::now();
  for (const auto& each : std::exchange(unsent_, {})) each->flush();
  const Clock::time_point end = Clock::now();
  gatherUntil_ = end + std::min<Clock::duration>((end - begin) * kGatherTimes, kLongestGather);
}

}  // namespace kelvaron::server
