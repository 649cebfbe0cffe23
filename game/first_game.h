// The way to a first game: what is installed is offered, else Configure Games opens.
#pragma once

namespace kelvaron {

class Client;
class frmMain;

/// Whether the configuration names enough for at least one of the ten games.
bool somethingToPlay(Client& client);

/// Has the room's hint lead to Configure Games as long as there is nothing to play.
void hintAtFirstGame(Client& client, frmMain& room);
/// The configuration has changed: the hint goes when there is something to play.
void configurationChanged(Client& client);

/// Offers once to take the games that are installed, where nothing is configured. True when the
/// user has taken them: they are saved then.
bool offerInstalled(Client& client);
/// Opens Configure Games, unless the user takes what is installed.
void configureGames(Client& client);

}  // namespace kelvaron
