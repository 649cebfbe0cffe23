#include "native/command_line.h"

#include <algorithm>
#include <array>

#include "base/code_page.h"

namespace kelvaron {
namespace {

using Kind = DiskName::Kind;

// The most words of one path, and the most look-ups of one command. They bound what a text from the
// network can cost.
constexpr std::size_t kMostWordsOfAPath = 32;
constexpr int kMostLookUps = 128;

enum class Behind { file, files, newFile };

struct PathSwitch {
  std::string_view name;
  Behind behind;
};
constexpr std::array kPathSwitches = {PathSwitch{"-iwad", Behind::file},
                                      PathSwitch{"-file", Behind::files},
                                      PathSwitch{"-record", Behind::newFile}};

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

class Tokenizer {
 public:
  explicit Tokenizer(std::string_view text) : words_(wordsOf(text)) {}

  CommandLine run() {
    if (words_.empty()) return {};
    takeLocation();
    while (at_ < words_.size()) {
      const std::string_view word = words_[at_++];
      result_.arguments.push_back(toUtf8(word));
      const auto known = std::ranges::find(kPathSwitches, lower(word), &PathSwitch::name);
      if (known == kPathSwitches.end()) continue;
      if (known->behind == Behind::newFile) takeNewFile();
      if (known->behind == Behind::file) takeFile();
      while (known->behind == Behind::files && takeFile()) {
      }
    }
    return std::move(result_);
  }

 private:
  /// The text from word `first` to the word before `end`.
  std::string_view join(std::size_t first, std::size_t end) const {
    const std::string_view last = words_[end - 1];
    return {words_[first].data(),
            static_cast<std::size_t>(last.data() + last.size() - words_[first].data())};
  }

  std::optional<DiskName> find(std::string_view path) {
    return lookUps_++ < kMostLookUps ? findOnDisk(path) : std::nullopt;
  }

  /// Where the words that could belong to a path from `first` on end: before the next switch.
  std::size_t endOfPath(std::size_t first) const {
    const std::size_t limit = std::min(words_.size(), first + kMostWordsOfAPath);
    std::size_t end = first;
    while (end < limit && !isSwitch(words_[end])) ++end;
    return end;
  }

  void takeLocation() {
    // The shortest that is a program. Else it reaches to the first switch, or is a file that the
    // message can name.
    at_ = endOfPath(0);
    const std::size_t toSwitch = at_;
    if (toSwitch == 0) return;
    for (std::size_t end = 1; end <= std::min(words_.size(), kMostWordsOfAPath); ++end) {
      auto found = find(join(0, end));
      const bool isProgram = found && found->kind == Kind::program;
      if (!isProgram && !(isFile(found) && end < toSwitch) && !(found && end == toSwitch)) continue;
      result_.program = std::move(found);
      at_ = end;
      if (isProgram) break;
    }
    result_.location = join(0, at_);
  }

  /// Returns whether there was a word to take. A word like a switch belongs to the path when the
  /// disk says so.
  bool takeFile() {
    if (at_ == endOfPath(at_)) return false;
    const std::size_t last = std::min(words_.size(), at_ + kMostWordsOfAPath);
    std::optional<DiskName> found;
    std::size_t end = at_;
    while (end < last && !isFile(found)) found = find(join(at_, ++end));
    result_.arguments.push_back(isFile(found) ? found->path : toUtf8(withFolderMarks(words_[at_])));
    at_ = isFile(found) ? end : at_ + 1;
    return true;
  }

  /// Whether the words before `end` reach into the name behind a folder that is on the disk.
  bool endsFolder(std::size_t end) {
    if (words_[end - 1].find_first_of("/\\") == std::string_view::npos) return false;
    const std::string path = withFolderMarks(join(at_, end));
    const auto folder = find(path.substr(0, path.rfind(kFolderMark) + 1));
    return folder && folder->kind == Kind::folder;
  }

  /// Where the words of a new file's path end: before the next switch, or behind a later one that
  /// is a part of its folder's name.
  std::size_t endOfNewFile() {
    const std::size_t plain = endOfPath(at_);
    if (plain == at_) return plain;
    const std::size_t limit = std::min(words_.size(), at_ + kMostWordsOfAPath);
    for (std::size_t end = plain + 1; end <= limit; ++end) {
      if (endsFolder(end)) return std::max(end, endOfPath(end));
    }
    return plain;
  }

  void takeNewFile() {
    for (std::size_t end = endOfNewFile(); end > at_; --end) {
      const std::string path = withFolderMarks(join(at_, end));
      const std::size_t name = path.rfind(kFolderMark) + 1;
      const auto folder = name == 0 ? std::nullopt : find(path.substr(0, name));
      const bool isFolder = folder && folder->kind == Kind::folder;
      if (!isFolder && end > at_ + 1) continue;
      result_.arguments.push_back((isFolder ? folder->path : toUtf8(path.substr(0, name))) +
                                  toUtf8(path.substr(name)));
      at_ = end;
      return;
    }
  }

  std::vector<std::string_view> words_;
  std::size_t at_ = 0;
  int lookUps_ = 0;
  CommandLine result_;
};

}  // namespace

CommandLine tokenize(std::string_view command) { return Tokenizer(command).run(); }

std::string startProblem(const CommandLine& command) {
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
