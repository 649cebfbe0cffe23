#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <limits>

#include "desktop/controls/combo_accessible.h"
#include "desktop/controls/entry_model.h"
#include "desktop/controls/views.h"
#include "desktop/qt_values.h"
#include "platform/text.h"

namespace kelvaron {
namespace {

// Pixels that the text stands further in, so that it is in line with that of text boxes.
constexpr int kComboTextMargin = 4;

}  // namespace

ComboBoxView::ComboBoxView(ComboBox& box, ViewHost& host, QWidget* parent)
    : ControlView(box, host, new QComboBox(parent)),
      combo_(static_cast<QComboBox&>(widget())),
      list_(combo_.view()) {
  installComboAccessibility();
  combo_.setEditable(true);
  combo_.setInsertPolicy(QComboBox::NoInsert);
  combo_.setCompleter(nullptr);
  combo_.setFocusPolicy(Qt::StrongFocus);
  combo_.lineEdit()->setMaxLength(std::numeric_limits<int>::max());
  combo_.lineEdit()->setDragEnabled(false);
  combo_.lineEdit()->setTextMargins(kComboTextMargin, 0, 0, 0);
  combo_.view()->installEventFilter(this);
  connect(&combo_, &QComboBox::editTextChanged, this,
          [this](const QString& text) { textEdited(text); });
}

void ComboBoxView::setNameFromLabel(const QString& name) {
  ControlView::setNameFromLabel(name);
  combo_.lineEdit()->setAccessibleName(combo_.accessibleName());
}

void ComboBoxView::textEdited(const QString& text) {
  if (showing() || !attached()) return;
  if (run([&] { box().Text = withoutLineEnds(storedText(text)); })) {
    const Showing showing(*this);
    showText();
  }
}

void ComboBoxView::refresh() {
  if (items_ != box().items()) {
    items_ = box().items();
    combo_.clear();
    for (const std::string& item : items_) {
      combo_.addItem(shownText(withoutLineEnds(beginningOf(item, kMostOfEntry))));
    }
    combo_.setCurrentIndex(-1);
  }
  if (combo_.lineEdit()->accessibleName().isEmpty()) {
    combo_.lineEdit()->setAccessibleName(combo_.accessibleName());
  }
  showText();
}

void ComboBoxView::showText() {
  const QString shown = shownText(withoutLineEnds(box().Text.get()));
  QLineEdit& edit = *combo_.lineEdit();
  if (edit.text() == shown) return;
  const bool sameLength = edit.text().size() == shown.size();
  const int caret = edit.cursorPosition();
  combo_.setCurrentIndex(combo_.findText(shown, Qt::MatchFixedString | Qt::MatchCaseSensitive));
  combo_.setEditText(shown);
  if (sameLength) edit.setCursorPosition(caret);
}

/// The toolkit closes the list as soon as it asks it whether it wants the key. Where the form's
/// window has kept the keyboard, the key goes on from there to the combo box and its form.
void ComboBoxView::listHears(int key) {
  keyOfList_ = key;
  QMetaObject::invokeMethod(
      this, [this] { keyOfList_ = 0; }, Qt::QueuedConnection);
}

bool ComboBoxView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == list_) {
    if (event->type() == QEvent::ShortcutOverride) listHears(static_cast<QKeyEvent*>(event)->key());
    return false;
  }
  switch (event->type()) {
    case QEvent::KeyPress:
      if (static_cast<QKeyEvent*>(event)->key() == keyOfList_) return true;
      [[fallthrough]];
    case QEvent::MouseButtonPress:
      // The user acts on what the core says now, not on what the last turn showed.
      settle();
      break;
    case QEvent::Wheel:
      if (combo_.hasFocus()) break;
      event->ignore();
      return true;
    default:
      break;
  }
  return ControlView::eventFilter(watched, event);
}

}  // namespace kelvaron
