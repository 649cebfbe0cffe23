#include "desktop/line_view.h"

#include <QPainter>
#include <QWidget>
#include <algorithm>

namespace kelvaron {
namespace {

// Fills the rectangle that the line is a diagonal of.
class Stroke : public QWidget {
 public:
  explicit Stroke(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }
  void setRising(bool rising) {
    rising_ = rising;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawLine(rising_ ? rect().bottomLeft() : rect().topLeft(),
                     rising_ ? rect().topRight() : rect().bottomRight());
  }

 private:
  bool rising_ = false;
};

}  // namespace

LineView::LineView(Line& line, ViewHost& host, QWidget* parent)
    : ControlView(line, host, new Stroke(parent)) {}

void LineView::refresh() {
  const auto& line = static_cast<const Line&>(*control());
  const QPoint from(toPixels(line.X1), toPixels(line.Y1));
  const QPoint to(toPixels(line.X2), toPixels(line.Y2));
  // Both ends belong to it.
  widget().setGeometry(QRect(QPoint(std::min(from.x(), to.x()), std::min(from.y(), to.y())),
                             QPoint(std::max(from.x(), to.x()), std::max(from.y(), to.y()))));
  static_cast<Stroke&>(widget()).setRising((from.x() < to.x()) != (from.y() < to.y()));
}

}  // namespace kelvaron
