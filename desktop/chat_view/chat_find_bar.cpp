#include "desktop/chat_view/chat_find_bar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace kelvaron {
namespace {

QToolButton* makeButton(QWidget* parent, char16_t sign, const QString& name) {
  auto* button = new QToolButton(parent);
  button->setText(QString(QChar(sign)));
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::NoFocus);
  button->setToolTip(name);
  button->setAccessibleName(name);
  return button;
}

}  // namespace

ChatFindBar::ChatFindBar(QWidget* parent)
    : QWidget(parent), edit_(new QLineEdit(this)), message_(new QLabel(this)) {
  setAutoFillBackground(true);
  setAccessibleName(tr("Find bar"));
  edit_->setPlaceholderText(tr("Find in the text"));
  edit_->setAccessibleName(tr("Find"));
  edit_->setClearButtonEnabled(true);
  edit_->installEventFilter(this);
  QToolButton* previous = makeButton(this, u'\x2191', tr("Find Previous"));
  QToolButton* next = makeButton(this, u'\x2193', tr("Find Next"));
  QToolButton* close = makeButton(this, u'\xD7', tr("Close Find Bar"));

  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(6, 3, 6, 3);
  row->addWidget(edit_, 1);
  row->addWidget(previous);
  row->addWidget(next);
  row->addWidget(message_);
  row->addStretch(1);
  row->addWidget(close);

  connect(edit_, &QLineEdit::textChanged, this, &ChatFindBar::changed);
  connect(previous, &QToolButton::clicked, this, &ChatFindBar::previousWanted);
  connect(next, &QToolButton::clicked, this, &ChatFindBar::nextWanted);
  connect(close, &QToolButton::clicked, this, &ChatFindBar::closed);
}

QString ChatFindBar::wanted() const { return edit_->text(); }

void ChatFindBar::open(const QString& start) {
  if (!start.isEmpty()) edit_->setText(start);
  show();
  edit_->setFocus(Qt::ShortcutFocusReason);
  edit_->selectAll();
}

void ChatFindBar::tell(const QString& message) {
  if (message_->text() == message) return;
  message_->setText(message);
  message_->setAccessibleName(message);
}

/// The keys of the bar, before the edit or a default button of the window takes them.
bool ChatFindBar::eventFilter(QObject* watched, QEvent* event) {
  const bool override = event->type() == QEvent::ShortcutOverride;
  if (watched != edit_ || (!override && event->type() != QEvent::KeyPress)) {
    return QWidget::eventFilter(watched, event);
  }
  const auto* key = static_cast<const QKeyEvent*>(event);
  const bool shift = key->modifiers().testFlag(Qt::ShiftModifier);
  const auto act = [&](auto signal) {
    if (override) {
      event->accept();
    } else {
      (this->*signal)();
    }
    return true;
  };
  switch (key->key()) {
    case Qt::Key_Escape:
      return act(&ChatFindBar::closed);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F3:
      return act(shift ? &ChatFindBar::previousWanted : &ChatFindBar::nextWanted);
    default:
      return QWidget::eventFilter(watched, event);
  }
}

}  // namespace kelvaron
