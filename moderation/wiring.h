// The moderators' entries in the room's Help menu. They are open to everybody: the server judges
// every right, and answers those who lack it.
#pragma once

namespace kelvaron {

class Client;
class frmMain;

/// Gives the room's menu entries of moderation their handlers. The client outlives the room.
void wireModeration(Client& client, frmMain& room);

}  // namespace kelvaron
