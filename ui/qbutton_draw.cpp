// Drawing of a push button: face by state, frame, focus ring, then the
// symbol triangle or the centred label. Pressed faces shift their content by
// one pixel so the press reads as a movement.
#include <algorithm>

#include "ui/qbutton.h"
#include "ui/qcanvas.h"

QTri QButtonSymbolTri(const QRect &r, QButtonSymbol sym, bool pressed) {
  int d = pressed ? 1 : 0;
  int cx = r.x + r.wid / 2 + d, cy = r.y + r.hgt / 2 + d;
  int s = std::max(2, std::min(r.wid, r.hgt) / 4);  // half the symbol's extent
  switch (sym) {
    case QButtonSymbol::Left: return {{cx + s, cx + s, cx - s}, {cy - s, cy + s, cy}};
    case QButtonSymbol::Right: return {{cx - s, cx - s, cx + s}, {cy - s, cy + s, cy}};
    case QButtonSymbol::Up: return {{cx - s, cx + s, cx}, {cy + s, cy + s, cy - s}};
    case QButtonSymbol::Down: return {{cx - s, cx + s, cx}, {cy - s, cy - s, cy + s}};
    case QButtonSymbol::None: break;
  }
  return {{cx, cx, cx}, {cy, cy, cy}};
}

void QButtonDraw(QCanvas &cv, const QButton &b, const char *label, QButtonSymbol sym, bool focused) {
  const QRect &r = b.Rect();
  bool pressed = b.State() == QButtonState::Pressed;
  // Face
  switch (b.State()) {
    case QButtonState::Pressed: cv.SetColor(QCANVAS_PX_DARKTEAL); break;
    case QButtonState::Hover: cv.SetColor(QCANVAS_PX_TEAL); break;
    default: cv.SetColor(QCANVAS_PX_MIDGRAY); break;
  }
  cv.Rectfill(r);
  // Frame and focus ring (two pixels in, so it stays visible on every face)
  cv.SetColor(QCANVAS_PX_LTGRAY);
  cv.Rectline(r);
  if (focused && r.wid > 6 && r.hgt > 6) {
    cv.SetColor(QCANVAS_PX_WHITE);
    cv.Rectline(r.x + 2, r.y + 2, r.wid - 4, r.hgt - 4);
  }
  // Content
  cv.SetColor(QCANVAS_PX_WHITE);
  if (sym != QButtonSymbol::None) {
    QTri t = QButtonSymbolTri(r, sym, pressed);
    cv.Triangle(t.x[0], t.y[0], t.x[1], t.y[1], t.x[2], t.y[2]);
  } else if (label && *label && cv.GetFont()) {
    int d = pressed ? 1 : 0;
    int tx = r.x + (r.wid - cv.GetTextWidth(label)) / 2 + d;
    int ty = r.y + (r.hgt - cv.GetTextHeight()) / 2 + d;
    cv.Text(label, tx, ty);
  }
}
