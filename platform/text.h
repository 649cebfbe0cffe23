// Text inside Kelvaron: one byte per character, code page 1252, as on the wire and in the files.
// The one place that knows upper and lower case and the way to and from Unicode.
#pragma once

#include <string>
#include <string_view>

namespace kelvaron {

/// The mark "¥" that stands before a moderator's shown name: byte 165.
inline constexpr char kModeratorMark = '\xA5';
inline constexpr std::string_view kModeratorMarkText = "\xA5";
inline constexpr std::string_view kLineEnd = "\r\n";

/// The letters of code page 1252 in upper case; "ß" and the rest stay as they are.
std::string upper(std::string_view text);
std::string lower(std::string_view text);

/// The Unicode character of a byte. The five bytes that the code page leaves open (129, 141, 143,
/// 144, 157) are their own numbers.
char16_t unicodeOf(unsigned char byte);

std::string toUtf8(std::string_view text);
/// From UTF-8. What the code page lacks, and what is not UTF-8, becomes "?".
std::string fromUtf8(std::string_view utf8);

/// Each line end (CR LF, CR or LF) as one blank, for one-line boxes.
std::string withoutLineEnds(std::string_view text);

/// Whether a byte is a control character, or one of the five that are no character of the code
/// page.
bool isControl(char character);

}  // namespace kelvaron
