// Links in a line of chat: where they stand and what opens.
#pragma once

#include <QUrl>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace kelvaron {

/// Bytes `begin` to `end` of a line.
struct LinkSpan {
  std::size_t begin;
  std::size_t end;
  bool operator==(const LinkSpan&) const = default;
};

/// The http:// and https:// links of a line in order, of at most 8192 bytes each. Punctuation
/// behind a link is not part of it; nor is a closing bracket whose opening one is not in the link.
std::vector<LinkSpan> findLinks(std::string_view line);

/// The link over the byte at `column`, at the cost of the word around it.
std::optional<LinkSpan> linkAt(std::string_view line, std::size_t column);

/// The address to open, or none if the bytes are not a valid http or https address with a host.
std::optional<QUrl> urlOf(std::string_view link);

}  // namespace kelvaron
