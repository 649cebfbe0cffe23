// CSDoom: one player runs a dedicated server and is marked in the user list; others join him there.
#pragma once

#include <string>
#include <string_view>

namespace kelvaron {

class Client;
class FaultRule;
class frmMain;

inline constexpr const char* kHostingStatus = "Hosting CSDOOM Server";

/// Starts the server and the host's own client of it, and marks the host in the user list.
void launchCsServer(Client& client, frmMain& room);
/// Takes the mark off, and tells the server that its host is through with it: an adapter's ends,
/// any other goes on, and so does the host's game.
void returnFromCs(Client& client, frmMain& room);
/// Asks the current entry's machine for its address; the game begins when it comes.
void joinCsGame(Client& client, frmMain& room);
/// The server has told an address: the game there begins when it answers a Join of the user's, or
/// the user says Yes. Faults of reading the configuration for one that nobody asked for meet
/// `rule`.
void joinAt(Client& client, const std::string& address, const FaultRule& rule);
/// Starts the CSDoom client on the host at this address.
void startCsClient(Client& client, std::string_view csClientPath, std::string_view address);

}  // namespace kelvaron
