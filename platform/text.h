// Texts of the client. What it knows of characters is in base/code_page.h.
#pragma once

#include <string>
#include <string_view>

namespace kelvaron {

/// The mark "¥" that stands before a moderator's shown name: byte 165.
inline constexpr char kModeratorMark = '\xA5';
inline constexpr std::string_view kModeratorMarkText = "\xA5";
inline constexpr std::string_view kLineEnd = "\r\n";

/// Each line end (CR LF, CR or LF) as one blank, for one-line boxes.
std::string withoutLineEnds(std::string_view text);

}  // namespace kelvaron
