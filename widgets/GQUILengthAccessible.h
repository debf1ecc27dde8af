#pragma once

// Has screen readers told that a GQUIUnitSpinBox without a length has no number, and its text otherwise. To
// be called before the first such box is shown to them; again does nothing.
void InstallGQUILengthAccessible();
