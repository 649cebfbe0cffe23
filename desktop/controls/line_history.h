// What was sent from a line of input, apart from any widget.
#pragma once

#include <QStringList>
#include <optional>

namespace kelvaron {

/// What was sent, the latest last, and the line that was begun before somebody looked back.
class LineHistory {
 public:
  /// Lines that are kept.
  static constexpr qsizetype kMost = 100;

  void add(const QString& sent);
  /// The line before the one that shows now; `shown` is kept as the line that was begun when it is
  /// none of the history. None at the oldest.
  std::optional<QString> older(const QString& shown);
  /// The line after it, at last the one that was begun.
  std::optional<QString> newer();

 private:
  QStringList sent_;
  QString begun_;
  qsizetype at_ = 0;  // the line that shows; behind the last: the one that was begun
};

}  // namespace kelvaron
