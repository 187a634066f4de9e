// QProp drawing: a sunken field, the part up to the knob filled pale, the
// knob, the caption and the frame or the focus ring. The caption stands
// centred unless the knob is there; then it moves beside the knob, so the
// knob never hides a letter.
#include <algorithm>

#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qprop.h"

int QProp::CaptionX(int textWid, const QRect &room) const {
  const int gap = 3;
  QRect k = GetKnobRect();
  int x = room.x + std::max(0, (room.wid - textWid) / 2);
  if (x + textWid + gap <= k.x || x >= k.x + k.wid + gap) return x;
  int right = k.x + k.wid + gap, left = k.x - gap - textWid;
  bool rightFits = right + textWid <= room.x + room.wid, leftFits = left >= room.x;
  if (rightFits && (!leftFits || room.x + room.wid - right >= left - room.x)) return right;
  if (leftFits) return left;
  return x;  // a slider too short for knob and caption side by side
}

void QProp::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  if (r.wid <= 2 || r.hgt <= 2) return;
  bool enabled = IsEnabled();
  QRect inner(r.x + 1, r.y + 1, r.wid - 2, r.hgt - 2);
  QRect k = GetKnobRect();
  cv->SetBlending(0);

  cv->SetColor(enabled ? qlook::FIELD : qlook::FIELD_DISABLED);
  cv->Rectfill(inner);
  cv->SetColor(enabled ? qlook::ACCENT_PALE : qlook::FACE_DISABLED);
  cv->Rectfill(inner.x, inner.y, k.x - inner.x, inner.hgt);
  cv->SetColor(!enabled ? qlook::MARK_DISABLED : (dragging || hot) ? qlook::ACCENT_HOT : qlook::ACCENT);
  cv->Rectfill(k);
  if (k.hgt > 6) {
    // A light groove marks the knob's centre.
    cv->SetColor(enabled ? qlook::ACCENT_PALE : qlook::FIELD_DISABLED);
    cv->Rectfill(k.x + KNOB_WID / 2, k.y + 3, 1, k.hgt - 6);
  }

  if (!caption.empty() && cv->GetFont()) {
    QRect room(inner.x + 2, inner.y, inner.wid - 4, inner.hgt);
    int grey = enabled ? qlook::INK_GREY : qlook::INK_GREY_DISABLED;
    cv->SetColor(grey, grey, grey);
    int w = QControlTextWidth(cv, caption.c_str(), room.wid);
    QControlText(cv, caption.c_str(), CaptionX(w, room), QControlTextTop(cv, r), room);
  }

  if (HasFocus() && enabled) {
    QControlFocusRing(cv, r);
  } else {
    cv->SetColor(enabled ? qlook::FRAME : qlook::FRAME_DISABLED);
    cv->Rectline(r);
  }
}
