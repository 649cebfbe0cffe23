// The lines that the client writes, one function a keyword: the one place for field orders.
//
// `ownName` is the nickname as typed at login, `shownName` the one with a moderator's mark,
// `listEntry` an entry of the user list with its tag, `localAddress` the connection's own address
// in dotted decimal. Each function gives the whole line with its end.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "session/game_offer.h"

namespace kelvaron::outbound {

using Text = std::string_view;

// The session.
std::string name(Text ownName, Text localAddress);
std::string motd();
std::string ip(Text localAddress);
std::string ipBan(Text localAddress);

// The room. `sentence` begins with the own name.
std::string action(Text sentence);
std::string message(Text ownName, Text text);
std::string privateMessage(Text recipient, Text text, Text ownName);
/// `soundName` has no extension.
std::string sound(Text soundName);
std::string away(Text ownName);
/// Ends `away` and `hostingCs` alike.
std::string returnCs(Text ownName);

// Games.
/// With nobody invited an empty field stands for the nicknames.
std::string game(const GameOffer& offer);
std::string accept(Text host, Text shownName);
std::string decline(Text host, Text shownName);
std::string start(Text guest);
std::string inGame(Text shownName);
std::string returnFromGame(Text shownName);
std::string hostingCs(Text ownName);
std::string userIp(Text listEntry, Text ownName);
std::string okReturnIp(Text requester, Text localAddress);

// Profiles. The eleven texts of a profile in the order of the line: first name, last name, age,
// sex, ICQ number, e-mail address, city, state, country, home page, comments.
using ProfileTexts = std::array<std::string, 11>;
std::string getProfile2(Text listEntry, Text shownName);
std::string profile(Text requester, Text shownName, Text version, const ProfileTexts& texts);
std::string profile2(Text requester, Text shownName, Text version, const ProfileTexts& texts);

// Ping and files.
std::string pingUser(Text listEntry, Text shownName);
std::string returnPing(Text localAddress, Text shownName, Text requester);
std::string getIpForFile(Text listEntry, Text shownName);
std::string okUserForFile(Text requester, Text localAddress);

// Moderation.
std::string requestOp(Text ownName, Text eMail, Text password);
std::string kick(Text user, Text reason);
std::string ban(Text user, Text reason);
std::string getIp(Text user);
std::string serverMessage(Text text);
std::string theKick(Text ownName, Text user, Text password, Text eMail);

}  // namespace kelvaron::outbound
