// Code page 1252, in which text goes over the wire, lies in files and is kept in memory: one byte a
// character. The one place that knows upper and lower case, and the way to and from Unicode.
#pragma once

#include <string>
#include <string_view>

namespace kelvaron {

/// The letters in upper case; "ß" and the rest stay as they are.
std::string upper(std::string_view text);
std::string lower(std::string_view text);
char upper(char character);
char lower(char character);

/// The Unicode character of a byte. The five bytes that the code page leaves open (129, 141, 143,
/// 144, 157) are their own numbers.
char16_t unicodeOf(unsigned char byte);

std::string toUtf8(std::string_view text);
/// From UTF-8. What the code page lacks, and what is not UTF-8, becomes "?".
std::string fromUtf8(std::string_view utf8);

/// Whether a byte is a control character, or one of the five that are no character of the code
/// page.
bool isControl(char character);

}  // namespace kelvaron
