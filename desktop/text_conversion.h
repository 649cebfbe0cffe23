// The desktop's side of the text border: the core's bytes (code page 1252) to the toolkit's
// strings and back. Each byte is one UTF-16 unit, so places in both are the same numbers.
#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "base/code_page.h"

namespace kelvaron {

inline QString shownText(std::string_view bytes) {
  QString result(static_cast<qsizetype>(bytes.size()), Qt::Uninitialized);
  QChar* out = result.data();
  for (const char byte : bytes) {
    *out++ = QChar(unicodeOf(static_cast<unsigned char>(byte)));
  }
  return result;
}

/// The first bytes of a text, with a sign where there is more.
inline std::string beginningOf(std::string_view text, std::size_t most) {
  if (text.size() <= most) return std::string(text);
  return std::string(text.substr(0, most)) + " [\x85]";
}

/// What the code page lacks becomes "?".
inline std::string storedText(const QString& text) { return fromUtf8(text.toStdString()); }

}  // namespace kelvaron
