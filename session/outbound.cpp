#include "session/outbound.h"

#include <vector>

#include "session/protocol_line.h"

namespace kelvaron::outbound {
namespace {

std::string profileLine(Text keyword, Text requester, Text shownName, Text version,
                        const ProfileTexts& texts) {
  std::vector<Text> fields = {requester, shownName, version};
  fields.insert(fields.end(), texts.begin(), texts.end());
  return joinLine(keyword, fields);
}

}  // namespace

std::string name(Text ownName, Text localAddress) {
  return joinLine("Name", {ownName, localAddress});
}
std::string motd() { return joinLine("MOTD", {}); }
std::string ip(Text localAddress) { return joinLine("IP", {localAddress}); }
std::string ipBan(Text localAddress) { return joinLine("IPBAN", {localAddress}); }

std::string action(Text sentence) { return joinLine("ACTION", {sentence}); }
std::string message(Text ownName, Text text) {
  return joinLine("Message", {std::string(ownName) + ": ", text});
}
std::string privateMessage(Text recipient, Text text, Text ownName) {
  return joinLine("PM", {recipient, text, ownName});
}
std::string sound(Text soundName) { return joinLine("SOUND", {soundName}); }
std::string away(Text ownName) { return joinLine("[AW]", {ownName}); }
std::string returnCs(Text ownName) { return joinLine("RETURNCS", {ownName}); }

std::string game(const GameOffer& offer) {
  const std::string count = std::to_string(offer.invited.size());
  std::vector<Text> fields = {count};
  fields.insert(fields.end(), offer.invited.begin(), offer.invited.end());
  if (offer.invited.empty()) fields.emplace_back();
  fields.insert(fields.end(), {offer.gameKey, offer.wad, offer.skin, offer.guestOptions,
                               offer.hostAddress, offer.hostNick});
  return joinLine("GAME", fields);
}
std::string accept(Text host, Text shownName) { return joinLine("XCEPT", {host, shownName}); }
std::string decline(Text host, Text shownName) { return joinLine("DECLINE", {host, shownName}); }
std::string start(Text guest) { return joinLine("START", {guest}); }
std::string inGame(Text shownName) { return joinLine("INGAME", {shownName}); }
std::string returnFromGame(Text shownName) { return joinLine("RETURN", {shownName}); }
std::string hostingCs(Text ownName) { return joinLine("[CS]", {ownName}); }
std::string userIp(Text listEntry, Text ownName) {
  return joinLine("USERIP", {listEntry, ownName});
}
std::string okReturnIp(Text requester, Text localAddress) {
  return joinLine("OKRETURNIP", {requester, localAddress});
}

std::string getProfile2(Text listEntry, Text shownName) {
  return joinLine("GETPROFILE2", {listEntry, shownName});
}
std::string profile(Text requester, Text shownName, Text version, const ProfileTexts& texts) {
  return profileLine("PROFILE", requester, shownName, version, texts);
}
std::string profile2(Text requester, Text shownName, Text version, const ProfileTexts& texts) {
  return profileLine("PROFILE2", requester, shownName, version, texts);
}

std::string pingUser(Text listEntry, Text shownName) {
  return joinLine("PINGUSER", {listEntry, shownName});
}
std::string returnPing(Text localAddress, Text shownName, Text requester) {
  return joinLine("RETURNPING", {localAddress, shownName, requester});
}
std::string getIpForFile(Text listEntry, Text shownName) {
  return joinLine("GETIPFT", {listEntry, shownName});
}
std::string okUserForFile(Text requester, Text localAddress) {
  return joinLine("OKUSERFT", {requester, localAddress});
}

std::string requestOp(Text ownName, Text eMail, Text password) {
  return joinLine("RequestOP", {ownName, eMail, password});
}
std::string kick(Text user, Text reason) { return joinLine("KICK", {user, reason}); }
std::string ban(Text user, Text reason) { return joinLine("BAN", {user, reason}); }
std::string getIp(Text user) { return joinLine("GETIP", {user}); }
std::string serverMessage(Text text) { return joinLine("MSG", {text}); }
std::string theKick(Text ownName, Text user, Text password, Text eMail) {
  return joinLine("THEKICK", {ownName, user, password, eMail});
}

}  // namespace kelvaron::outbound
