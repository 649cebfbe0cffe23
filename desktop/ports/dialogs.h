// Message box, question, input box and file dialog. All wait for the user while events go on.
#pragma once

#include <QString>
#include <utility>
#include <vector>

#include "desktop/event_gate.h"
#include "platform/ports.h"

class QDialog;

namespace kelvaron {

/// Text is plain text, whoever wrote it, can be selected and copied, and never makes a box larger
/// than the screen: what is too long scrolls, of what is very long the first 4 KiB show. A box that
/// nobody asked for takes no key in its first half second.
class QtDialogs final : public Dialogs {
 public:
  /// `firstFolder` is where the first file dialog starts when it names no folder and this one is
  /// there; else that is the user's own.
  explicit QtDialogs(EventGate& gate, QString firstFolder = {})
      : gate_(gate), folder_(std::move(firstFolder)) {}

  BoxAnswer show(const BoxRequest& request) override;
  std::string InputBox(const std::string& prompt, const std::string& title,
                       const std::string& initial) override;
  std::optional<std::string> openFile(const FileDialog& dialog) override;

 private:
  /// Returns whether the user agreed.
  bool ask(QDialog& dialog);
  /// The same for a box, once no other one is on the screen.
  bool askInTurn(QDialog& box);

  EventGate& gate_;
  // Boxes that are on the screen or have been answered and not returned yet, the latest last.
  std::vector<QDialog*> boxes_;
  // Of the file chosen last; at first where the adapters of engines lie.
  QString folder_;
};

}  // namespace kelvaron
