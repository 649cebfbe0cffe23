#include "desktop/controls/input_helpers.h"

namespace kelvaron {

std::optional<NickCompletion::Line> NickCompletion::next(const Line& line,
                                                         const QStringList& nicks) {
  if (line == given_) {
    ++index_;
  } else {
    begin_ = line.caret == 0 ? 0 : line.text.lastIndexOf(' ', line.caret - 1) + 1;
    typed_ = line.text.mid(begin_, line.caret - begin_);
    behind_ = line.text.mid(line.caret);
    index_ = 0;
  }
  if (typed_.isEmpty()) return std::nullopt;
  QStringList fitting;
  for (const QString& nick : nicks) {
    if (nick.startsWith(typed_, Qt::CaseInsensitive)) fitting.append(nick);
  }
  if (fitting.isEmpty()) return std::nullopt;
  const QString front = line.text.left(begin_) + fitting[index_ % fitting.size()] +
                        (begin_ == 0 ? QStringLiteral(": ") : QStringLiteral(" "));
  given_ = {front + behind_, front.size()};
  return given_;
}

void LineHistory::add(const QString& sent) {
  if (sent_.isEmpty() || sent_.last() != sent) sent_.append(sent);
  if (sent_.size() > kMost) sent_.removeFirst();
  at_ = sent_.size();
  begun_.clear();
}

std::optional<QString> LineHistory::older(const QString& shown) {
  if (at_ == 0) return std::nullopt;
  if (at_ == sent_.size()) begun_ = shown;
  return sent_[--at_];
}

std::optional<QString> LineHistory::newer() {
  if (at_ == sent_.size()) return std::nullopt;
  return ++at_ == sent_.size() ? begun_ : sent_[at_];
}

}  // namespace kelvaron
