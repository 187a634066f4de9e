#include "ui/qwinmgr.h"

#include <cstddef>

int QFocusNext(const std::vector<bool> &can_focus, int current, int step) {
  int n = static_cast<int>(can_focus.size());
  if (n == 0) return -1;
  step = step < 0 ? -1 : 1;
  // From no focus, forward starts at the first control and back at the last.
  int at = (current < 0 || current >= n) ? (step > 0 ? n - 1 : 0) : current;
  for (int i = 0; i < n; i++) {
    at = (at + step + n) % n;
    if (can_focus[static_cast<std::size_t>(at)]) return at;
  }
  return -1;
}
