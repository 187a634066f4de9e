// Shared pieces of the controls' look and their tab numbering.
#include "ui/qcontrol.h"

#include <algorithm>

#include "ui/qbutton_logic.h"
#include "ui/qcanvas.h"
#include "ui/qdialog.h"
#include "ui/qevent.h"
#include "ui/qwindow.h"

int QControlNextTab() {
  static int next = 0;
  return next++;
}

bool QControlOnDark(const QWindow *w) {
  for (const QWindow *p = w; p; p = p->GetParent()) {
    if (dynamic_cast<const QDialog *>(p)) return true;
  }
  return false;
}

QColor QControlInk(const QWindow *w) {
  bool dark = QControlOnDark(w);
  if (w && !w->IsEnabled()) return dark ? qlook::INK_DISABLED_ON_DARK : qlook::INK_DISABLED_ON_LIGHT;
  return dark ? qlook::INK_ON_DARK : qlook::INK_ON_LIGHT;
}

void QControlFocusRing(QCanvas *cv, const QRect &r, int thickness) {
  cv->SetColor(qlook::FOCUS);
  cv->Rectline(r);
  if (thickness > 1 && r.wid > 4 && r.hgt > 4) cv->Rectline(r.x + 1, r.y + 1, r.wid - 2, r.hgt - 2);
}

int QControlTextTop(const QCanvas *cv, const QRect &r) { return r.y + (r.hgt - cv->GetTextHeight()) / 2; }

namespace {

// Factor for the advances so that `w` pixels of text take `avail`.
float Squeeze(int w, int avail) {
  if (w <= avail || w <= 0) return 1.0f;
  float s = float(avail) / float(w);
  return s < QCONTROL_TEXT_MIN_SQUEEZE ? QCONTROL_TEXT_MIN_SQUEEZE : s;
}

}  // namespace

int QControlTextWidth(const QCanvas *cv, const char *text, int avail) {
  if (!text || !cv->GetFont()) return 0;
  int w = cv->GetTextWidth(text);
  float s = Squeeze(w, avail);
  return s == 1.0f ? w : int(float(w) * s + 0.5f);
}

void QControlText(QCanvas *cv, const char *text, int x, int y, const QRect &room, unsigned flags) {
  if (!text || !*text || !cv->GetFont()) return;
  int avail = room.x + room.wid - x;
  int w = cv->GetTextWidth(text);
  float s = Squeeze(w, avail);
  bool clip = float(w) * s > float(avail) + 0.5f && !(flags & (QCONTROL_TEXT_OVERFLOW | QCONTROL_TEXT_KEEPCLIP));
  if (clip) cv->Clip(room);
  if (s == 1.0f) {
    cv->Text(text, x, y);
  } else {
    // Glyph by glyph, each at its squeezed pen position.
    for (int i = 0; text[i]; i++) {
      if (text[i] == ' ') continue;
      int px = x + int(float(cv->GetTextWidth(text, i)) * s + 0.5f);
      cv->Text(text + i, px, y, 1);
    }
  }
  if (clip) cv->NoClip();
}

void QControlTextCentred(QCanvas *cv, const char *text, int y, const QRect &room, unsigned flags) {
  int w = QControlTextWidth(cv, text, room.wid);
  int x = room.x + (room.wid - w) / 2;
  QControlText(cv, text, x < room.x ? room.x : x, y, room, flags);
}

void QControlField(QCanvas *cv, const QRect &r, bool focused) {
  cv->SetColor(qlook::FIELD);
  cv->Rectfill(r);
  cv->SetColor(qlook::FRAME);
  cv->Rectline(r);
  if (focused) QControlFocusRing(cv, r);
}

void QControlMarkCaption(QCanvas *cv, const QWindow *w, const char *text, int x, const QRect &r) {
  int y = QControlTextTop(cv, r);
  int room = r.x + r.wid - x;
  cv->SetColor(QControlInk(w));
  QControlText(cv, text, x, y, QRect(x, r.y, room, r.hgt));
  if (w->HasFocus() && w->IsEnabled()) {
    int tw = std::min(QControlTextWidth(cv, text, room), room);
    QControlFocusRing(cv, QRect(x - 3, r.y, tw + 6, r.hgt), 1);
  }
}

bool QControlPushMouse(const QWindow *w, QPushLogic &push, const QEvent &ev, bool *clicked, bool *consumed) {
  switch (ev.type) {
    case QEVENT_BUTTONPRESS:
    case QEVENT_BUTTONRELEASE:
    case QEVENT_MOTIONNOTIFY:
    case QEVENT_LEAVE: break;
    default: return false;
  }
  push.SetRect(w->GetAbsRect());
  *clicked = push.Feed(ev);
  *consumed = (ev.type == QEVENT_BUTTONPRESS || ev.type == QEVENT_BUTTONRELEASE) && ev.n == QMB_LEFT;
  return true;
}
