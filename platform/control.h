// Controls as plain objects: the part that all kinds share.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/non_copyable.h"
#include "platform/color.h"
#include "platform/property.h"

namespace kelvaron {

class Control;
class Form;

/// A place in twips (1440 to the inch, 15 to the pixel at 96 dots per inch), relative to the
/// container.
struct Place {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Place&) const = default;
};

inline constexpr int kTwipsPerPixel = 15;

/// A place told in pixels at 96 dots per inch.
constexpr Place pixels(int left, int top, int width, int height) {
  return {left * kTwipsPerPixel, top * kTwipsPerPixel, width * kTwipsPerPixel,
          height * kTwipsPerPixel};
}

/// What controls stand in: a form, or a frame on it.
class Container : NonCopyable {
 public:
  virtual ~Container() = default;
  virtual Form& form() = 0;
  /// The frame that this container is, or null for a form.
  virtual Control* asControl() = 0;

 protected:
  Container() = default;
};

enum class FontFamily { standard, tahoma };

/// A control's font. Zero points means the system's own size.
struct Font {
  int points = 0;
  bool bold = false;
  FontFamily family = FontFamily::standard;
  bool operator==(const Font&) const = default;
};

enum class ControlKind {
  label,
  textBox,
  richTextBox,
  richTextLine,
  listBox,
  comboBox,
  checkBox,
  button,
  frame,
  image,
  shape,
  progressBar,
  slider,
  line,
  timer
};

class Control : public Observable {
 public:
  /// Registers with the container's form: the order of construction is the keyboard order.
  Control(Container& within, ControlKind controlKind, std::string_view name, Place place);

  const ControlKind kind;
  const std::string Name;
  /// Its number in a control array.
  std::optional<int> Index;
  Container& container;

  Property<int> Left;
  Property<int> Top;
  Property<int> Width;
  Property<int> Height;
  Property<bool> Visible{*this, true};
  Property<bool> Enabled{*this, true};
  Property<std::string> Tag{*this, {}};
  /// What a screen reader says where the control has no caption of its own. Code page 1252.
  std::string AccessibleName;
  /// What the pointer that rests on the control tells; empty for nothing. Code page 1252.
  std::string ToolTipText;

  /// Moves and sizes at once, in twips.
  void Move(Place place);
  /// Gives the control the keyboard, once it is on the screen.
  void SetFocus() const {
    if (onSetFocus) onSetFocus();
  }

  /// For the shell.
  std::function<void()> onSetFocus;
};

}  // namespace kelvaron
