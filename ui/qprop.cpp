// QProp input and the position <-> pixel mapping.
#include "ui/qprop.h"

#include <algorithm>
#include <cmath>

#include "ui/qapp.h"
#include "ui/qcontrol.h"
#include "ui/qevent.h"

QProp::QProp(QWindow *parent, int x, int y, int wid, int hgt) : QWindow(parent, x, y, wid, hgt) {
  SetTabOrder(QControlNextTab());
}

void QProp::SetRange(int min, int max) {
  minPos = min;
  maxPos = std::max(min, max);
}

void QProp::SetStepSizes(int small, int big) {
  smallStep = small;
  bigStep = big;
}

int QProp::Clamped(int p) const { return std::clamp(p, minPos, maxPos); }

QSliderMap QProp::GetMap() const {
  QRect r = GetAbsRect();
  // Inside the one-pixel frame, the knob centre travels half a knob in from
  // either end.
  int half = KNOB_WID / 2;
  QSliderMap m;
  m.track = QRect(r.x + 1 + half, r.y, std::max(1, r.wid - 2 - 2 * half), r.hgt);
  m.lo = float(minPos);
  m.hi = float(maxPos);
  return m;
}

QRect QProp::GetKnobRect() const {
  QRect r = GetAbsRect();
  int cx = GetMap().ValueToX(float(Clamped(pos)));
  return QRect(cx - KNOB_WID / 2, r.y + 1, KNOB_WID, std::max(0, r.hgt - 2));
}

int QProp::PositionAt(int x) const { return Clamped(int(std::lround(GetMap().XToValue(x)))); }

void QProp::UserMove(int p) {
  p = Clamped(p);
  if (p == pos) return;
  pos = p;
  PostControlEvent(QEVENT_CHANGE, pos);
}

bool QProp::OnEvent(QEvent *ev) {
  if (!IsEnabled()) {
    dragging = hot = false;
    return false;
  }
  switch (ev->type) {
    case QEVENT_BUTTONPRESS: {
      if (ev->n == QMB_WHEELUP || ev->n == QMB_WHEELDOWN) {
        UserMove(Clamped(pos) + (ev->n == QMB_WHEELUP ? smallStep : -smallStep));
        return true;
      }
      if (ev->n != QMB_LEFT) return false;
      QRect k = GetKnobRect();
      int cx = k.x + KNOB_WID / 2;
      if (ev->x >= k.x - 1 && ev->x < k.x + k.wid + 1) {
        dragging = true;
        moved = false;
        pressX = ev->x;
        grabOffset = ev->x - cx;
      } else {
        UserMove(Clamped(pos) + (ev->x < cx ? -bigStep : bigStep));
      }
      return true;
    }
    case QEVENT_MOTIONNOTIFY: {
      // A release the window never saw (outside it) ends the drag too.
      if (dragging && app && !app->IsButtonDown(QMB_LEFT)) dragging = false;
      if (dragging && ev->x != pressX) moved = true;
      if (dragging && moved) UserMove(PositionAt(ev->x - grabOffset));
      QRect k = GetKnobRect();
      hot = dragging || (GetAbsRect().Contains(ev->x, ev->y) && ev->x >= k.x - 1 && ev->x < k.x + k.wid + 1);
      return dragging;
    }
    case QEVENT_BUTTONRELEASE:
      if (ev->n != QMB_LEFT) return false;
      if (dragging && (moved || ev->x != pressX)) UserMove(PositionAt(ev->x - grabOffset));
      dragging = false;
      return true;
    case QEVENT_LEAVE:
      hot = dragging;
      return false;
    case QEVENT_KEYPRESS: {
      int from = Clamped(pos);
      switch (ev->n) {
        case QK_LEFT:
        case QK_DOWN: UserMove(from - smallStep); return true;
        case QK_RIGHT:
        case QK_UP: UserMove(from + smallStep); return true;
        case QK_PAGEDOWN: UserMove(from - bigStep); return true;
        case QK_PAGEUP: UserMove(from + bigStep); return true;
        case QK_HOME: UserMove(minPos); return true;
        case QK_END: UserMove(maxPos); return true;
        default: return false;
      }
    }
    default: return false;
  }
}
