// The windows of forms among each other: over which one comes, and which one has the keyboard next.
#pragma once

class QWidget;

namespace kelvaron {

class FormFrame;

/// The window that a new one comes up over: the one at work, else the largest on the screen, which
/// is the room once it is there. Null when there is none.
const QWidget* anchorFor(const FormFrame& frame);

/// Why a window is to be on the screen.
struct Coming {
  /// It is to have the keyboard.
  bool activates = false;
  /// The user asked for it.
  bool asked = false;
  /// It is to leave the keyboard where it is.
  bool quiet = false;
};

/// Brings a window to the screen. What no user asked for leaves the keyboard where the user types,
/// and calls for attention.
void bringUp(FormFrame& frame, Coming coming);

/// Takes a window from the screen. The desktop hands the keyboard to whichever window had it last,
/// which may be another program's, so that somebody types on there: then another one of ours takes
/// it.
void hideFrame(FormFrame& frame);

/// Hands the keyboard to the form that came up last, from that one to the one before it, and so on.
void goToNextFrame(const FormFrame& from);

}  // namespace kelvaron
