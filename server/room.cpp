// A list is built once and shared by all queues. Changes are collected for a short time, a longer
// one the larger the room: what a list costs grows with the square of the room. Lists also have a
// budget of bytes, and while it is spent changes gather.
#include "server/room.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "server/line.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::chrono::microseconds kDelayPerMember(200);

}  // namespace

Client* Room::findLike(std::string_view nick) const {
  const auto found = members_.find(likeness(nick));
  return found == members_.end() ? nullptr : found->second;
}

Client* Room::find(std::string_view nick) const {
  Client* like = findLike(nick);
  return like != nullptr && fold(like->nick) == fold(nick) ? like : nullptr;
}

Client* Room::findShown(std::string_view shown) const { return find(bareNick(shown)); }

void Room::join(Client& client) {
  members_.emplace(likeness(client.nick), &client);
  listChanged();
  client.connection->send(list(), Connection::Kind::userList);
  statistics_.countLists(1);
}

void Room::leave(const Client& client) {
  members_.erase(likeness(client.nick));
  listChanged();
}

void Room::sendToAll(std::string_view lines) {
  sendAnnouncements();
  if (!lines_ || !lines_->takes(lines.size())) lines_ = std::make_shared<Chunk>("", held_);
  const std::size_t begin = lines_->text().size();
  lines_->append(lines);
  const Piece piece{lines_, begin, lines_->text().size()};
  for (const auto& [key, member] : members_) member->connection->send(piece);
}

void Room::announce(std::string_view text) {
  announcements_ += makeLine({"Announce", std::string(kServerMark) + std::string(text)});
  setTimer(gatherTime());
}

void Room::listChanged() {
  list_ = {};
  listDue_ = true;
  setTimer(gatherTime());
}

Clock::duration Room::gatherTime() const {
  return std::chrono::milliseconds(settings_.listDelayMs) + kDelayPerMember * members_.size();
}

void Room::setTimer(Clock::duration time) {
  if (timerSet_) return;
  timerSet_ = true;
  timer_.expires_after(time);
  timer_.async_wait(alive_.guard([this](std::error_code error) {
    if (error) return;
    timerSet_ = false;
    sendAnnouncements();
    if (!listDue_) return;
    // The next announcement may be sooner.
    if (const auto now = Clock::now(); now < nextList_) {
      return setTimer(std::min<Clock::duration>(nextList_ - now, gatherTime()));
    }
    sendList();
  }));
}

void Room::sendList() {
  listDue_ = false;
  for (const auto& [key, member] : members_) {
    member->connection->send(list(), Connection::Kind::userList);
  }
  statistics_.countLists(members_.size());
  const std::chrono::duration<double> spent(static_cast<double>(list().size()) /
                                            static_cast<double>(settings_.listBytesPerSecond));
  nextList_ = Clock::now() + std::chrono::duration_cast<Clock::duration>(spent);
}

void Room::sendAnnouncements() {
  if (!announcements_.empty()) sendToAll(std::exchange(announcements_, {}));
}

const Piece& Room::list() {
  if (!list_.chunk) {
    std::string lines = makeLine({"Userscl"});
    for (const auto& [key, member] : members_) lines += makeLine({"Users", member->entry()});
    const std::size_t size = lines.size();
    list_ = {std::make_shared<Chunk>(std::move(lines), held_), 0, size};
  }
  return list_;
}

}  // namespace kelvaron::server
