// The voice of combo boxes: a screen reader hears the box's own name, and as its value the text,
// which the toolkit tells as the name.
#pragma once

namespace kelvaron {

/// Makes all combo boxes speak so; to be called at least once.
void installComboAccessibility();

}  // namespace kelvaron
