// QCheck input and drawing: the box (frame, field, tick), the text and the
// focus ring around the text.
#include "ui/qcheck.h"

#include <algorithm>

#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qevent.h"

QCheck::QCheck(QWindow *parent, int x, int y, int wid, int hgt, const char *t, bool checked)
    : QWindow(parent, x, y, wid, hgt), text(t ? t : ""), logic(QRect(), checked) {
  SetTabOrder(QControlNextTab());
}

bool QCheck::OnEvent(QEvent *ev) {
  if (!IsEnabled()) {
    logic.Button().Reset();
    return false;
  }
  logic.Button().SetRect(GetAbsRect());
  if (logic.Feed(*ev, HasFocus())) PostControlEvent(QEVENT_CHANGE, logic.Checked() ? 1 : 0);
  switch (ev->type) {
    case QEVENT_BUTTONPRESS:
    case QEVENT_BUTTONRELEASE: return ev->n == QMB_LEFT;
    case QEVENT_KEYPRESS: return ev->n == QK_SPACE;
    default: return false;
  }
}

void QCheck::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  if (r.wid <= 0 || r.hgt <= 0) return;
  bool enabled = IsEnabled();
  QButtonState st = enabled ? logic.Button().State() : QButtonState::Idle;
  int side = std::min(BOX, r.hgt);
  QRect box(r.x + 1, r.y + (r.hgt - side) / 2, side, side);
  cv->SetBlending(0);

  cv->SetColor(!enabled ? qlook::FIELD_DISABLED : st == QButtonState::Pressed ? qlook::FIELD_PRESSED : qlook::FIELD);
  cv->Rectfill(box);
  cv->SetColor(!enabled ? qlook::FRAME_DISABLED
               : (st == QButtonState::Hover || st == QButtonState::Pressed) ? qlook::ACCENT_HOT
                                                                             : qlook::FRAME);
  cv->Rectline(box);
  if (logic.Checked() && side >= 8) {
    // A bold tick: down from the left third, up to the top right.
    QColor c = enabled ? qlook::ACCENT : qlook::MARK_DISABLED;
    cv->SetColor(c);
    int s = side;
    int x0 = box.x + 2, y0 = box.y + s / 2 - 1;
    int x1 = box.x + s * 5 / 12, y1 = box.y + s - 4;
    int x2 = box.x + s - 3, y2 = box.y + 2;
    const int off[3][2] = {{0, 0}, {0, 1}, {1, 1}};
    for (const auto &o : off) {
      cv->Line(x0 + o[0], y0 + o[1], x1 + o[0], y1 + o[1]);
      cv->Line(x1 + o[0], y1 + o[1], x2 + o[0], y2 + o[1]);
    }
  }

  if (!text.empty() && cv->GetFont()) {
    QControlMarkCaption(cv, this, text.c_str(), box.x + side + GAP, r);
  } else if (HasFocus() && enabled) {
    QControlFocusRing(cv, QRect(box.x - 1, box.y - 1, box.wid + 2, box.hgt + 2));
  }
}
