#include "peer/wiring.h"

#include <algorithm>

#include "chat/main_window.h"
#include "chat/user_list_entry.h"
#include "peer/file_receiver.h"
#include "peer/file_sender.h"
#include "peer/profile.h"
#include "session/asked_for.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {
namespace {

void ask(Client& client, Asked what, const std::string& entry) {
  client.lasting<AskedFor>().ask(client, what, nicknameOf(entry));
}

void mnuGetProfile_Click(Client& client, frmMain& room) {
  const std::string entry = room.List1.Text();
  if (hasTag(entry, kInGameTag)) {
    client.MsgBox(
        "You may not view a profile from a user that is currently in a game. Try again later when "
        "the user returns from his/her game");
    return;
  }
  if (sendOrTell(client, outbound::getProfile2(entry, room.Label1.Caption.get()))) {
    ask(client, Asked::profile, entry);
  }
}

void mnuPing_Click(Client& client, frmMain& room) {
  const std::string entry = room.List1.Text();
  if (hasTag(entry, kInGameTag)) {
    client.MsgBox("You may not ping a user that is currently in a game. Try when the user returns");
    return;
  }
  if (sendOrTell(client, outbound::pingUser(entry, room.Label1.Caption.get()))) {
    ask(client, Asked::ping, entry);
  }
}

void mnuSendFile_Click(Client& client, frmMain& room) {
  const std::string entry = room.List1.Text();
  client.lasting<DroppedFile>().path.clear();
  if (sendOrTell(client, outbound::getIpForFile(entry, room.Label1.Caption.get()))) {
    ask(client, Asked::file, entry);
  }
}

void fserv_Click(Client& client) {
  const auto& sender = client.form<Frm_Server>();
  auto& receiver = client.form<Frm_Client>();
  // A window that nobody has placed yet comes up wherever the desktop likes.
  if (sender.Left != 0 || sender.Top != 0) {
    receiver.Left = sender.Left.get();
    receiver.Top = sender.Top + std::max(sender.Height, sender.ScaleHeight.get());
  }
  receiver.Show();
}

}  // namespace

void wirePeer(Client& client, frmMain& room) {
  room.mnuEditProfile.Click = [&client] { editProfile(client); };
  room.mnuGetProfile.Click = [&client, &room] { mnuGetProfile_Click(client, room); };
  room.mnuPing.Click = [&client, &room] { mnuPing_Click(client, room); };
  room.mnuSendFile.Click = [&client, &room] { mnuSendFile_Click(client, room); };
  room.List1.FileDropped = [&client, &room](const std::string& path) {
    mnuSendFile_Click(client, room);
    client.lasting<DroppedFile>().path = path;
  };
  room.fserv.Click = [&client] { fserv_Click(client); };
}

}  // namespace kelvaron
