// Profiles, pings and files among the room's menu entries.
#pragma once

namespace kelvaron {

class Client;
class frmMain;

/// Gives the room's menu entries for profiles, pings and files their handlers. The client outlives
/// the room.
void wirePeer(Client& client, frmMain& room);

}  // namespace kelvaron
