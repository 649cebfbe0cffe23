#include "desktop/ports/application.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include "desktop/text_conversion.h"

namespace kelvaron {

void QtApplication::DoEvents() {
  {
    const EventGate::Hold hold(gate_);
    QCoreApplication::processEvents();
  }
  gate_.edge().throwIfEnded();
}

void QtApplication::showPage(const std::string& address) {
  const QUrl url(shownText(address), QUrl::StrictMode);
  const bool page =
      url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https");
  if (page && !url.host().isEmpty()) QDesktopServices::openUrl(url);
}

void QtApplication::showFolder(const std::string& path) {
  QDir folder(shownText(path));
  if (!folder.exists()) folder = QFileInfo(folder.path()).dir();
  QDesktopServices::openUrl(QUrl::fromLocalFile(folder.path()));
}

}  // namespace kelvaron
