#include "radio/asx_playlist.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/code_page.h"

namespace kelvaron {
namespace {

constexpr std::size_t kMostStreams = 16;
// What may stand in front: a mark of the encoding, blanks, the size of a piece.
constexpr std::size_t kSearchedForStart = 256;

constexpr std::string_view kBlanks = " \t\r\n";

constexpr std::array<std::string_view, 7> kSchemes = {"http://", "https://", "mms://", "mmsh://",
                                                      "mmst://", "mmsu://",  "rtsp://"};

struct Entity {
  std::string_view written;
  char meant;
};
constexpr std::array<Entity, 5> kEntities = {{
    {"&amp;", '&'},
    {"&lt;", '<'},
    {"&gt;", '>'},
    {"&quot;", '"'},
    {"&apos;", '\''},
}};

std::string withoutEntities(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const auto entity = std::ranges::find_if(
        kEntities, [&](const Entity& each) { return text.starts_with(each.written); });
    const bool found = entity != kEntities.end();
    plain += found ? entity->meant : text.front();
    text.remove_prefix(found ? entity->written.size() : 1);
  }
  return plain;
}

bool isClean(std::string_view address) {
  return std::ranges::none_of(address, [](char each) {
    const auto byte = static_cast<unsigned char>(each);
    return byte <= ' ' || byte == 0x7F;
  });
}

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// The value of the attribute HREF in what stands between "<" and ">".
std::string_view hrefOf(std::string_view tag) {
  const std::string capitals = upper(tag);
  std::size_t at = capitals.find("HREF");
  if (at == std::string::npos) return {};
  at = tag.find_first_not_of(kBlanks, at + 4);
  if (at == std::string_view::npos || tag[at] != '=') return {};
  at = tag.find_first_not_of(kBlanks, at + 1);
  if (at == std::string_view::npos) return {};
  const char quote = tag[at];
  if (quote == '"' || quote == '\'') {
    return tag.substr(at + 1, tag.find(quote, at + 1) - at - 1);
  }
  return tag.substr(at, tag.find_first_of(kBlanks, at) - at);
}

}  // namespace

std::optional<WebAddress> parseWebAddress(std::string_view address) {
  constexpr std::string_view kHttp = "HTTP://";
  if (!upper(address.substr(0, kHttp.size())).starts_with(kHttp)) return std::nullopt;
  if (!isClean(address)) return std::nullopt;
  address.remove_prefix(kHttp.size());
  address = address.substr(0, address.find('#'));
  const std::size_t end = std::min(address.find_first_of("/?"), address.size());
  std::string_view host = address.substr(0, end);
  WebAddress parsed;
  parsed.target = address.substr(end);
  if (!parsed.target.starts_with('/')) parsed.target.insert(0, 1, '/');
  // A name and a password in front, which may hold the sign too.
  host.remove_prefix(host.rfind('@') + 1);
  // A numeric address of six groups has colons of its own, in brackets.
  const std::size_t bracket = host.find(']');
  const std::size_t colon = host.find(':', bracket == std::string_view::npos ? 0 : bracket);
  if (colon != std::string_view::npos) {
    const std::string_view port = host.substr(colon + 1);
    const auto [stop, error] = std::from_chars(port.data(), port.data() + port.size(), parsed.port);
    if (error != std::errc{} || stop != port.data() + port.size()) return std::nullopt;
    host = host.substr(0, colon);
  }
  if (bracket != std::string_view::npos && host.starts_with('['))
    host = host.substr(1, bracket - 1);
  parsed.host = host;
  if (parsed.host.empty() || parsed.port == 0) return std::nullopt;
  return parsed;
}

std::optional<std::string> resolveAddress(const std::string& base, std::string_view reference) {
  const std::string_view wanted = trimmed(reference);
  if (wanted.empty() || !isClean(wanted)) return std::nullopt;
  const std::string small = lower(wanted);
  if (std::ranges::any_of(kSchemes, [&](auto scheme) { return small.starts_with(scheme); })) {
    return std::string(wanted);
  }
  const std::size_t firstMark = small.find_first_of(":/?");
  const bool hasScheme = firstMark != std::string::npos && small[firstMark] == ':';
  const std::size_t host = base.find("://");
  if (hasScheme || host == std::string::npos) return std::nullopt;
  if (wanted.starts_with("//")) return base.substr(0, host + 1) + std::string(wanted);
  const std::size_t path = std::min(base.find_first_of("/?", host + 3), base.size());
  if (wanted.starts_with('/')) return base.substr(0, path) + std::string(wanted);
  const std::size_t query = std::min(base.find('?', path), base.size());
  const std::size_t folder = base.rfind('/', query == path ? path : query - 1);
  const bool hasPath = folder != std::string::npos && folder >= path;
  return (hasPath ? base.substr(0, folder + 1) : base.substr(0, path) + "/") + std::string(wanted);
}

bool isAsx(std::string_view page) {
  return upper(page.substr(0, kSearchedForStart)).find("<ASX") != std::string::npos;
}

std::vector<std::string> asxStreams(std::string_view page, const std::string& base) {
  std::vector<std::string> streams;
  std::size_t at = 0;
  while ((at = page.find('<', at)) != std::string_view::npos && streams.size() < kMostStreams) {
    if (page.substr(at).starts_with("<!--")) {
      at = page.find("-->", at);
      continue;
    }
    const std::size_t end = std::min(page.find('>', at), page.size());
    const std::string_view tag = page.substr(at + 1, end - at - 1);
    const std::string name = upper(tag.substr(0, tag.find_first_of(kBlanks)));
    if (name == "REF" || name == "ENTRYREF") {
      if (auto stream = resolveAddress(base, withoutEntities(hrefOf(tag)))) {
        streams.push_back(std::move(*stream));
      }
    }
    at = end;
  }
  return streams;
}

}  // namespace kelvaron
