#include "ui/qentryfield.h"

#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qfont.h"

QEntryField::QEntryField(QWindow *parent, int x, int y, int wid, int hgt, const std::string &text, int limit_)
    : QWindow(parent, x, y, wid, hgt), entry(text, limit_), limit(limit_) {}

void QEntryField::SetText(const std::string &text) {
  entry = QStringEntry(text, limit);
  allSelected = false;
}

void QEntryField::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  cv->SetColor(IsEnabled() ? qlook::FIELD : qlook::FIELD_DISABLED);
  cv->Rectfill(r);
  cv->SetColor(IsEnabled() ? qlook::FRAME : qlook::FRAME_DISABLED);
  cv->Rectline(r);
  if (HasFocus()) QControlFocusRing(cv, r);
  QFont *font = cv->GetFont();
  if (font == nullptr || !font->IsCreated()) return;
  const std::string &t = entry.Text();
  int caret = entry.Caret();
  int room = r.wid - 8;
  // The text scrolls left so that the caret stays inside the field.
  int first = 0;
  while (first < caret && cv->GetTextWidth(t.c_str() + first, caret - first) > room) first++;
  int len = static_cast<int>(t.size()) - first;
  while (len > 0 && cv->GetTextWidth(t.c_str() + first, len) > room) len--;
  int ty = r.y + (r.hgt - cv->GetTextHeight()) / 2;
  if (allSelected && len > 0) {
    cv->SetColor(qlook::ACCENT_PALE);
    cv->Rectfill(r.x + 3, ty - 1, cv->GetTextWidth(t.c_str() + first, len) + 2, cv->GetTextHeight() + 2);
  }
  cv->SetColor(IsEnabled() ? qlook::INK_ON_LIGHT : qlook::INK_DISABLED_ON_LIGHT);
  if (len > 0) cv->Text(t.c_str() + first, r.x + 4, ty, len);
  if (HasFocus()) {
    int cx = r.x + 4 + (caret > first ? cv->GetTextWidth(t.c_str() + first, caret - first) : 0);
    cv->Line(cx, r.y + 3, cx, r.y + r.hgt - 4);
  }
}

bool QEntryField::OnEvent(QEvent *ev) {
  switch (ev->type) {
    case QEVENT_BUTTONPRESS:
      if (ev->n == QMB_LEFT) {
        Focus();
        allSelected = false;
      }
      return true;
    case QEVENT_BUTTONRELEASE:
    case QEVENT_MOTIONNOTIFY:
      return true;
    case QEVENT_CHAR: {
      int ch = ev->n & 0xFFFF;
      if (allSelected && ch >= 32 && ch != 127 && ch <= 255) SetText("");
      entry.Feed(*ev);
      return true;
    }
    case QEVENT_KEYPRESS:
      if (ev->n == QK_ENTER || ev->n == 300 || ev->n == QK_ESC || ev->n == QK_TAB) return false;
      if (allSelected) {
        if (ev->n == QK_BACKSPACE || ev->n == QK_DELETE) {
          SetText("");
          return true;
        }
        if (ev->n == QK_LEFT || ev->n == QK_RIGHT || ev->n == QK_HOME || ev->n == QK_END) allSelected = false;
      }
      entry.Feed(*ev);
      return true;
    default:
      return false;
  }
}
