// A line of the chat protocol: fields separated by TAB, field 0 the keyword, ended by CR LF.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace kelvaron {

/// Remote port of every chat server.
inline constexpr unsigned short kChatPort = 3069;

class ProtocolLine {
 public:
  /// Splits the text of a line, without its end, at every TAB. An empty text has no fields at all.
  explicit ProtocolLine(std::string_view text);

  /// Fault 9 when the line has no such field.
  std::string_view field(std::size_t index) const;
  std::string_view keyword() const { return field(0); }

 private:
  std::vector<std::string_view> fields_;
};

/// Joins keyword and fields to a whole line. Nothing is escaped, so a TAB in a field begins a new
/// one; CR, LF and NUL become blanks, so that a field never begins a new line.
std::string joinLine(std::string_view keyword, std::initializer_list<std::string_view> fields);
std::string joinLine(std::string_view keyword, const std::vector<std::string_view>& fields);

}  // namespace kelvaron
