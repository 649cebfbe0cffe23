// A list is built once and shared by all queues. Changes are collected for a short time, a longer
// one the larger the room: what a list costs grows with the square of the room.
#include "server/room.h"

#include <chrono>
#include <utility>

#include "server/line.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::chrono::microseconds kDelayPerMember(200);

}  // namespace

Client* Room::find(std::string_view nick) const {
  const auto found = members_.find(fold(nick));
  return found == members_.end() ? nullptr : found->second;
}

Client* Room::findShown(std::string_view shown) const { return find(bareNick(shown)); }

void Room::join(Client& client) {
  members_.emplace(fold(client.nick), &client);
  listChanged();
  client.connection->send(list(), Connection::Kind::userList);
}

void Room::leave(const Client& client) {
  members_.erase(fold(client.nick));
  listChanged();
}

void Room::sendToAll(std::string lines) {
  sendAnnouncements();
  const auto shared = std::make_shared<const std::string>(std::move(lines));
  for (const auto& [key, member] : members_) member->connection->send(shared);
}

void Room::announce(std::string_view text) {
  announcements_ += makeLine({"Announce", text});
  setTimer();
}

void Room::listChanged() {
  list_.reset();
  listDue_ = true;
  setTimer();
}

void Room::setTimer() {
  if (timerSet_) return;
  timerSet_ = true;
  timer_.expires_after(std::chrono::milliseconds(settings_.listDelayMs) +
                       kDelayPerMember * members_.size());
  timer_.async_wait([this, alive = std::weak_ptr(alive_)](std::error_code error) {
    if (error || alive.expired()) return;
    timerSet_ = false;
    sendAnnouncements();
    if (!std::exchange(listDue_, false)) return;
    for (const auto& [key, member] : members_) {
      member->connection->send(list(), Connection::Kind::userList);
    }
  });
}

void Room::sendAnnouncements() {
  if (!announcements_.empty()) sendToAll(std::exchange(announcements_, {}));
}

const SharedLines& Room::list() {
  if (!list_) {
    std::string lines = makeLine({"Userscl"});
    for (const auto& [key, member] : members_) lines += makeLine({"Users", member->entry()});
    list_ = std::make_shared<const std::string>(std::move(lines));
  }
  return list_;
}

}  // namespace kelvaron::server
