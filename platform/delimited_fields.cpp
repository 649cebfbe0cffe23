#include "platform/delimited_fields.h"

#include <algorithm>

namespace kelvaron {
namespace {

constexpr std::string_view kEnds = ",\r\n";

std::string_view takeUpTo(std::string_view& text, std::size_t end) {
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(taken.size());
  return taken;
}

void skipBlanks(std::string_view& text) {
  takeUpTo(text, std::min(text.find_first_not_of(' '), text.size()));
}

void skipEnd(std::string_view& text) {
  if (text.starts_with("\r\n")) {
    text.remove_prefix(2);
  } else if (!text.empty() && kEnds.find(text.front()) != std::string_view::npos) {
    text.remove_prefix(1);
  }
}

std::string_view takeField(std::string_view& text) {
  if (!text.starts_with('"')) return takeUpTo(text, text.find_first_of(kEnds));
  text.remove_prefix(1);
  const std::string_view quoted = takeUpTo(text, text.find('"'));
  if (!text.empty()) text.remove_prefix(1);
  skipBlanks(text);
  return quoted;
}

}  // namespace

std::vector<std::string> readFields(std::string_view text, std::size_t count) {
  std::vector<std::string> fields;
  while (fields.size() < count) {
    skipBlanks(text);
    if (text.empty()) break;
    fields.emplace_back(takeField(text));
    skipEnd(text);
  }
  return fields;
}

}  // namespace kelvaron
