// A form: a window as a plain object, with its controls as members.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/non_copyable.h"
#include "platform/control.h"
#include "platform/property.h"

namespace kelvaron {

class MenuItem;

enum class MousePointer { standard = 0, hourglass = 11, noDrop = 12 };

/// A form's design values that its class states.
struct FormDesign {
  std::string_view name;
  std::string_view caption;
  /// Size of the inside in twips.
  int width = 0;
  int height = 0;
};

/// What the shell gives a form: the window that shows it.
class FormWindow : NonCopyable {
 public:
  virtual ~FormWindow() = default;
  /// Brings the window to the front with the keyboard; see `Form::Show`.
  virtual void activate() = 0;
  /// The form becomes visible and its window is to come without the keyboard.
  virtual void comeQuietly() {}
  /// Opens an entry's submenu at the pointer and returns when it was opened.
  virtual void popUp(MenuItem& menu) = 0;
};

class Form : public Observable, public Container {
 public:
  explicit Form(const FormDesign& design);

  const std::string Name;
  Property<std::string> Caption;
  Property<bool> Visible{*this, false};
  Property<MousePointer> MousePointer_{*this, MousePointer::standard};
  /// Place on the screen and size of the inside, in twips.
  Property<int> Left{*this, 0};
  Property<int> Top{*this, 0};
  Property<int> ScaleWidth;
  Property<int> ScaleHeight;
  /// Of the window with its frame, in twips, kept by the shell; 0 before it was on the screen.
  int Height = 0;
  Property<Color> BackColor{*this, Color{24, 26, 32}};
  Property<Color> ForeColor{*this, Color{224, 226, 232}};
  /// Whether the user can close the window by its frame.
  bool ControlBox = true;
  /// Whether closing the window by its frame only hides the form, which then stays loaded.
  bool HidesOnClose = false;
  /// Whether the user can change the window's size.
  bool Sizable = false;

  /// Makes the form visible and brings it to the front with the keyboard. Where no user asked for
  /// it, a form that is on the screen already only asks for attention, and the keyboard stays in
  /// the window in which the user types.
  void Show();
  /// Makes the form visible, and leaves the keyboard in the window that has it.
  void ShowQuietly();
  void PopupMenu(MenuItem& menu);

  /// Runs when a slot has made the form; its controls have their design values.
  virtual void Form_Load() {}
  /// Runs when the form is unloaded, by code or by the user.
  virtual void Form_Unload() {}
  /// Runs after the window took another size.
  virtual void Form_Resize() {}
  /// Runs after a click of the left mouse button on the form's bare surface or on a label on it.
  virtual void Form_Click() {}
  /// Runs when the pointer moved over the form's inside, unless an image there has its own
  /// handler; at most once a turn of the event loop.
  virtual void Form_MouseMove() {}

  /// In order of construction, those inside frames too.
  const std::vector<Control*>& Controls() const { return controls_; }
  const std::vector<MenuItem*>& Menus() const { return menus_; }

  Form& form() override { return *this; }
  Control* asControl() override { return nullptr; }

  /// For the shell: null while no window stands behind the form.
  FormWindow* window = nullptr;

 private:
  friend class Control;
  friend class MenuItem;
  std::vector<Control*> controls_;
  std::vector<MenuItem*> menus_;
};

}  // namespace kelvaron
