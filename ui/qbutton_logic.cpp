#include "ui/qbutton_logic.h"

namespace {
using S = QButtonState;
// Rows: Enter, Leave, Press, Release. A press outside never reaches a button
// (Feed filters it), so Idle+Press keeps Idle; a release outside after a
// press cancels without a click.
const QButtonStep kTable[4][4] = {
    /* Idle       */ {{S::Hover, false}, {S::Idle, false}, {S::Idle, false}, {S::Idle, false}},
    /* Hover      */ {{S::Hover, false}, {S::Idle, false}, {S::Pressed, false}, {S::Hover, false}},
    /* Pressed    */ {{S::Pressed, false}, {S::PressedOut, false}, {S::Pressed, false}, {S::Hover, true}},
    /* PressedOut */ {{S::Pressed, false}, {S::PressedOut, false}, {S::PressedOut, false}, {S::Idle, false}},
};
}  // namespace

QButtonStep QButtonNext(QButtonState s, QButtonInput in) {
  return kTable[static_cast<int>(s)][static_cast<int>(in)];
}

bool QPushLogic::Apply(QButtonInput in) {
  QButtonStep st = QButtonNext(state_, in);
  state_ = st.next;
  return st.clicked;
}

bool QPushLogic::Feed(const QEvent &ev) {
  bool inside = rect_.Contains(ev.x, ev.y);
  switch (ev.type) {
    case QEVENT_MOTIONNOTIFY:
      return Apply(inside ? QButtonInput::Enter : QButtonInput::Leave);
    case QEVENT_LEAVE:
      return Apply(QButtonInput::Leave);
    case QEVENT_BUTTONPRESS:
      if (ev.n != QMB_LEFT) return false;
      // A press also tells where the mouse is, in case no motion came first.
      Apply(inside ? QButtonInput::Enter : QButtonInput::Leave);
      return inside ? Apply(QButtonInput::Press) : false;
    case QEVENT_BUTTONRELEASE:
      if (ev.n != QMB_LEFT) return false;
      Apply(inside ? QButtonInput::Enter : QButtonInput::Leave);
      return Apply(QButtonInput::Release);
    default:
      return false;
  }
}
