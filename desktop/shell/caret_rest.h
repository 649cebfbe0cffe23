// Lets the caret stop blinking where nobody types, so that an idle program sleeps.
#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>

namespace kelvaron {

/// While it is there, the caret of the program's text boxes stands still from `after` the last key
/// or click on, until the next.
class CaretRest : public QObject {
 public:
  explicit CaretRest(std::chrono::milliseconds after);
  ~CaretRest() override;
  Q_DISABLE_COPY_MOVE(CaretRest)

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTimer timer_;
  const int blinking_;
};

}  // namespace kelvaron
