// Small values of the core as the toolkit has them; text is in text_conversion.h.
#pragma once

#include <QColor>
#include <QString>

#include "desktop/text_conversion.h"
#include "platform/color.h"

namespace kelvaron {

inline QColor toQt(Color color) { return {color.red, color.green, color.blue}; }

/// A caption without the "&" before its mnemonic; "&&" is one "&".
QString withoutMnemonic(const QString& caption);

/// Why a file that the user chose can't be taken; empty when it can.
QString whyNot(const QString& chosen);

}  // namespace kelvaron
