#include "desktop/controls/label_view.h"

#include <QEvent>
#include <QGuiApplication>

#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

Qt::Alignment toQt(Alignment alignment) {
  switch (alignment) {
    case Alignment::right:
      return Qt::AlignRight;
    case Alignment::center:
      return Qt::AlignHCenter;
    case Alignment::left:
      break;
  }
  return Qt::AlignLeft;
}

QFont toQt(const Font& font, QFont own) {
  if (font.family == FontFamily::tahoma) own.setFamilies({QStringLiteral("Tahoma"), own.family()});
  if (font.points > 0) own.setPointSize(font.points);
  own.setBold(font.bold);
  return own;
}

}  // namespace

LabelView::LabelView(Label& label, ViewHost& host, QWidget* parent)
    : ControlView(label, host, new QLabel(parent)), label_(static_cast<QLabel&>(widget())) {
  label_.setTextFormat(Qt::PlainText);
}

void LabelView::setBuddy(ControlView& buddy) {
  buddy_ = &buddy;
  label_.setBuddy(&buddy.widget());
  settle();
  const Showing showing(*this);
  refresh();
}

void LabelView::refresh() {
  const auto& label = static_cast<const Label&>(*control());
  label_.setFont(toQt(label.Font_, QGuiApplication::font()));
  label_.setWordWrap(label.WordWrap);
  label_.setAlignment(toQt(label.Alignment_.get()) |
                      (label.WordWrap ? Qt::AlignTop : Qt::AlignVCenter));
  if (const auto& color = label.ForeColor.get()) {
    QPalette palette;
    palette.setColor(QPalette::WindowText, kelvaron::toQt(*color));
    label_.setPalette(palette);
  } else {
    label_.setPalette({});
  }
  fitText();
}

void LabelView::fitText() {
  const auto& label = static_cast<const Label&>(*control());
  const QString caption = shownText(label.Caption.get());
  const QString plain = withoutMnemonic(caption);
  // A label with a name of its own is a field: the name tells which, the description what it holds.
  if (label.AccessibleName.empty()) {
    label_.setAccessibleName(plain);
  } else {
    label_.setAccessibleDescription(plain);
  }
  if (buddy_) buddy_->setNameFromLabel(plain);
  // Without a buddy the toolkit shows a mnemonic's "&" as it stands.
  const QString shown = buddy_ ? caption : plain;
  label_.setText(label.WordWrap ? shown
                                : label_.fontMetrics().elidedText(shown, Qt::ElideRight,
                                                                  label_.contentsRect().width(),
                                                                  Qt::TextShowMnemonic));
}

bool LabelView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && attached()) fitText();
  return ControlView::eventFilter(watched, event);
}

}  // namespace kelvaron
