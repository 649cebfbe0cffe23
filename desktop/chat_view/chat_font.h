// A font as the chat view needs it: a glyph and an advance for each of the 256 bytes, in the
// regular and the bold weight, so that measuring a line is a sum and drawing it one call a run.
#pragma once

#include <QFont>
#include <QPointF>
#include <QRawFont>
#include <array>
#include <string_view>

class QPainter;

namespace kelvaron {

class ChatFont {
 public:
  explicit ChatFont(const QFont& font);

  /// In device-independent pixels, as all lengths here.
  qreal advance(char byte, bool bold) const {
    return face(bold).advances[static_cast<unsigned char>(byte)];
  }
  qreal width(std::string_view bytes, bool bold) const;

  /// From one row of text to the next: the font's height and a little leading.
  int rowHeight() const { return rowHeight_; }
  /// From the top of a row down to the base line of its text.
  int baseline() const { return baseline_; }

  /// Draws in the painter's pen; `start` is on the base line.
  void draw(QPainter& painter, QPointF start, std::string_view bytes, bool bold) const;

 private:
  struct Face {
    QFont font;
    QRawFont raw;
    std::array<quint32, 256> glyphs{};  // 0: the font lacks it, another font stands in
    std::array<qreal, 256> advances{};
  };
  static Face makeFace(const QFont& font);
  const Face& face(bool bold) const { return faces_[bold ? 1 : 0]; }

  std::array<Face, 2> faces_;
  int rowHeight_;
  int baseline_;
};

/// Blanks, TAB and control characters: drawn as a blank, and a line may be wrapped behind them.
constexpr bool isBlank(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code <= 0x20 || code == 0x7F;
}

}  // namespace kelvaron
