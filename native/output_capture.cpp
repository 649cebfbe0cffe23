#include "native/output_capture.h"

#include <algorithm>
#include <vector>

#include "base/code_page.h"
#include "platform/text.h"

namespace kelvaron {
namespace {

constexpr std::size_t kMostLines = 5;
constexpr std::size_t kLongestLine = 200;
constexpr std::size_t kReadFromTheEnd = 16'384;

std::string endOf(int file) {
  std::string text(kReadFromTheEnd, '\0');
  const std::ptrdiff_t count = readEnd(file, text);
  text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return text;
}

std::string readable(std::string_view line) {
  std::string text = fromUtf8(line);
  if (text.size() > kLongestLine) text = text.substr(0, kLongestLine) + "...";
  std::ranges::replace_if(text, isControl, ' ');
  return text;
}

}  // namespace

std::string OutputCapture::last() const {
  const std::string text = endOf(file_.get());
  std::vector<std::string> lines;
  for (std::size_t end = text.size(); lines.size() < kMostLines;) {
    const std::size_t lineEnd = std::string_view(text).substr(0, end).find_last_of("\r\n");
    const std::size_t begin = lineEnd == std::string::npos ? 0 : lineEnd + 1;
    std::string line = readable(std::string_view(text).substr(begin, end - begin));
    if (line.find_first_not_of(' ') != std::string::npos) lines.push_back(std::move(line));
    if (begin == 0) break;
    end = begin - 1;
  }
  std::string result;
  std::ranges::reverse(lines);
  for (const std::string& line : lines) {
    result += kLineEnd;
    result += line;
  }
  return result;
}

}  // namespace kelvaron
