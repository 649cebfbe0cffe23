#include "native/command_text.h"

#include <algorithm>
#include <array>

#include "platform/text.h"

namespace kelvaron {
namespace {

using Kind = DiskName::Kind;

// The most words of one path. It bounds the look-ups that a text can cause.
constexpr std::size_t kMostWordsOfAPath = 32;

enum class Wants { file, folderOfNewFile };

struct PathSwitch {
  std::string_view name;
  Wants wants;
};
constexpr std::array kPathSwitches = {PathSwitch{"-iwad", Wants::file},
                                      PathSwitch{"-file", Wants::file},
                                      PathSwitch{"-record", Wants::folderOfNewFile}};

bool isSwitch(std::string_view word) { return word.starts_with('-') || word.starts_with('+'); }

bool isFile(const std::optional<DiskName>& name) {
  return name && (name->kind == Kind::file || name->kind == Kind::program);
}

/// The words as they stand in the text, so that neighbours can be joined with the blanks between.
std::vector<std::string_view> wordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    std::string_view word = text.substr(at, end - at);
    while (word.ends_with('\r') || word.ends_with('\n')) word.remove_suffix(1);
    if (!word.empty()) words.push_back(word);
    at = end + 1;
  }
  return words;
}

class Cutter {
 public:
  Cutter(std::string_view text, const FindName& find) : words_(wordsOf(text)), find_(find) {}

  CutCommand cut() {
    CutCommand result;
    if (words_.empty()) return result;
    takeLocation(result);
    while (at_ < words_.size()) {
      const std::string_view word = words_[at_++];
      result.arguments.push_back(isSwitch(word) ? toUtf8(word) : plain(word));
      if (at_ == words_.size() || isSwitch(words_[at_])) continue;
      const auto* const known =
          std::ranges::find(kPathSwitches, lower(word),
                            [](const PathSwitch& each) { return std::string(each.name); });
      if (known == kPathSwitches.end()) continue;
      result.arguments.push_back(known->wants == Wants::file ? fileBehind() : newFileBehind());
    }
    return result;
  }

 private:
  /// The text from word `first` to the word before `end`.
  std::string_view join(std::size_t first, std::size_t end) const {
    const std::string_view& last = words_[end - 1];
    return {words_[first].data(),
            static_cast<std::size_t>(last.data() + last.size() - words_[first].data())};
  }

  /// Where the words that could belong to a path from `first` on end: before the next switch.
  std::size_t endOfPath(std::size_t first) const {
    const std::size_t limit = std::min(words_.size(), first + kMostWordsOfAPath);
    std::size_t end = first + 1;
    while (end < limit && !isSwitch(words_[end])) ++end;
    return end;
  }

  void takeLocation(CutCommand& result) {
    // Unless the disk says otherwise, the location reaches to the first switch.
    std::size_t taken = endOfPath(0);
    const std::size_t limit = std::min(words_.size(), kMostWordsOfAPath);
    for (std::size_t end = 1; end <= limit; ++end) {
      auto found = find_(join(0, end));
      // Something shorter that isn't a program may be the beginning of a longer location.
      if (!found || (found->kind != Kind::program && end != taken && !isFile(found))) continue;
      const bool isProgram = found->kind == Kind::program;
      result.program = std::move(found);
      at_ = end;
      if (isProgram) break;
    }
    if (!result.program && isSwitch(words_[0])) return;  // no location at all
    if (!result.program) at_ = taken;
    result.location = join(0, at_);
  }

  std::string fileBehind() {
    const std::size_t first = at_;
    const std::size_t last = endOfPath(first);
    for (std::size_t end = first + 1; end <= last; ++end) {
      const auto found = find_(join(first, end));
      if (!isFile(found)) continue;
      at_ = end;
      return found->path;
    }
    at_ = last;
    return toUtf8(withSlashes(join(first, last)));
  }

  std::string newFileBehind() {
    const std::size_t first = at_;
    const std::size_t last = endOfPath(first);
    for (std::size_t end = last; end > first; --end) {
      const std::string path = withSlashes(join(first, end));
      const std::size_t slash = path.rfind('/');
      if (slash == std::string::npos) continue;
      const auto folder = find_(path.substr(0, slash + 1));
      if (!folder || folder->kind != Kind::folder) continue;
      at_ = end;
      const std::string name = toUtf8(std::string_view(path).substr(slash + 1));
      return folder->path + (folder->path.ends_with('/') ? "" : "/") + name;
    }
    at_ = last;
    return toUtf8(withSlashes(join(first, last)));
  }

  std::string plain(std::string_view word) const {
    if (word.find_first_of("/\\") == std::string_view::npos) return toUtf8(word);
    const auto found = find_(word);
    return found ? found->path : toUtf8(word);
  }

  std::vector<std::string_view> words_;
  const FindName& find_;
  std::size_t at_ = 0;
};

}  // namespace

CutCommand cutCommand(std::string_view command, const FindName& find) {
  return Cutter(command, find).cut();
}

std::string startProblem(const CutCommand& command) {
  const auto holdsNul = [](const std::string& text) { return text.find('\0') != text.npos; };
  if (std::ranges::any_of(command.arguments, holdsNul)) {
    return "was not started: an argument holds a character that no program can take";
  }
  if (!command.program) {
    return namesDrive(command.location)
               ? "was not found: this system has no drives, only folders such as /home"
               : "was not found";
  }
  switch (command.program->kind) {
    case Kind::program:
      return "";
    case Kind::file:
      return "is not executable";
    case Kind::folder:
      return "is a folder";
    case Kind::other:
      break;
  }
  return "is not a program";
}

}  // namespace kelvaron
