#pragma once

// Tells screen readers the text of a GQUIUnitSpinBox, and that a box without a length has no number. Call it
// before screen readers see the first such box; calling it again does nothing.
void InstallGQUILengthAccessible();
