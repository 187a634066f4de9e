// Text positions of the frame.
#include "chart/textplace.h"

#include <algorithm>

namespace {

// Gap between a label and the axis or the plot's edge it belongs to.
constexpr int AXIS_GAP = 6;
// The x labels keep this far from the horizontal axis, clear of the aligning
// moment's tails, which run just beside the axis.
constexpr int X_LABEL_DROP = 14;
// Columns of the scale-factor list and the notes beside the peaks.
constexpr int COLUMN_GAP = 12;

}  // namespace

TextSpot TextPlaceRangeLabel(RangeLabel which, int graph, int wid, int cx, int cy, bool xMinAbove) {
  const int hw = 290, hh = 190;  // the plot's half sizes (Graph::X_ORIGIN, Y_ORIGIN)
  const int shift = TEXT_STACK * graph;
  switch (which) {
    case RANGE_X_MIN:
      if (xMinAbove) return {cx - hw + 2, cy - X_LABEL_DROP - 3 * TEXT_STACK + shift};
      return {cx - hw + 2, cy + X_LABEL_DROP + shift};
    case RANGE_X_MAX: return {cx + hw - 2 - wid, cy + X_LABEL_DROP + shift};
    case RANGE_Y_MAX: return {cx - AXIS_GAP - wid, cy - hh + 2 + shift};
    default: return {cx + AXIS_GAP, cy + hh - 2 - 3 * TEXT_STACK + shift};
  }
}

// At the default size the plot ends 60 pixels above the graph area's bottom
// and the command buttons start 8 pixels below it: room for the three peak
// lines and the operating-point line, one text line apart.
TextSpot TextPlacePeak(int graph, int plotLeft, int areaBottom) {
  return {plotLeft, areaBottom - 57 + TEXT_LINE * graph};
}

TextSpot TextPlaceOpLine(int plotLeft, int areaBottom) { return TextPlacePeak(3, plotLeft, areaBottom); }

TextSpot TextPlaceOpNote(int i, int peakRight, int areaBottom) {
  return {peakRight + COLUMN_GAP, TextPlacePeak(i, 0, areaBottom).y};
}

TextSpot TextPlaceCarNote(int modelX, int modelY) { return {modelX, modelY + TEXT_LINE}; }

bool TextPlaceScaleList(const int *widths, int n, int rows, const QRect &band, TextSpot *out) {
  rows = std::max(1, rows);
  int x = band.x;
  for (int first = 0; first < n; first += rows) {
    int last = std::min(n, first + rows), colWid = 0;
    for (int i = first; i < last; i++) {
      out[i] = {x, band.y + (i - first) * TEXT_LINE};
      colWid = std::max(colWid, widths[i]);
    }
    x += colWid + COLUMN_GAP;
  }
  return x - COLUMN_GAP <= band.x + band.wid;
}
