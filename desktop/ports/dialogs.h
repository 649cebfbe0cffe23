// Message box, question, input box and file dialog. All wait for the user while events go on.
#pragma once

#include <QString>

#include "desktop/event_gate.h"
#include "platform/ports.h"

class QDialog;

namespace kelvaron {

/// Text is plain text, whoever wrote it, can be selected and copied, and never makes a box larger
/// than the screen: what is too long scrolls.
class QtDialogs final : public Dialogs {
 public:
  explicit QtDialogs(EventGate& gate) : gate_(gate) {}

  void MsgBox(const std::string& text, int style, const std::string& title) override;
  bool confirm(const std::string& text, const std::string& title) override;
  std::string InputBox(const std::string& prompt, const std::string& title,
                       const std::string& initial) override;
  std::optional<std::string> openFile(const FileDialog& dialog) override;

 private:
  /// Returns whether the user agreed.
  bool ask(QDialog& dialog);

  EventGate& gate_;
  // Of the file chosen last.
  QString folder_;
};

}  // namespace kelvaron
