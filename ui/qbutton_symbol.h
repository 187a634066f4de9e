// The symbols a button draws instead of its text when the text names one:
// "$PLAY", "$REVERSE", "$REWIND", "$FORWARD", "$LEFT", "$RIGHT", "$DOWN".
//
// Each symbol fills a box half the button's width by half its height,
// centred: left = x + (wid - wid/2 - shift)/2, top = y + (hgt - hgt/2 -
// shift)/2, where shift is the press offset handed to the paint routine
// (halving rounds towards zero). The fill is the button's shade, one grey
// value for red, green and blue.
#pragma once

#include "render/qrect.h"

class QCanvas;

enum class QButtonSymbol { None, Play, Reverse, Rewind, Forward, Left, Right, Down };

// The symbol a button text names; None for any other text.
QButtonSymbol QButtonSymbolFromText(const char *text);

// The symbol box of a button at (x, y), wid x hgt, with press offset `shift`.
QRect QButtonSymbolBox(int x, int y, int wid, int hgt, int shift);

// A symbol as filled triangles, in pixel-edge coordinates: (left, top) is
// the top-left corner of the box's first pixel, (left + wid, top + hgt) the
// bottom-right corner of its last.
struct QTri {
  int x[3], y[3];
};
struct QButtonSymbolShape {
  int count = 0;
  QTri tri[4];
};
QButtonSymbolShape QButtonSymbolShapeIn(QButtonSymbol sym, const QRect &box);

// Fills the symbol of a button at (x, y), wid x hgt, in grey `shade`.
void QButtonPaintSymbol(QCanvas *cv, QButtonSymbol sym, int x, int y, int wid, int hgt, int shift, int shade);
