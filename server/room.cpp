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

Client* Room::find_shown(std::string_view shown) const { return find(bare_nick(shown)); }

void Room::join(Client& client) {
  members_.emplace(fold(client.nick), &client);
  list_changed();
  client.connection->send(list(), Connection::Kind::kUserList);
}

void Room::leave(const Client& client) {
  members_.erase(fold(client.nick));
  list_changed();
}

void Room::send_to_all(std::string lines) {
  send_announcements();
  const auto shared = std::make_shared<const std::string>(std::move(lines));
  for (const auto& [key, member] : members_) member->connection->send(shared);
}

void Room::announce(std::string_view text) {
  announcements_ += make_line({"Announce", text});
  set_timer();
}

void Room::list_changed() {
  list_.reset();
  list_due_ = true;
  set_timer();
}

void Room::set_timer() {
  if (timer_set_) return;
  timer_set_ = true;
  timer_.expires_after(std::chrono::milliseconds(settings_.list_delay_ms) +
                       kDelayPerMember * members_.size());
  timer_.async_wait([this, alive = std::weak_ptr(alive_)](std::error_code error) {
    if (error || alive.expired()) return;
    timer_set_ = false;
    send_announcements();
    if (!std::exchange(list_due_, false)) return;
    for (const auto& [key, member] : members_) {
      member->connection->send(list(), Connection::Kind::kUserList);
    }
  });
}

void Room::send_announcements() {
  if (!announcements_.empty()) send_to_all(std::exchange(announcements_, {}));
}

const SharedLines& Room::list() {
  if (!list_) {
    std::string lines = make_line({"Userscl"});
    for (const auto& [key, member] : members_) lines += make_line({"Users", member->entry()});
    list_ = std::make_shared<const std::string>(std::move(lines));
  }
  return list_;
}

}  // namespace kelvaron::server
