#include "ui/qradiogroup.h"

int QRadioGroup::Add(QRect r) {
  rects_.push_back(r);
  return Count() - 1;
}

bool QRadioGroup::Select(int index) {
  if (index < 0 || index >= Count()) return false;
  selected_ = index;
  return true;
}

int QRadioGroup::HitTest(int x, int y) const {
  for (int i = 0; i < Count(); i++)
    if (rects_[i].Contains(x, y)) return i;
  return -1;
}

bool QRadioGroup::Feed(const QEvent &ev) {
  int before = selected_;
  if (ev.type == QEVENT_BUTTONPRESS && ev.n == QMB_LEFT) {
    int hit = HitTest(ev.x, ev.y);
    if (hit >= 0) selected_ = hit;
  } else if (ev.type == QEVENT_KEYPRESS && Count() > 0) {
    int step = (ev.n == QK_DOWN || ev.n == QK_RIGHT) ? 1 : (ev.n == QK_UP || ev.n == QK_LEFT) ? -1 : 0;
    if (step != 0) {
      // With nothing selected, Down starts at the first choice and Up at the last.
      int from = selected_ < 0 ? (step > 0 ? -1 : 0) : selected_;
      selected_ = (from + step + Count()) % Count();
    }
  }
  return selected_ != before;
}
