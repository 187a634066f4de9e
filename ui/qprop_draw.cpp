// QProp drawing: a sunken field, the part up to the knob filled pale, the
// knob (open where a caption crosses it), the caption centred on top and the
// frame or the focus ring.
#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qprop.h"

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
  QColor knob = !enabled ? qlook::MARK_DISABLED : (dragging || hot) ? qlook::ACCENT_HOT : qlook::ACCENT;
  bool captioned = !caption.empty() && cv->GetFont();
  cv->SetColor(knob);
  cv->Rectfill(k);
  if (captioned && k.wid > 4 && k.hgt > 2) {
    // A knob that the caption crosses is a window onto the text: two-pixel
    // sides, the field between them, so no letter disappears under it.
    cv->SetColor(enabled ? qlook::FIELD : qlook::FIELD_DISABLED);
    cv->Rectfill(k.x + 2, k.y + 1, k.wid - 4, k.hgt - 2);
  } else if (k.hgt > 6) {
    // Otherwise a light groove marks the knob's centre.
    cv->SetColor(enabled ? qlook::ACCENT_PALE : qlook::FIELD_DISABLED);
    cv->Rectfill(k.x + KNOB_WID / 2, k.y + 3, 1, k.hgt - 6);
  }

  if (captioned) {
    QRect room(inner.x + 2, inner.y, inner.wid - 4, inner.hgt);
    int grey = enabled ? qlook::INK_GREY : qlook::INK_GREY_DISABLED;
    cv->SetColor(grey, grey, grey);
    QControlTextCentred(cv, caption.c_str(), QControlTextTop(cv, r), room);
  }

  if (HasFocus() && enabled) {
    QControlFocusRing(cv, r);
  } else {
    cv->SetColor(enabled ? qlook::FRAME : qlook::FRAME_DISABLED);
    cv->Rectline(r);
  }
}
