#include "desktop/controls/combo_accessible.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QLineEdit>

namespace kelvaron {
namespace {

class ComboAccessible : public QAccessibleWidget {
 public:
  explicit ComboAccessible(QComboBox* combo)
      : QAccessibleWidget(combo, QAccessible::ComboBox), combo_(*combo) {}

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? combo_.currentText() : QAccessibleWidget::text(kind);
  }

  // The list and, where one can type, the field.
  int childCount() const override { return combo_.lineEdit() == nullptr ? 1 : 2; }
  QAccessibleInterface* child(int index) const override {
    if (index == 0) return QAccessible::queryAccessibleInterface(combo_.view());
    if (index == 1 && combo_.lineEdit() != nullptr) {
      return QAccessible::queryAccessibleInterface(combo_.lineEdit());
    }
    return nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    if (child == nullptr) return -1;
    if (child->object() == combo_.view()) return 0;
    return child->object() != nullptr && child->object() == combo_.lineEdit() ? 1 : -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    if (combo_.lineEdit() == nullptr) return nullptr;
    const QRect field(combo_.lineEdit()->mapToGlobal(QPoint()), combo_.lineEdit()->size());
    return field.contains(x, y) ? child(1) : nullptr;
  }

  QStringList actionNames() const override {
    return combo_.isEnabled() ? QStringList{showMenuAction(), pressAction()} : QStringList{};
  }
  void doAction(const QString& action) override {
    if (action != showMenuAction() && action != pressAction()) return;
    if (combo_.view()->isVisible()) {
      combo_.hidePopup();
    } else {
      combo_.showPopup();
    }
  }
  QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

  QAccessible::State state() const override {
    QAccessible::State result = QAccessibleWidget::state();
    result.expandable = true;
    result.expanded = combo_.view()->isVisible();
    result.editable = combo_.isEditable();
    return result;
  }

 private:
  QComboBox& combo_;
};

QAccessibleInterface* makeComboAccessible(const QString& /*type*/, QObject* object) {
  auto* combo = qobject_cast<QComboBox*>(object);
  return combo == nullptr ? nullptr : new ComboAccessible(combo);
}

}  // namespace

void installComboAccessibility() {
  static const bool kInstalled = [] {
    QAccessible::installFactory(makeComboAccessible);
    return true;
  }();
  static_cast<void>(kInstalled);
}

}  // namespace kelvaron
