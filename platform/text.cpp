#include "platform/text.h"

namespace kelvaron {

std::string withoutLineEnds(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool pair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
    if (pair) ++at;
    result += text[at] == '\r' || text[at] == '\n' ? ' ' : text[at];
  }
  return result;
}

}  // namespace kelvaron
