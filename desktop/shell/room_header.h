// The head of the room's window at any size.
#pragma once

#include "chat/main_window.h"
#include "desktop/shell/form_views.h"

namespace kelvaron {

/// Lays the head's views out by what their text needs. Where the room's controls have less room
/// than designed, the logo gives way first, then the server's line; who is logged in and the
/// version never do.
class RoomHeader {
 public:
  /// Both outlive the header.
  RoomHeader(frmMain& room, const FormViews& views) : room_(room), views_(views) {}

  /// After the room's controls took other places; `font` is the form's.
  void layOut(const QFont& font) const;

 private:
  void place(const Control& control, QRect rect, const QFont& font) const;

  frmMain& room_;
  const FormViews& views_;
};

}  // namespace kelvaron
