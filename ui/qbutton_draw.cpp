// QButton drawing: a raised face (lighter under the mouse, sunken while
// pressed, flat grey when disabled), its frame or the focus ring, then the
// symbol or the centred text in the button's shade.
#include <cstring>

#include "ui/qbutton.h"
#include "ui/qbutton_symbol.h"
#include "ui/qcanvas.h"
#include "ui/qcontrol.h"

int QButton::GetShade() const { return IsEnabled() ? qlook::INK_GREY : qlook::INK_GREY_DISABLED; }

void QButton::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  if (r.wid <= 0 || r.hgt <= 0) return;
  bool enabled = IsEnabled();
  QButtonState st = enabled ? push.State() : QButtonState::Idle;
  bool pressed = st == QButtonState::Pressed;
  cv->SetBlending(0);

  QColor face = !enabled ? qlook::FACE_DISABLED
                : pressed ? qlook::FACE_PRESSED
                : st == QButtonState::Hover ? qlook::FACE_HOVER
                                            : qlook::FACE;
  cv->SetColor(face);
  cv->Rectfill(r);
  if (enabled && !pressed && r.wid > 4 && r.hgt > 4) {
    cv->SetColor(qlook::FACE_LIGHT);
    cv->Rectfill(r.x + 1, r.y + 1, r.wid - 2, 1);
    cv->SetColor(qlook::FACE_SHADOW);
    cv->Rectfill(r.x + 1, r.y + r.hgt - 2, r.wid - 2, 1);
  }
  if (HasFocus() && enabled) {
    QControlFocusRing(cv, r);
  } else {
    cv->SetColor(enabled ? qlook::FRAME : qlook::FRAME_DISABLED);
    cv->Rectline(r);
  }

  int shift = pressed ? PRESS_SHIFT : 0;
  int shade = GetShade();
  QButtonSymbol sym = QButtonSymbolFromText(text.c_str());
  if (sym != QButtonSymbol::None) {
    QButtonPaintSymbol(cv, sym, r.x + shift, r.y + shift, r.wid, r.hgt, shift, shade);
  } else if (!text.empty() && cv->GetFont()) {
    int d = shift / 2;
    cv->SetColor(shade, shade, shade);
    QControlTextCentred(cv, text.c_str(), QControlTextTop(cv, r) + d, QRect(r.x + 3 + d, r.y + 1, r.wid - 6, r.hgt - 2));
  }
}
