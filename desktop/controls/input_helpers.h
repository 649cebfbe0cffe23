// What a line of input remembers and completes, apart from any widget.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace kelvaron {

/// Completes the beginning of a nickname, and goes on to the next that begins so.
class NickCompletion {
 public:
  struct Line {
    QString text;
    qsizetype caret;  // in UTF-16 units
    bool operator==(const Line&) const = default;
  };

  /// The line with the word in front of the caret completed: ": " behind a name at the start, a
  /// blank behind one elsewhere. For the line that it gave last it gives the next name. None when
  /// no name begins so, without regard to case.
  std::optional<Line> next(const Line& line, const QStringList& nicks);

 private:
  Line given_{{}, -1};
  qsizetype begin_ = 0;
  QString typed_;
  QString behind_;
  qsizetype index_ = 0;
};

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
