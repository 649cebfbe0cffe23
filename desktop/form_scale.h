// How large forms are: the factor between their design's units and pixels, by the desktop's font
// and what the screen has room for.
#pragma once

#include <QSize>

class QFont;

namespace kelvaron {

/// The factor that a font calls for: forms are designed for text of 9 points, and grow with its
/// height in steps of an eighth; never below 1.
qreal formScaleFor(const QFont& font);

/// Sets the factor for all forms of the program; whoever does, does before a window is made.
void setFormScale(qreal scale);
qreal formScale();

/// The factor of a form of this size, in twips: the program's, or as much of it as `room` (in
/// device-independent pixels) leaves, in the same steps; never below 1.
qreal formScaleWithin(QSize form, QSize room);

/// The program's font, or a smaller one where a form of this factor has no room for it; not below
/// the 9 points that forms are designed for.
QFont formFontFor(qreal scale);

/// A length in twips as the toolkit's device-independent pixels, and back: a length in pixels comes
/// back as itself.
int toPixels(int twips, qreal scale = formScale());
int toTwips(int pixels, qreal scale = formScale());

}  // namespace kelvaron
