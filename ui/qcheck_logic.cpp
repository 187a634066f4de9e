#include "ui/qcheck_logic.h"

bool QCheckLogic::Feed(const QEvent &ev, bool focused) {
  bool flip = button_.Feed(ev);
  if (ev.type == QEVENT_KEYPRESS && ev.n == QK_SPACE && focused) flip = true;
  if (flip) checked_ = !checked_;
  return flip;
}
