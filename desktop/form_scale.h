// How large forms are: the one factor between their design's units and pixels, by the desktop's
// font.
#pragma once

#include <QtGlobal>

class QFont;

namespace kelvaron {

/// The factor that a font calls for: forms are designed for text of 9 points, and grow with its
/// height in steps of an eighth; never below 1.
qreal formScaleFor(const QFont& font);

/// Sets the factor for all forms of the program; whoever does, does before a window is made.
void setFormScale(qreal scale);
qreal formScale();

/// A length in twips as the toolkit's device-independent pixels, and back: a length in pixels comes
/// back as itself.
int toPixels(int twips);
int toTwips(int pixels);

}  // namespace kelvaron
