// CSDoom: one player runs a dedicated server and is marked in the user list; others join him there.
#pragma once

#include <string_view>

namespace kelvaron {

class Client;
class frmMain;

inline constexpr const char* kHostingStatus = "Hosting CSDOOM Server";

/// Starts the server and the host's own client of it, and marks the host in the user list.
void launchCsServer(Client& client, frmMain& room);
/// Takes the mark off. The server and its client go on.
void returnFromCs(Client& client, frmMain& room);
/// Asks the current entry's machine for its address; the game begins when it comes.
void joinCsGame(Client& client, frmMain& room);
/// Starts the CSDoom client on the host at this address.
void startCsClient(Client& client, std::string_view csClientPath, std::string_view address);

}  // namespace kelvaron
