// The icons of boxes and of the file dialog, drawn in the theme's colours.
#pragma once

#include <QIcon>
#include <QStyle>

namespace kelvaron::theme {

/// A sign that says of what kind a box is (`SP_MessageBoxInformation` and the like), sharp at any
/// size and scale.
QIcon boxIcon(QStyle::StandardPixmap kind);

/// What files, folders and the ways between them look like; null for anything else.
QIcon fileSign(QStyle::StandardPixmap kind);

}  // namespace kelvaron::theme
