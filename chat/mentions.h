// Which lines of the chat call for the user's attention.
#pragma once

#include <string_view>

namespace kelvaron {

/// Whether a line is for the user whom others call `nick`: a private message, or the nickname as a
/// word of its own in what somebody else says or does. Of a very long line the beginning counts.
bool isForUser(std::string_view line, std::string_view nick);

}  // namespace kelvaron
