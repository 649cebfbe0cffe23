#include "platform/form.h"

namespace kelvaron {

Form::Form(const FormDesign& design)
    : Name(design.name),
      Caption(*this, std::string(design.caption)),
      ScaleWidth(*this, design.width),
      ScaleHeight(*this, design.height) {}

void Form::Show() {
  Visible = true;
  if (window != nullptr) window->activate();
}

void Form::ShowQuietly() {
  if (Visible) return;
  if (window != nullptr) window->comeQuietly();
  Visible = true;
}

void Form::PopupMenu(MenuItem& menu) {
  if (window != nullptr) window->popUp(menu);
}

}  // namespace kelvaron
