// The internet radio: three stations, played while one chats. It needs no chat connection.
#pragma once

#include <string_view>

namespace kelvaron {

class Client;
class frmMain;

struct Station {
  std::string_view host;
  /// Path and query of the stream's playlist.
  std::string_view path;
  std::string_view notice;
  std::string_view frameCaption;
};

extern const Station kStationKkrz;
extern const Station kStationKshe;
extern const Station kStationKwjj;

/// Gives the room's menu entries and the timer of the radio their handlers. The client outlives the
/// room.
void wireRadio(Client& client, frmMain& room);

/// What the typed commands do: the station plays, and the room shows no progress by itself.
void playUnwatched(Client& client, frmMain& room, const Station& station);

}  // namespace kelvaron
