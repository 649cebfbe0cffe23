#include "desktop/qt_values.h"

namespace kelvaron {

QString withoutMnemonic(const QString& caption) {
  QString plain;
  plain.reserve(caption.size());
  for (qsizetype i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size()) ++i;
    plain += caption[i];
  }
  return plain;
}

QString whyNot(const QString& chosen) {
  if (shownText(storedText(chosen)) == chosen) return {};
  return QStringLiteral(
             "Kelvaron can't open this file, because its name or that of its folder has letters "
             "outside the Western alphabet:\n\n%1\n\nRename it, or choose another file.")
      .arg(chosen);
}

}  // namespace kelvaron
