// Keyboard focus order among a window's controls: Tab moves forward,
// Shift+Tab back, both wrapping around and skipping controls that cannot take
// the focus (disabled or hidden).
#pragma once

#include <vector>

// Returns the index that takes the focus after `current` (-1: none has it) in
// direction `step` (+1 or -1), or -1 when no control can take it.
int QFocusNext(const std::vector<bool> &can_focus, int current, int step);
