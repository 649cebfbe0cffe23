// Whether what a form says can be read, and what it is used with reached.
#pragma once

#include <QStringList>

#include "desktop/shell/shown_form.h"

namespace kelvaron::testing {

/// The captions of the form that their controls have no room for, and those of the main button and
/// of the lowest row of buttons where the screen doesn't show these whole. What scrolls counts as
/// if it were all in sight, but for these buttons.
QStringList cutOrOutOfSight(Form& form, const ShownForm& shown);

}  // namespace kelvaron::testing
