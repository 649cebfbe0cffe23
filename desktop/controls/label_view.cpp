#include "desktop/controls/label_view.h"

#include <QEvent>
#include <utility>

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

// Characters of a caption; no label has room for more.
constexpr std::size_t kMostOfCaption = 1024;

/// With a separator between each three digits of a number.
QString inGroups(QString text) {
  constexpr int kGroup = 3;
  int digits = 0;
  for (qsizetype i = text.size() - 1; i >= 0; --i) {
    digits = text[i].isDigit() ? digits + 1 : 0;
    if (digits > 0 && digits % kGroup == 0 && i > 0 && text[i - 1].isDigit()) text.insert(i, ',');
  }
  return text;
}

QFont toQt(const Font& font, QFont own, qreal scale) {
  if (font.family == FontFamily::tahoma) own.setFamilies({QStringLiteral("Tahoma"), own.family()});
  if (font.points > 0) own.setPointSizeF(font.points * scale);
  own.setBold(font.bold);
  return own;
}

}  // namespace

LabelView::LabelView(Label& label, ViewHost& host, QWidget* parent)
    : ControlView(label, host, new QLabel(parent)), label_(static_cast<QLabel&>(widget())) {
  label_.setTextFormat(Qt::PlainText);
}

void LabelView::nameNext(ControlView& next) {
  buddy_ = &next;
  label_.setBuddy(&next.widget());
  settle();
  const Showing showing(*this);
  refresh();
}

void LabelView::refresh() {
  const auto& label = static_cast<const Label&>(*control());
  label_.setWordWrap(label.WordWrap);
  label_.setAlignment(toQt(label.Alignment_.get()) |
                      (label.WordWrap ? Qt::AlignTop : Qt::AlignVCenter));
  if (const auto& color = label.ForeColor.get()) {
    QPalette palette;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
      palette.setColor(group, QPalette::WindowText, kelvaron::toQt(*color));
    }
    label_.setPalette(palette);
  } else {
    label_.setPalette({});
  }
  fitText();
}

void LabelView::fitText() {
  const auto& label = static_cast<const Label&>(*control());
  label_.setFont(captionFont(toQt(label.Font_, formFont(), host().scale())));
  QString caption = shownText(beginningOf(label.Caption.get(), kMostOfCaption));
  if (label.GroupsDigits) caption = inGroups(std::move(caption));
  // Only a caption of the design has a mnemonic; what others wrote stands as it is.
  const bool designed = label.Caption.get() == label.DesignCaption;
  const QString plain = designed ? withoutMnemonic(caption) : caption;
  // A label with a name of its own is a field: the name tells which, the description what it holds.
  if (label.AccessibleName.empty()) {
    label_.setAccessibleName(plain);
  } else {
    label_.setAccessibleDescription(plain);
  }
  if (buddy_) buddy_->setNameFromLabel(plain);
  // Without a buddy the toolkit shows a mnemonic's "&" as it stands.
  const bool mnemonic = designed && buddy_ != nullptr;
  QString shown = mnemonic ? caption : plain;
  if (!label.WordWrap) {
    shown = label_.fontMetrics().elidedText(shown, Qt::ElideRight, label_.contentsRect().width(),
                                            mnemonic ? Qt::TextShowMnemonic : 0);
  }
  // What is cut can be read whole.
  label_.setToolTip(shown == (mnemonic ? caption : plain) ? QString() : plain);
  if (buddy_ != nullptr && !mnemonic) shown.replace('&', QStringLiteral("&&"));
  label_.setText(shown);
}

bool LabelView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && attached()) fitText();
  return ControlView::eventFilter(watched, event);
}

}  // namespace kelvaron
