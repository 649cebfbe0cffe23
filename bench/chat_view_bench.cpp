// What the chat view costs: lines taken and shown a second, bytes of memory a line, a resize, and
// a search, beside the toolkit's plain text widget in the same run. Lines have 62 characters in
// two colours and come in turns of the event loop of 100 lines, shown in a visible window that
// follows the end. The view draws at most 100 times a second; "drawn" is with a repaint forced in
// every turn.
#include <malloc.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>
#include <cstdio>
#include <memory>
#include <string>

#include "base/resident_bytes.h"
#include "chat/find.h"
#include "desktop/chat_view/chat_view.h"

namespace kelvaron {
namespace {

constexpr std::size_t kLinesPerTurn = 100;
constexpr Color kNameColor{255, 255, 0};
constexpr Color kWordsColor{220, 220, 220};

struct Line {
  std::string name;
  std::string words;
};

/// 62 characters, different from line to line.
Line makeLine(std::size_t number) {
  Line line{"<player" + std::to_string(number % 100) + "> ",
            "line " + std::to_string(number) + " "};
  line.words.resize(62 - line.name.size(), "abcdefgh "[number % 9]);
  return line;
}

/// Counts the repaints of a widget.
class PaintCounter : public QObject {
 public:
  explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    count += event->type() == QEvent::Paint ? 1U : 0U;
    return false;
  }
  std::size_t count = 0;
};

struct Result {
  double linesPerSecond;
  double bytesPerLine;
};

/// `shown` is called at the end of each turn.
template <typename Append, typename Shown>
Result fill(std::size_t lines, PaintCounter& paints, const char* name, Append append, Shown shown) {
  QCoreApplication::processEvents();
  malloc_trim(0);  // else memory that an earlier run gave back would hide in this one
  paints.count = 0;
  const std::size_t before = residentBytes();
  QElapsedTimer clock;
  clock.start();
  for (std::size_t i = 0; i < lines; ++i) {
    append(makeLine(i));
    if ((i + 1) % kLinesPerTurn == 0) {
      shown();
      QCoreApplication::processEvents();
    }
  }
  const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
  const double count = static_cast<double>(lines);
  const double grown = static_cast<double>(residentBytes()) - static_cast<double>(before);
  const Result result{count / seconds, grown / count};
  std::printf("%-15s %8zu lines: %9.0f lines/s, %6zu repaints, %6.1f bytes/line\n", name, lines,
              result.linesPerSecond, paints.count, result.bytesPerLine);
  return result;
}

template <typename Action>
double milliseconds(Action action) {
  QElapsedTimer clock;
  clock.start();
  action();
  return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Until it is drawn at the new size.
double resizeCost(QWidget& widget) {
  constexpr int kTimes = 10;
  return milliseconds([&] {
           for (int i = 0; i < kTimes; ++i) {
             widget.resize(i % 2 == 0 ? 500 : 800, 600);
             QCoreApplication::processEvents();
             widget.repaint();
           }
         }) /
         kTimes;
}

void appendTo(StyledText& text, const Line& line) {
  text.caretToEnd();
  text.setColor(kNameColor);
  text.insert(line.name);
  text.setColor(kWordsColor);
  text.insert(line.words);
  text.insert("\r\n");
}

enum class Repaints { asTheViewDoes, everyTurn };

Result runChatView(std::size_t lines, Repaints repaints = Repaints::asTheViewDoes) {
  StyledText text;
  ChatView view(text);
  view.resize(800, 600);
  view.show();
  PaintCounter paints(view.viewport());
  const bool each = repaints == Repaints::everyTurn;
  const Result result = fill(
      lines, paints, each ? "ChatView, drawn" : "ChatView",
      [&](const Line& line) { appendTo(text, line); },
      [&] {
        if (each) {
          view.scrollToEnd();
          view.viewport()->repaint();
        }
      });
  std::printf("    at the end: %s; resize %.2f ms", view.atEnd() ? "yes" : "NO", resizeCost(view));
  const double paint = milliseconds([&] {
    for (int i = 0; i < 100; ++i) {
      view.viewport()->repaint();
    }
  });
  bool found = false;
  const double search =
      milliseconds([&] { found = findForward(text, "not in here", {}).has_value(); });
  std::printf("; repaint %.2f ms; a search through all %.1f ms (%s)\n", paint / 100, search,
              found ? "FOUND" : "no match");
  return result;
}

Result runPlainTextEdit(std::size_t lines) {
  QPlainTextEdit view;
  view.setReadOnly(true);
  view.setUndoRedoEnabled(false);
  view.resize(800, 600);
  view.show();
  PaintCounter paints(view.viewport());
  QTextCharFormat name;
  name.setForeground(QColor(kNameColor.red, kNameColor.green, kNameColor.blue));
  QTextCharFormat words;
  words.setForeground(QColor(kWordsColor.red, kWordsColor.green, kWordsColor.blue));
  QTextCursor cursor(view.document());
  const auto append = [&](const Line& line) {
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QString::fromLatin1(line.name.c_str()), name);
    cursor.insertText(QString::fromLatin1(line.words.c_str()), words);
    cursor.insertBlock();
    cursor.endEditBlock();
  };
  QScrollBar* bar = view.verticalScrollBar();
  const Result result =
      fill(lines, paints, "QPlainTextEdit", append, [bar] { bar->setValue(bar->maximum()); });
  std::printf("    resize %.2f ms\n", resizeCost(view));
  return result;
}

void appendAlone(std::size_t lines) {
  const std::size_t before = residentBytes();
  StyledText text;
  const Line line = makeLine(7);
  const double took = milliseconds([&] {
    for (std::size_t i = 0; i < lines; ++i) {
      appendTo(text, line);
    }
  });
  const double count = static_cast<double>(lines);
  std::printf("%-15s %8zu lines: %9.0f lines/s, %6.1f bytes/line (%.1f by its own count)\n",
              "StyledText", lines, count / took * 1e3,
              static_cast<double>(residentBytes() - before) / count,
              static_cast<double>(text.memoryUsed()) / count);
}

}  // namespace
}  // namespace kelvaron

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  using namespace kelvaron;
  appendAlone(1'000'000);
  const Result few = runChatView(10'000);
  const Result many = runChatView(100'000);
  const Result million = runChatView(1'000'000);
  runChatView(100'000, Repaints::everyTurn);
  const Result plainFew = runPlainTextEdit(10'000);
  const Result plainMany = runPlainTextEdit(100'000);
  std::printf(
      "ChatView against QPlainTextEdit: %.0f times at 10,000, %.0f times at 100,000 lines; "
      "at 1,000,000 lines %.2f of the speed at 100,000\n",
      few.linesPerSecond / plainFew.linesPerSecond, many.linesPerSecond / plainMany.linesPerSecond,
      million.linesPerSecond / many.linesPerSecond);
  return 0;
}
