#pragma once

// Makes this process another user than the one who started it, one without any rights of its own, for good:
// for the role of a second process. False where that can't be done: on Windows, and for anybody but root.
bool BecomeSecondUser();

// Whether BecomeSecondUser would succeed.
bool CanBecomeSecondUser();
