#include "desktop/shell/room_header.h"

#include <QFontMetrics>
#include <algorithm>
#include <array>
#include <vector>

#include "desktop/form_scale.h"
#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

constexpr int kGap = 8;
constexpr qreal kFontStep = 0.5;  // in points
// Of the version mark, in sizes of the lines' text, as designed: 18 points beside 9.
constexpr int kVersionSize = 2;
// Characters of a value that are to be seen.
constexpr int kValueCharacters = 28;
// A narrower logo isn't worth its place.
constexpr int kNarrowestLogo = 80;
// Of the logo's picture: width to height.
constexpr qreal kLogoShape = 300.0 / 48;
// Of the head's height: what stands above the lines and below, 8 of 76 pixels as designed.
constexpr qreal kMarginShare = 8.0 / 76;

struct HeadLine {
  const Label* caption;
  const Label* value;
};

int widthOf(const QFont& font, const Label& label) {
  return QFontMetrics(font).horizontalAdvance(shownText(label.Caption.get())) + 2;
}

using HeadLines = std::vector<HeadLine>;

int captionsWidth(const HeadLines& lines, const QFont& font) {
  int width = 0;
  for (const HeadLine& line : lines) width = std::max(width, widthOf(font, *line.caption));
  return width;
}

int valuesWidth(const QFont& font) {
  return QFontMetrics(font).averageCharWidth() * kValueCharacters;
}

QFont versionFont(const Label& label, QFont lines) {
  if (label.Font_.get().family == FontFamily::tahoma) {
    lines.setFamilies({QStringLiteral("Tahoma"), lines.family()});
  }
  lines.setBold(true);
  lines.setPointSizeF(lines.pointSizeF() * kVersionSize);
  return lines;
}

}  // namespace

void RoomHeader::place(const Control& control, QRect rect, const QFont& font) const {
  if (ControlView* view = views_.of(control)) view->layOut(rect, font);
}

void RoomHeader::layOut(const QFont& font) const {
  const int height = toPixels(room_.txtOutput.Top);
  const int margin = qRound(height * kMarginShare);
  const int left = toPixels(room_.Image1.Left);
  const int right = toPixels(room_.Frame1.Left) - kGap;
  const qreal smallest = font.pointSizeF() / formScale();

  QFont lineFont = font;
  lineFont.setPointSizeF(smallest);
  HeadLines lines = {{&room_.Label2, &room_.Label1}, {&room_.Label4, &room_.Label7}};
  const int lowest = QFontMetrics(lineFont).height();
  const bool allLines = 3 * lowest <= height - margin;
  if (allLines) lines.insert(lines.begin() + 1, {&room_.Label5, &room_.Label6});
  const int count = static_cast<int>(lines.size());
  const int lineHeight = std::max(lowest, (height - 2 * margin) / count);

  const auto neededWidth = [&](const QFont& each) {
    return widthOf(versionFont(room_.Label3, each), room_.Label3) + captionsWidth(lines, each) +
           valuesWidth(each) + 2 * kGap;
  };
  const auto fits = [&] {
    return QFontMetrics(lineFont).height() <= lineHeight && neededWidth(lineFont) <= right - left;
  };
  lineFont.setPointSizeF(font.pointSizeF());
  while (!fits() && lineFont.pointSizeF() - kFontStep >= smallest) {
    lineFont.setPointSizeF(lineFont.pointSizeF() - kFontStep);
  }

  const int beside = right - left - neededWidth(lineFont) - kGap;
  const int logoHeight = toPixels(room_.Image1.Height);
  const int widest = std::min(toPixels(room_.Image1.Width), qRound(logoHeight * kLogoShape));
  const int logo = beside < kNarrowestLogo ? 0 : std::min(widest, beside);
  place(room_.Image1, {left, toPixels(room_.Image1.Top), logo, logoHeight}, font);
  const QFont mark = versionFont(room_.Label3, lineFont);
  const int markLeft = logo == 0 ? left : left + logo + toPixels(12 * kTwipsPerPixel);
  const int markWidth = widthOf(mark, room_.Label3);
  place(room_.Label3, {markLeft, 0, markWidth, height - margin / 2}, mark);

  const int captions = captionsWidth(lines, lineFont);
  // Where it is designed, unless its neighbours need that place.
  const int leftmost = markLeft + markWidth + kGap + captions + kGap;
  const int rightmost = std::max(leftmost, right - valuesWidth(lineFont));
  const int values = std::clamp(toPixels(room_.Label1.Left), leftmost, rightmost);
  int top = std::min(margin, (height - count * lineHeight) / 2);
  for (const HeadLine& line : lines) {
    place(*line.caption, {values - kGap - captions, top, captions, lineHeight}, lineFont);
    place(*line.value, {values, top, std::max(0, right - values), lineHeight}, lineFont);
    top += lineHeight;
  }
  if (!allLines) {
    place(room_.Label5, {}, lineFont);
    place(room_.Label6, {}, lineFont);
  }
}

}  // namespace kelvaron
