#include "chat/completion.h"

#include "base/code_page.h"

namespace kelvaron {

std::optional<Completion::Line> Completion::next(const Line& line,
                                                 const std::vector<std::string_view>& nicks,
                                                 const std::vector<std::string_view>& commands) {
  if (line == given_) {
    ++index_;
  } else {
    const std::string_view front = std::string_view(line.text).substr(0, line.caret);
    begin_ = front.rfind(' ') + 1;  // 0 where there is none
    typed_ = upper(front.substr(begin_));
    behind_ = line.text.substr(line.caret);
    index_ = 0;
  }
  if (typed_.empty()) return std::nullopt;
  std::vector<std::string_view> fitting;
  const bool isCommand = begin_ == 0 && typed_.front() == '/';
  for (const std::string_view each : isCommand ? commands : nicks) {
    if (upper(each).starts_with(typed_)) fitting.push_back(each);
  }
  if (fitting.empty()) return std::nullopt;
  // Behind a command a blank would be part of the name.
  const bool isArgument = begin_ > 0 && line.text.starts_with('/');
  const std::string_view behind = isArgument ? "" : begin_ == 0 && !isCommand ? ": " : " ";
  std::string front = line.text.substr(0, begin_);
  front.append(fitting[index_ % fitting.size()]).append(behind);
  given_ = {front + behind_, front.size()};
  return given_;
}

}  // namespace kelvaron
