// Where the frame's free-standing texts stand: the graphs' range labels and
// peak texts, the operating-point line under the peaks, the car note beside
// the model name and the Magic Formula 5.2 scale-factor list below the
// operating-point sliders. Pure arithmetic on pixel positions and text
// widths, so the placement is checked without drawing.
//
// The curves of a tyre run from the lower left through the plot's centre to
// the upper right (forces), the aligning moment close to the horizontal axis;
// the upper left and lower right of the plot stay empty, and that is where
// the range labels go.
#pragma once

#include "render/qrect.h"

struct TextSpot {
  int x = 0, y = 0;  // top left of the text
};

enum RangeLabel { RANGE_X_MIN = 0, RANGE_X_MAX = 1, RANGE_Y_MAX = 2, RANGE_Y_MIN = 3 };

// Height of one text line of the UI font, and the pitch of stacked lines.
constexpr int TEXT_LINE = 15;
constexpr int TEXT_STACK = 16;

// Range label `which` of graph `graph` (0..2), `wid` pixels wide, around the
// plot centre (cx, cy). Each graph's label stands 16 pixels below the
// previous graph's: x minimum below the left end of the horizontal axis (or
// above it, `xMinAbove`, for tyres whose curves run there), x maximum below
// its right end, y maximum left of the top of the vertical axis, y minimum
// right of its bottom.
TextSpot TextPlaceRangeLabel(RangeLabel which, int graph, int wid, int cx, int cy, bool xMinAbove = false);

// Peak text of graph `graph` under the plot, one line per graph, from the
// plot's left edge; `areaBottom` is the graph area's bottom edge.
TextSpot TextPlacePeak(int graph, int plotLeft, int areaBottom);
// The operating-point line, under the three peak texts.
TextSpot TextPlaceOpLine(int plotLeft, int areaBottom);
// Line `i` of the clamp notes that do not fit on the operating-point line:
// beside the peak texts, `peakRight` being the right end of the widest.
TextSpot TextPlaceOpNote(int i, int peakRight, int areaBottom);

// The car note: the line under the model name at (modelX, modelY).
TextSpot TextPlaceCarNote(int modelX, int modelY);

// The scale-factor list: `n` entries of the given widths, column by column
// with `rows` entries each, in the band `band` (left edge, top, right edge
// as x + wid, and height), columns as wide as their widest entry plus a gap.
// Writes n spots; true when the list fits the band's width.
bool TextPlaceScaleList(const int *widths, int n, int rows, const QRect &band, TextSpot *out);
