// The chat view: shows a styled text of any length, read-only, with all that a user expects of
// text: selection, copy, find, zoom, links that open, and a voice for screen readers.
//
// Only the lines on the screen are laid out, the scroll bar counts lines, and however many changes
// of the text come, they cost one repaint in 10 ms, so an appended line costs the same at any
// length.
#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QColor>
#include <QElapsedTimer>
#include <QTimer>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "desktop/chat_view/chat_layout.h"
#include "desktop/chat_view/chat_notes.h"
#include "desktop/chat_view/chat_painter.h"
#include "desktop/chat_view/chat_selection.h"
#include "platform/styled_text.h"

class QHelpEvent;
class QMenu;
class QPainter;
class QPushButton;

namespace kelvaron {

class ChatFindBar;
class ChatHint;

class ChatView : public QAbstractScrollArea {
  Q_OBJECT

 public:
  /// Point sizes that zooming reaches.
  static constexpr int kSmallestFont = 8;
  static constexpr int kLargestFont = 40;

  /// Shows `text`, which outlives the view and whose `onChange` it takes.
  explicit ChatView(StyledText& text, QWidget* parent = nullptr);
  ~ChatView() override;

  void setBackground(const QColor& color);
  const StyledText& content() const { return text_; }

  // Selection. The cursor is where the user is; choosing a place moves the text's caret there.
  TextRange selection() const { return selection_.range(); }
  TextPosition cursor() const { return selection_.cursor(); }
  void select(TextPosition anchor, TextPosition cursor);
  void selectAll();
  /// Lines joined by "\n", code page 1252.
  std::string selectedText() const;
  void copy() const;

  // Scrolling. A view at the end stays there; one that is not keeps what it shows.
  ChatRow topRow();
  bool atEnd();
  void scrollRows(std::ptrdiff_t count);
  void scrollToStart();
  void scrollToEnd();
  /// Scrolls as little as shows the place.
  void reveal(TextPosition place);
  /// Whole rows that the view has room for.
  std::size_t pageRows() const;

  // Places on the screen, in pixels of the viewport.
  TextPosition placeAt(QPoint point) const;
  /// The character behind a place; empty if it isn't on the screen.
  QRect characterRect(TextPosition place);
  const ChatLayout& layoutOfText() const { return layout_; }

  // Zoom of this view's text alone.
  int fontSize() const;
  void zoomBy(int points);
  void resetZoom();

  // Find. Each tells whether there was a match, which is then selected and shown.
  void openFindBar();
  void closeFindBar();
  bool findNext();
  bool findPrevious();

  std::unique_ptr<QMenu> makeContextMenu(QPoint point);

  // For whoever has the keyboard in the view's stead: find, zoom and scrolling by pages.
  bool isViewCommand(const QKeyEvent& key) const;
  /// Whether the key was one of these.
  bool viewCommand(const QKeyEvent& key);

  /// A strip above the text with a sentence and what leads on from it; an empty text hides it.
  void setHint(const QString& text, const QString& link);

  /// Lines that are for the user have a mark at the view's edge.
  void setForUser(std::function<bool(std::string_view line)> isForUser);
  const ChatNotes& notes() const { return notes_; }

 Q_SIGNALS:
  /// A link was clicked; always http or https.
  void linkActivated(const QUrl& url);
  void hintFollowed();
  void hintClosed();
  /// The user typed while the view had the focus.
  void typed(const QString& text);
  /// A line for the user has come.
  void addressed();

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  static constexpr int kMargin = 4;  // left and right of the text
  static constexpr int kTopMargin = 2;
  static constexpr int kBottomMargin = 3;

  void textChanged(const StyledText::Change& change);
  /// Brings the scroll state up to what changed since the last turn.
  void settle();
  void settleIfChanged();
  void tellInsertion(const StyledText::Change& change);
  void scrollTo(ChatRow row);
  ChatRow lastPage() const;
  void standAt(ChatRow row, ChatRow last);
  void applyFont();
  int ownFontSize() const;
  void fitWidth();
  ChatRow top() const { return layout_.rowOf(top_); }
  /// The row under a height of the viewport; none below the last one.
  std::optional<ChatRow> rowUnder(int y) const;
  /// The character behind a place, as the screen shows it now.
  std::optional<QRect> placeRect(TextPosition place) const;
  void showInMiddle(TextPosition place);

  void setSelection(const ChatSelection& selection);
  void moveCursor(TextPosition place);
  void offerPrimarySelection() const;
  void dragTo(QPoint point);
  std::optional<ChatLink> linkUnder(QPoint point) const;
  void updateHover();
  bool commandByKey(const QKeyEvent& key);
  bool extendByKey(const QKeyEvent& key);
  bool scrollByKey(const QKeyEvent& key);
  TextPosition rowsAway(std::ptrdiff_t count, qreal goal) const;

  void noteLines();
  void placeNewLines();
  void paintNotes(QPainter& painter, ChatRow row, int y) const;
  bool showTime(const QHelpEvent& event);

  ChatFindBar& findBar();
  void placeBars();
  void keepScrollBarClear(QWidget*& space, Qt::Alignment at, int height);
  void findAsTyped();
  bool find(bool backwards, TextPosition from);

  StyledText& text_;
  ChatLayout layout_;
  ChatSelection selection_;
  QColor background_ = Qt::black;
  int zoom_ = 0;  // points more than the widget's font

  TextPosition top_;       // the first whole row shown is the one of this place
  int topY_ = kTopMargin;  // and stands here; at the end there may be part of a row above it
  bool following_ = true;
  bool scrolling_ = false;  // the scroll bar is moved by the view itself
  QTimer settleTimer_;
  QElapsedTimer sinceSettled_;

  std::optional<QPoint> pointer_;  // while the pointer is over the viewport
  std::optional<ChatLink> hovered_;
  bool pressed_ = false;              // the left button is held: nothing moves under the pointer
  std::optional<QPoint> clickStart_;  // until the pointer moves too far for a click
  QPoint doubleClickPoint_;
  QElapsedTimer sinceDoubleClick_;
  QBasicTimer dragScroll_;
  QPoint dragPoint_;
  int wheelRest_ = 0;           // eighths of a degree not yet turned into rows
  std::optional<qreal> goalX_;  // where Shift+Up and Shift+Down try to stay

  ChatNotes notes_;
  std::size_t heldFrom_ = 0;  // the whole lines that there were when the view stood at the end
  QPushButton* newLines_ = nullptr;  // tells how many have come since

  ChatFindBar* findBar_ = nullptr;
  ChatHint* hint_ = nullptr;
  QWidget* aboveScrollBar_ = nullptr;
  QWidget* belowScrollBar_ = nullptr;
  std::optional<std::size_t> unspokenFrom_;  // where the text begins that screen readers lack
};

}  // namespace kelvaron
