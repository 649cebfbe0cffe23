// Cutting lines into fields, and the one place where lines to the clients are put together.
#include "server/line.h"

#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::string_view kGrantText = "Moderator Privlidges Granted - You are now a moderator.";

template <class Range>
std::string join(const Range& fields) {
  std::string line;
  for (const std::string_view field : fields) {
    if (!line.empty()) line += '\t';
    line += cleaned(field);
  }
  line += "\r\n";
  return line;
}

std::string coloured(Colour colour, std::string_view text) {
  return makeLine({"STATUSTEXT", std::to_string(static_cast<std::uint32_t>(colour)), text});
}

}  // namespace

Fields split(std::string_view line) {
  Fields fields;
  while (fields.size() < kFieldLimit) {
    const std::size_t tab = line.find('\t');
    fields.push_back(line.substr(0, tab));
    if (tab == std::string_view::npos) break;
    line.remove_prefix(tab + 1);
  }
  return fields;
}

std::string makeLine(std::initializer_list<std::string_view> fields) { return join(fields); }
std::string makeLine(const Fields& fields) { return join(fields); }

std::string actionLine(std::string_view text) {
  std::string shown = cleaned(text);
  if (shown == kGrantText) shown.insert(0, "* ");
  return coloured(Colour::kAction, shown);
}

std::string statusLine(Colour colour, std::string_view text) {
  return coloured(colour, std::string(kServerMark) + std::string(text));
}

std::string motdLine(std::string_view text) {
  std::string line = "MOTD\t";
  line += text;
  return line + "\r\n";
}

std::string grantLine() { return coloured(Colour::kGrant, kGrantText); }

}  // namespace kelvaron::server
