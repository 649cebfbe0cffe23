#include "desktop/chat_view/chat_hint.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace kelvaron {

ChatHint::ChatHint(QWidget* parent)
    : QFrame(parent), text_(new QLabel(this)), link_(new QPushButton(this)) {
  constexpr int kSide = 8;
  constexpr int kAbove = 4;
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Button);
  setAccessibleName(tr("Hint"));
  // Nicknames in it stand as they are.
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  auto* close = new QToolButton(this);
  close->setText(QString(QChar(0xD7)));
  close->setAutoRaise(true);
  close->setFocusPolicy(Qt::NoFocus);
  close->setToolTip(tr("Close Hint"));
  close->setAccessibleName(tr("Close Hint"));

  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kSide, kAbove, kSide, kAbove);
  row->addWidget(text_, 1);
  row->addWidget(link_);
  row->addWidget(close);
  hide();
  // Queued, so that what comes of it may take the strip away.
  connect(link_, &QPushButton::clicked, this, &ChatHint::followed, Qt::QueuedConnection);
  connect(close, &QToolButton::clicked, this, &ChatHint::closed, Qt::QueuedConnection);
}

void ChatHint::tell(const QString& text, const QString& link) {
  const bool other = text != text_->text();
  text_->setText(text);
  link_->setText(link);
  link_->setVisible(!link.isEmpty());
  setVisible(!text.isEmpty());
  if (text.isEmpty() || !other) return;
  setAccessibleDescription(text);
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

int ChatHint::heightAt(int width) const { return isHidden() ? 0 : layout()->heightForWidth(width); }

}  // namespace kelvaron
