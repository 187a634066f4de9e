// Radio group logic: at most one choice selected; clicks select the choice
// under the mouse, arrow keys move the selection with wrap-around.
#pragma once

#include <vector>

#include "ui/qevent.h"
#include "ui/qrect.h"

class QRadioGroup {
 public:
  int Add(QRect r);  // returns the new choice's index
  int Count() const { return static_cast<int>(rects_.size()); }
  int Selected() const { return selected_; }  // -1 when none
  bool Select(int index);                      // false for an index out of range
  // Feeds one event; returns true when the selection changed.
  bool Feed(const QEvent &ev);
  int HitTest(int x, int y) const;  // the choice at (x, y) or -1

 private:
  std::vector<QRect> rects_;
  int selected_ = -1;
};
