#include "session/protocol_line.h"

#include "platform/fault.h"

namespace kelvaron {
namespace {

void appendField(std::string& line, std::string_view field) {
  for (const char character : field) {
    const bool endsLines = character == '\r' || character == '\n' || character == '\0';
    line += endsLines ? ' ' : character;
  }
}

template <class Parts>
void appendFields(std::string& line, const Parts& parts) {
  for (const auto& part : parts) {
    line += '\t';
    appendField(line, part);
  }
}

}  // namespace

ProtocolLine::ProtocolLine(std::string_view text) {
  if (text.empty()) return;
  for (std::size_t begin = 0;;) {
    const std::size_t tab = text.find('\t', begin);
    fields_.push_back(text.substr(begin, tab - begin));
    if (tab == std::string_view::npos) return;
    begin = tab + 1;
  }
}

std::string_view ProtocolLine::field(std::size_t index) const {
  if (index >= fields_.size()) {
    throw Fault(fault_number::kSubscript, "The line has no field " + std::to_string(index));
  }
  return fields_[index];
}

std::string joinLine(std::string_view keyword, std::initializer_list<std::string_view> fields) {
  std::string line(keyword);
  appendFields(line, fields);
  return line += "\r\n";
}

std::string joinLine(std::string_view keyword, const std::vector<std::string_view>& fields) {
  std::string line(keyword);
  appendFields(line, fields);
  return line += "\r\n";
}

}  // namespace kelvaron
