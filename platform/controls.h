// The kinds of control. Each is built with its design values as a member of its form.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/control.h"
#include "platform/form.h"
#include "platform/styled_text.h"

namespace kelvaron {

namespace key_code {
inline constexpr int kEnter = 13;
}

enum class MouseButton { left = 1, right = 2, middle = 4 };
enum class Alignment { left, right, center };

class Label : public Control {
 public:
  Label(Container& within, std::string_view name, Place place, std::string_view caption);

  /// What the design says may hold one "&" before a mnemonic, which leads to the control behind the
  /// label; any other caption stands as it is.
  Property<std::string> Caption;
  const std::string DesignCaption;
  /// Unset: the form's own text colour.
  Property<std::optional<Color>> ForeColor{*this, std::nullopt};
  Property<Font> Font_{*this, {}};
  /// Shows digits in groups, as sizes are read; the caption itself stays.
  bool GroupsDigits = false;
  Property<Alignment> Alignment_{*this, Alignment::left};
  Property<bool> WordWrap{*this, false};
};

class TextBox : public Control {
 public:
  TextBox(Container& within, std::string_view name, Place place);

  /// Each change, by the user or by code, raises `Change`. In a one-line box the shell turns line
  /// ends that the user pastes into blanks; code page 1252.
  Property<std::string> Text{*this, {}};
  /// Caret, in characters from the start.
  Property<int> SelStart{*this, 0};
  Property<bool> MultiLine{*this, false};
  /// For reading and copying only.
  Property<bool> Locked{*this, false};
  /// Shown in place of each character; 0 shows the text.
  Property<char> PasswordChar{*this, '\0'};
  Property<std::optional<Color>> ForeColor{*this, std::nullopt};
  Property<std::optional<Color>> BackColor{*this, std::nullopt};

  Event<> Change;
  Event<> Click;
  Event<> DblClick;
  /// Enter, where the form has no default button to press: its key code (see `key_code`) and the
  /// state of the shift keys, which nothing reads.
  Event<int, int> KeyDown;

 protected:
  TextBox(Container& within, ControlKind controlKind, std::string_view name, Place place);
  void propertyChanged(const void* property) override;
};

/// A rich text box of one line: a text box whose text has a colour of its own.
class RichTextLine : public TextBox {
 public:
  RichTextLine(Container& within, std::string_view name, Place place);

  Property<Color> SelColor{*this, {}};
  /// What stands in the box while it is empty.
  Property<std::string> Placeholder{*this, {}};

  /// What the user should know before Enter; empty for nothing. The text shows that there is one,
  /// and the pointer that rests on it tells.
  Property<std::string> Warning{*this, {}};

  /// The Tab key: completes what stands in front of the caret. False, also when unset, when there
  /// is nothing to complete: then the keyboard moves on.
  std::function<bool()> Complete;
};

/// A sentence to the user, beside a text and no part of it; none if it is empty.
struct Hint {
  std::string text;
  /// The caption of what leads on from here; empty for nothing.
  std::string link;
  bool operator==(const Hint&) const = default;
};

/// A rich text box that is only read: the chat view. See styled_text.h for caret and styles.
class RichTextBox : public Control {
 public:
  RichTextBox(Container& within, std::string_view name, Place place);

  StyledText Content;
  Property<Color> BackColor{*this, {}};
  Property<Hint> Hint_{*this, {}};
  Event<> HintFollowed;
  /// The user puts the hint away.
  Event<> HintClosed;

  /// Whether a line calls for the user's attention; unset for none.
  std::function<bool(std::string_view line)> IsForUser;
  /// A link was clicked: a web address.
  Event<std::string> LinkClick;

  void caretToEnd() { Content.caretToEnd(); }
  void setSelColor(Color color) { Content.setColor(color); }
  void setSelBold(bool bold) { Content.setBold(bold); }
  void insert(std::string_view text) { Content.insert(text); }
};

class CheckBox : public Control {
 public:
  CheckBox(Container& within, std::string_view name, Place place, std::string_view caption);

  Property<std::string> Caption;
  /// 0 or 1.
  Property<int> Value{*this, 0};

  Event<> Click;
  Event<MouseButton> MouseDown;
  Event<MouseButton> MouseUp;
};

class CommandButton : public Control {
 public:
  CommandButton(Container& within, std::string_view name, Place place, std::string_view caption);

  Property<std::string> Caption;
  /// Pressed by Enter, and by Escape, wherever the keyboard is on the form.
  bool Default = false;
  bool Cancel = false;
  /// What the form is for: looks as the default button does.
  bool Main = false;
  /// The keyboard never begins here when the form comes up: a press of Enter that was meant for the
  /// form before must do nothing.
  bool Deliberate = false;

  /// The button goes down, by mouse or key; `Click` follows when it comes up under the pointer.
  Event<> Pressed;
  Event<> Click;
};

class Frame : public Control, public Container {
 public:
  Frame(Container& within, std::string_view name, Place place, std::string_view caption);

  Property<std::string> Caption;
  Property<std::optional<Color>> ForeColor{*this, std::nullopt};

  Form& form() override { return container.form(); }
  Control* asControl() override { return this; }
};

class Image : public Control {
 public:
  /// `picture` names a picture of the program's own resources, such as "logo".
  Image(Container& within, std::string_view name, Place place, std::string_view picture);

  const std::string Picture;

  /// With a handler, the pointer becomes a hand over the picture.
  Event<> Click;
  /// The pointer moves over the picture; at most once a turn of the event loop.
  Event<> MouseMove;
};

/// Raises `Tick` every `Interval` milliseconds while enabled. Not seen on the form.
class Timer : public Control {
 public:
  Timer(Container& within, std::string_view name, int interval, bool enabled);

  Property<int> Interval;
  Event<> Tick;
};

}  // namespace kelvaron
