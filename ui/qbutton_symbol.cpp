// Button symbols: transport triangles and arrows in the symbol box.
#include "ui/qbutton_symbol.h"

#include <cstring>

#include "ui/qcanvas.h"

QButtonSymbol QButtonSymbolFromText(const char *text) {
  static const struct {
    const char *name;
    QButtonSymbol sym;
  } kNames[] = {{"$PLAY", QButtonSymbol::Play},     {"$REVERSE", QButtonSymbol::Reverse},
                {"$REWIND", QButtonSymbol::Rewind}, {"$FORWARD", QButtonSymbol::Forward},
                {"$LEFT", QButtonSymbol::Left},     {"$RIGHT", QButtonSymbol::Right},
                {"$DOWN", QButtonSymbol::Down}};
  if (!text || text[0] != '$') return QButtonSymbol::None;
  for (const auto &n : kNames)
    if (!strcmp(text, n.name)) return n.sym;
  return QButtonSymbol::None;
}

QRect QButtonSymbolBox(int x, int y, int wid, int hgt, int shift) {
  int bw = wid / 2, bh = hgt / 2;
  return QRect(x + (wid - bw - shift) / 2, y + (hgt - bh - shift) / 2, bw, bh);
}

namespace {

QTri Tri(int x0, int y0, int x1, int y1, int x2, int y2) { return {{x0, x1, x2}, {y0, y1, y2}}; }

void Add(QButtonSymbolShape &s, const QTri &t) {
  if (s.count < 4) s.tri[s.count++] = t;
}
// A rectangle as two triangles, so that it meets the triangles beside it
// without a seam.
void AddRect(QButtonSymbolShape &s, int x0, int y0, int x1, int y1) {
  Add(s, Tri(x0, y0, x1, y0, x1, y1));
  Add(s, Tri(x0, y0, x1, y1, x0, y1));
}

}  // namespace

QButtonSymbolShape QButtonSymbolShapeIn(QButtonSymbol sym, const QRect &b) {
  QButtonSymbolShape s;
  int l = b.x, t = b.y, w = b.wid, h = b.hgt;
  int r = l + w, bot = t + h, mx = l + w / 2, my = t + h / 2;
  switch (sym) {
    case QButtonSymbol::Play: Add(s, Tri(l, t, r, my, l, bot)); break;
    case QButtonSymbol::Reverse: Add(s, Tri(r, t, l, my, r, bot)); break;
    case QButtonSymbol::Rewind:
      Add(s, Tri(mx, t, mx, bot, l, my));
      Add(s, Tri(r, t, r, bot, mx, my));
      break;
    case QButtonSymbol::Forward:
      Add(s, Tri(l, t, l, bot, mx, my));
      Add(s, Tri(mx, t, mx, bot, r, my));
      break;
    // Arrows: a head of half the box and a shaft of half its thickness.
    case QButtonSymbol::Left:
      Add(s, Tri(mx, t, mx, bot, l, my));
      AddRect(s, mx, t + h / 4, r, bot - h / 4);
      break;
    case QButtonSymbol::Right:
      Add(s, Tri(mx, t, mx, bot, r, my));
      AddRect(s, l, t + h / 4, mx, bot - h / 4);
      break;
    case QButtonSymbol::Down:
      Add(s, Tri(l, my, r, my, mx, bot));
      AddRect(s, l + w / 4, t, r - w / 4, my);
      break;
    case QButtonSymbol::None: break;
  }
  return s;
}

void QButtonPaintSymbol(QCanvas *cv, QButtonSymbol sym, int x, int y, int wid, int hgt, int shift, int shade) {
  QButtonSymbolShape s = QButtonSymbolShapeIn(sym, QButtonSymbolBox(x, y, wid, hgt, shift));
  cv->SetColor(shade, shade, shade);
  // QCanvas::Triangle puts a vertex at the lower-left corner of the pixel it
  // names; the shape is laid out on pixel edges, so each y goes in one up.
  for (int i = 0; i < s.count; i++) {
    const QTri &t = s.tri[i];
    cv->Triangle(t.x[0], t.y[0] - 1, t.x[1], t.y[1] - 1, t.x[2], t.y[2] - 1);
  }
}
