#include "desktop/chat_view/chat_font.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QVarLengthArray>
#include <algorithm>
#include <cmath>

#include "base/code_page.h"

namespace kelvaron {
namespace {

constexpr qreal kLeading = 1.3;

QFont inBold(QFont font) {
  font.setBold(true);
  return font;
}

QChar shown(std::size_t byte) { return QChar(unicodeOf(static_cast<unsigned char>(byte))); }

}  // namespace

ChatFont::ChatFont(const QFont& font) : faces_{makeFace(font), makeFace(inBold(font))} {
  const QFontMetricsF regular(faces_[0].font);
  const QFontMetricsF bold(faces_[1].font);
  const qreal ascent = std::max(regular.ascent(), bold.ascent());
  const qreal height = ascent + std::max(regular.descent(), bold.descent());
  rowHeight_ = std::max(1, static_cast<int>(std::lround(height * kLeading)));
  baseline_ = static_cast<int>(std::lround((rowHeight_ - height) / 2 + ascent));
}

ChatFont::Face ChatFont::makeFace(const QFont& font) {
  Face face;
  face.font = font;
  face.raw = QRawFont::fromFont(font);
  const QFontMetricsF metrics(font);
  const qreal blank = metrics.horizontalAdvance(QLatin1Char(' '));
  for (std::size_t byte = 0; byte < face.glyphs.size(); ++byte) {
    if (isBlank(static_cast<char>(byte))) {
      face.advances[byte] = blank;
      continue;
    }
    const QList<quint32> found = face.raw.glyphIndexesForString(QString(shown(byte)));
    face.glyphs[byte] = found.size() == 1 ? found.front() : 0;
    face.advances[byte] = face.glyphs[byte] != 0
                              ? face.raw.advancesForGlyphIndexes({face.glyphs[byte]}).value(0).x()
                              : metrics.horizontalAdvance(shown(byte));
  }
  return face;
}

qreal ChatFont::width(std::string_view bytes, bool bold) const {
  qreal sum = 0;
  for (const char byte : bytes) sum += advance(byte, bold);
  return sum;
}

void ChatFont::draw(QPainter& painter, QPointF start, std::string_view bytes, bool bold) const {
  const Face& used = face(bold);
  QVarLengthArray<quint32, 256> glyphs;
  QVarLengthArray<QPointF, 256> places;
  qreal x = 0;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (isBlank(c)) {
      // Nothing to draw.
    } else if (used.glyphs[byte] != 0) {
      glyphs.append(used.glyphs[byte]);
      places.append(QPointF(x, 0));
    } else {
      painter.setFont(used.font);
      painter.drawText(start + QPointF(x, 0), QString(shown(byte)));
    }
    x += used.advances[byte];
  }
  if (glyphs.isEmpty()) return;
  QGlyphRun run;
  run.setRawFont(used.raw);
  run.setRawData(glyphs.constData(), places.constData(), static_cast<int>(glyphs.size()));
  painter.drawGlyphRun(start, run);
}

}  // namespace kelvaron
