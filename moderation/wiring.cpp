#include "moderation/wiring.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "base/code_page.h"
#include "chat/main_window.h"
#include "moderation/status_request.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {
namespace {

/// The two ways to be rid of a user, which differ in their words and their line.
struct Removal {
  const char* title;
  const char* whom;
  const char* why;
  std::string (*line)(outbound::Text user, outbound::Text reason);
};

constexpr Removal kKick = {"Kick User", "Enter the usernick you want to kick",
                           "Enter the reason, if any, for kicking this user", outbound::kick};
constexpr Removal kBan = {"Ban User", "Enter the usernick you want to ban",
                          "Enter the reason, if any, for banning this user", outbound::ban};

std::string ask(const Client& client, const std::string& prompt, const std::string& title,
                const std::string& initial = {}) {
  return client.ports.dialogs.InputBox(prompt, title, initial);
}

// Whether an entry of the list is this one whole, its tag included.
bool isListed(const frmMain& room, std::string_view user) {
  const std::string wanted = lower(user);
  return std::ranges::any_of(room.List1.entries(),
                             [&](const std::string& entry) { return lower(entry) == wanted; });
}

void remove(Client& client, const frmMain& room, const Removal& removal) {
  const std::string user = ask(client, removal.whom, removal.title, room.List1.Text());
  if (user.empty()) return;
  if (!isListed(room, user)) {
    client.MsgBox("No user in chat has that name!", box_style::kInformation, "User dosent exist!");
    return;
  }
  // Dismissing this one is giving no reason.
  const std::string reason = ask(client, removal.why, removal.title);
  sendOrTell(client, removal.line(user, reason));
}

void mnuGetIP_Click(Client& client, const frmMain& room) {
  const std::string user = ask(client, "Enter a users IP to get", "Get IP", room.List1.Text());
  if (!user.empty()) sendOrTell(client, outbound::getIp(user));
}

void mnuSendServerMSG_Click(Client& client) {
  const std::string text =
      ask(client, "Enter the message to send to all users.", "Enter Server Message");
  if (!text.empty()) sendOrTell(client, outbound::serverMessage(text));
}

}  // namespace

void wireModeration(Client& client, frmMain& room) {
  room.mnuGetOP.Click = [&client] { client.form<frmGetOP>().Show(); };
  room.mnuKick.Click = [&client, &room] { remove(client, room, kKick); };
  room.mnuBan.Click = [&client, &room] { remove(client, room, kBan); };
  room.mnuGetIP.Click = [&client, &room] { mnuGetIP_Click(client, room); };
  room.mnuSendServerMSG.Click = [&client] { mnuSendServerMSG_Click(client); };
}

}  // namespace kelvaron
