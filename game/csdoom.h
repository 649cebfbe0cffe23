// CSDoom: one player runs a dedicated server and is marked in the user list; others join him there.
#pragma once

#include <string>
#include <string_view>

namespace kelvaron {

class Client;
class frmMain;

inline constexpr const char* kHostingStatus = "Hosting CSDOOM Server";

/// Starts the server and the host's own client of it, and marks the host in the user list.
void launchCsServer(Client& client, frmMain& room);
/// Takes the mark off, and tells the server that its host is through with it: an adapter's ends,
/// any other goes on, and so does the host's game.
void returnFromCs(Client& client, frmMain& room);
/// Asks the current entry's machine for its address; the game begins when it comes.
void joinCsGame(Client& client, frmMain& room);
/// Whether the game at an address that the server has told may begin: it answers a Join that the
/// user chose on this connection, else the user is asked. What comes while that question is open is
/// passed over.
bool mayJoin(Client& client, const std::string& address);
/// Starts the CSDoom client on the host at this address.
void startCsClient(Client& client, std::string_view csClientPath, std::string_view address);

}  // namespace kelvaron
