// The room's line of input: a text box of one line from which the chat view is worked too.
#pragma once

#include "desktop/controls/line_history.h"
#include "desktop/controls/text_box_view.h"

namespace kelvaron {

class ChatView;

/// Tab completes what is typed, Up and Down walk through what was sent, and find,
/// scroll and zoom keys go to the form's chat view; Escape leads to its newest line.
class InputLineView final : public TextLineView {
 public:
  InputLineView(TextBox& box, ViewHost& host, QWidget* parent);

 protected:
  void refreshLook() override;
  bool enterPressed(Qt::KeyboardModifiers modifiers) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool keyPressed(const QKeyEvent& key);
  bool complete();
  /// The form's chat view, if it has one.
  ChatView* chat() const;
  bool show(const std::optional<QString>& line);

  LineHistory history_;
};

}  // namespace kelvaron
