// The strip above the chat's text with a sentence to the user.
#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

namespace kelvaron {

class ChatHint : public QFrame {
  Q_OBJECT

 public:
  explicit ChatHint(QWidget* parent);

  /// Hides itself for an empty text. A screen reader says another one at once.
  void tell(const QString& text, const QString& link);
  /// What it takes of the height at this width; 0 while hidden.
  int heightAt(int width) const;

 Q_SIGNALS:
  void followed();
  void closed();

 private:
  QLabel* text_;
  QPushButton* link_;
};

}  // namespace kelvaron
