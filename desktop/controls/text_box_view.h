// Text boxes on the screen: of one line and of several.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>

#include "desktop/controls/control_view.h"

namespace kelvaron {

/// Dynamic property of a line edit: the `QChar` number shown in place of each typed character.
inline constexpr const char* kPasswordCharacter = "kelvaronPasswordCharacter";

/// Keeps control and widget in step with every keystroke: what the user did goes to the control,
/// `Change` runs, and what its handler made of it is shown at once. A character that the code page
/// lacks shows as the "?" that it became. Of a very long text the beginning shows, and can't be
/// edited, since the control keeps the whole. A box that nobody types in takes time for a long text
/// only when none follows it at once: a stranger may send very many.
class TextBoxView : public ControlView {
 public:
  /// Bytes of a text that show.
  static constexpr std::size_t kMostShown = std::size_t{64} << 10U;
  /// The same at first, in a box that nobody types in.
  static constexpr std::size_t kMostAtOnce = std::size_t{8} << 10U;
  /// Characters that can be typed: with the rest of a line of the chat protocol they are as many as
  /// servers take.
  static constexpr std::size_t kMostTyped = 65'000;

  bool wantsLabel() const override { return true; }
  FirstFocus firstFocus() const override {
    return box().Locked ? FirstFocus::toRead : FirstFocus::usual;
  }
  bool type(const QString& text) override;

 protected:
  TextBoxView(TextBox& box, ViewHost& host, QWidget* widget);

  TextBox& box() const { return static_cast<TextBox&>(*control()); }

  /// The widget's text and caret (in UTF-16 units), and setting them where they differ.
  virtual QString text() const = 0;
  virtual int caret() const = 0;
  virtual void setText(const QString& text) = 0;
  virtual void setCaret(int caret) = 0;
  /// Between the widget's text and the control's.
  virtual std::string toControl(const QString& text) const = 0;
  virtual QString toWidget(const std::string& text) const = 0;
  virtual void refreshLook() = 0;

  /// Whether only the beginning of the text shows.
  bool cut() const { return cut_; }

  /// For the widget's signals.
  void textEdited();
  void caretMoved();

  void refresh() override;
  bool refreshesAtOnce() const override { return !box().Locked; }
  bool enterPressed(Qt::KeyboardModifiers modifiers) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void showBeginning();
  /// Returns whether that was something else.
  bool showUpTo(std::size_t bytes);

  bool cut_ = false;
  QTimer rest_;
};

/// A text box of one line, with a colour of its own where it is a rich text line.
class TextLineView : public TextBoxView {
 public:
  TextLineView(TextBox& box, ViewHost& host, QWidget* parent);

 protected:
  QString text() const override { return edit_.text(); }
  int caret() const override { return edit_.cursorPosition(); }
  void setText(const QString& text) override { edit_.setText(text); }
  void setCaret(int caret) override { edit_.setCursorPosition(caret); }
  std::string toControl(const QString& text) const override;
  QString toWidget(const std::string& text) const override;
  void refreshLook() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  QLineEdit& edit() const { return edit_; }

 private:
  QLineEdit& edit_;
};

/// A text box of several lines, with a scroll bar.
class TextAreaView : public TextBoxView {
 public:
  TextAreaView(TextBox& box, ViewHost& host, QWidget* parent);

 protected:
  QString text() const override;
  int caret() const override { return edit_.textCursor().position(); }
  void setText(const QString& text) override;
  void setCaret(int caret) override;
  std::string toControl(const QString& text) const override;
  QString toWidget(const std::string& text) const override;
  void refreshLook() override;
  bool enterPressed(Qt::KeyboardModifiers modifiers) override;

 private:
  QPlainTextEdit& edit_;
};

}  // namespace kelvaron
