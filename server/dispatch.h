// From a line to its handler.
#pragma once

#include <string_view>

#include "server/client.h"

namespace kelvaron::server {

class Lobby;

/// Runs the handler of the line's keyword. A keyword that the server doesn't know, a line with too
/// few fields and a line at the wrong time are passed over.
void dispatch(Lobby& lobby, Client& client, std::string_view line);

/// Whether the line is the one that tells a nickname.
bool isLogin(std::string_view line);
/// What a line costs of its sender's allowance: more for a long one, and for one that changes the
/// list that everybody gets.
double priceOf(std::string_view line);

}  // namespace kelvaron::server
