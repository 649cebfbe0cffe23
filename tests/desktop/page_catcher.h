// Stands in for the browser.
#pragma once

#include <QObject>
#include <QStringList>
#include <QUrl>

namespace kelvaron::testing {

class PageCatcher : public QObject {
  Q_OBJECT

 public:
  QStringList opened;

  Q_INVOKABLE void open(const QUrl& url) { opened << url.toString(); }
};

}  // namespace kelvaron::testing
