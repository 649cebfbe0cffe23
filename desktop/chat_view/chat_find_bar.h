// The small bar at the bottom of the chat view where words to find are typed.
#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;

namespace kelvaron {

class ChatFindBar : public QWidget {
  Q_OBJECT

 public:
  explicit ChatFindBar(QWidget* parent);

  QString wanted() const;
  /// Shows the bar with words to start from (none: those of the last time) and takes the focus.
  void open(const QString& start);
  /// Tells how the search went, as "No match"; empty for nothing to tell.
  void tell(const QString& message);

 Q_SIGNALS:
  /// The words changed: search from where the search stands.
  void changed();
  void nextWanted();
  void previousWanted();
  void closed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLineEdit* edit_;
  QLabel* message_;
};

}  // namespace kelvaron
