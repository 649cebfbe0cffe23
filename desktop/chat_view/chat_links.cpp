#include "desktop/chat_view/chat_links.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "desktop/chat_view/chat_font.h"
#include "desktop/text_conversion.h"

namespace kelvaron {
namespace {

using namespace std::string_view_literals;

constexpr std::array kSchemes = {"http://"sv, "https://"sv};
/// What is longer is no address that a browser takes.
constexpr std::size_t kLongestLink = 8192;
constexpr std::string_view kEndsLink = "<>\"";
constexpr std::string_view kPunctuation = ".,;:!?'*_~|";
/// Each closing bracket behind its opening one; the quotes are those of code page 1252.
constexpr std::array kBrackets = {"()"sv, "[]"sv, "{}"sv, "\x91\x92"sv, "\x93\x94"sv, "\xAB\xBB"sv};

constexpr bool isLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

constexpr bool isOneOf(std::string_view set, char c) {
  return set.find(c) != std::string_view::npos;
}

constexpr bool continuesLink(char c) { return !isBlank(c) && !isOneOf(kEndsLink, c); }

/// The length of the scheme that a text starts with, in any case; 0 without one.
std::size_t schemeLength(std::string_view text) {
  const auto same = [](char a, char b) {
    return a == (b >= 'A' && b <= 'Z' ? b + ('a' - 'A') : b);
  };
  for (const std::string_view scheme : kSchemes) {
    if (text.size() > scheme.size() &&
        std::equal(scheme.begin(), scheme.end(), text.begin(), same)) {
      return scheme.size();
    }
  }
  return 0;
}

/// How often each character stands in a text.
class Counts {
 public:
  explicit Counts(std::string_view text) {
    for (const char c : text) ++of(c);
  }
  std::size_t& of(char c) { return counts_[static_cast<unsigned char>(c)]; }

 private:
  std::array<std::size_t, 256> counts_{};
};

/// Without what belongs to the sentence around the link: punctuation at its end, and brackets that
/// close without having been opened in it.
std::string_view trimmed(std::string_view link) {
  Counts counts(link);
  while (!link.empty()) {
    const char last = link.back();
    const auto closed = std::ranges::find(kBrackets, last, [](auto pair) { return pair[1]; });
    const bool closes =
        closed != kBrackets.end() && counts.of((*closed)[0]) < counts.of((*closed)[1]);
    if (!closes && !isOneOf(kPunctuation, last)) break;
    --counts.of(last);
    link.remove_suffix(1);
  }
  return link;
}

}  // namespace

std::vector<LinkSpan> findLinks(std::string_view line) {
  std::vector<LinkSpan> result;
  std::size_t from = 0;
  for (;;) {
    const std::size_t mark = line.find("://", from);
    if (mark == std::string_view::npos) return result;
    from = mark + 3;
    for (const std::string_view scheme : kSchemes) {
      const std::size_t before = scheme.size() - 3;
      if (mark < before) continue;
      const std::size_t begin = mark - before;
      const std::size_t length = schemeLength(line.substr(begin));
      if (length != scheme.size() || (begin > 0 && isLetterOrDigit(line[begin - 1]))) continue;
      const auto stop = std::find_if_not(line.begin() + static_cast<std::ptrdiff_t>(begin),
                                         line.end(), continuesLink);
      const auto end = static_cast<std::size_t>(stop - line.begin());
      const std::string_view link = trimmed(line.substr(begin, end - begin));
      if (link.size() > length && link.size() <= kLongestLink && urlOf(link))
        result.push_back({begin, begin + link.size()});
      from = end;
      break;
    }
  }
}

std::optional<LinkSpan> linkAt(std::string_view line, std::size_t column) {
  if (column >= line.size() || isBlank(line[column])) return std::nullopt;
  const auto at = line.begin() + static_cast<std::ptrdiff_t>(column);
  const auto wordEnd = std::find_if(at, line.end(), isBlank);
  const auto before = std::find_if(std::make_reverse_iterator(at), line.rend(), isBlank);
  const auto begin = static_cast<std::size_t>(line.rend() - before);
  const auto length = static_cast<std::size_t>(wordEnd - line.begin()) - begin;
  for (const LinkSpan& link : findLinks(line.substr(begin, length))) {
    if (begin + link.begin <= column && column < begin + link.end) {
      return LinkSpan{begin + link.begin, begin + link.end};
    }
  }
  return std::nullopt;
}

std::optional<QUrl> urlOf(std::string_view link) {
  if (schemeLength(link) == 0) return std::nullopt;
  QUrl url(shownText(link), QUrl::TolerantMode);
  const bool web = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
  if (!web || !url.isValid() || url.host().isEmpty()) return std::nullopt;
  return url;
}

}  // namespace kelvaron
