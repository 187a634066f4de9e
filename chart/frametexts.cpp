// The frame's notes and lists.
#include "chart/frametexts.h"

#include <algorithm>
#include <cstdlib>
#include <cstdio>
#include <cstring>

#include "chart/coeftable.h"
#include "chart/graph.h"
#include "chart/opvalues.h"
#include "chart/carload.h"
#include "chart/textplace.h"
#include "render/qrenderer.h"

namespace {

const QColor NOTE_COLOR(190, 80, 0, 255);  // a note that something is not as asked
const QColor LINE_COLOR(60, 60, 60, 255);

void TextAt(QRenderer *r, const char *text, TextSpot at, QColor color) { r->DrawText(text, at.x, at.y, color); }

// Right end of the widest peak text, where the notes that do not fit on the
// operating-point line go.
int PeakRight(QRenderer *r, Graph *const *graphs, int plotLeft) {
  char buf[128];
  int right = plotLeft;
  for (int k = 0; k < CURVE_COUNT; k++) {
    const Graph *g = graphs[k];
    if (!g) continue;
    const Curve &c = g->GetCurve();
    snprintf(buf, sizeof buf, CurvePeakFormat(g->GetKind()), double(c.peakX), double(c.peakValue));
    right = std::max(right, plotLeft + r->MeasureText(buf));
  }
  return right;
}

}  // namespace

// Pixels of the main curves, followed along each segment, inside `box`.
int FrameCurveHits(Graph *const *graphs, const QRect &box, int cx, int cy) {
  int hits = 0;
  for (int k = 0; k < CURVE_COUNT; k++) {
    const Graph *g = graphs[k];
    if (!g) continue;
    const Curve &c = g->GetCurve();
    for (int i = 0; i + 1 < CURVE_SAMPLES; i++) {
      int x0 = g->SampleX(i, cx), y0 = g->SampleY(c.samples[i], cy);
      int x1 = g->SampleX(i + 1, cx), y1 = g->SampleY(c.samples[i + 1], cy);
      if (std::max(x0, x1) < box.x || std::min(x0, x1) >= box.x + box.wid) continue;
      int steps = std::max(std::abs(x1 - x0), std::abs(y1 - y0)) + 1;
      for (int s = 0; s <= steps; s++) hits += box.Contains(x0 + (x1 - x0) * s / steps, y0 + (y1 - y0) * s / steps);
    }
  }
  return hits;
}

bool FrameXMinLabelsAbove(QRenderer *r, Graph *const *graphs, int cx, int cy) {
  if (!r->HasFont()) return false;
  int hits[2] = {0, 0};
  char buf[64];
  for (int k = 0; k < CURVE_COUNT; k++) {
    const Graph *g = graphs[k];
    if (!g) continue;
    snprintf(buf, sizeof buf, "%.1f %s", double(g->GetRange().xMin), CurveXQuantity(g->GetKind()));
    for (int above = 0; above < 2; above++) {
      TextSpot at = TextPlaceRangeLabel(RANGE_X_MIN, int(g->GetKind()), 0, cx, cy, above);
      hits[above] += FrameCurveHits(graphs, QRect(at.x, at.y, r->MeasureText(buf), r->TextHeight()), cx, cy);
    }
  }
  return hits[0] > 0 && hits[1] < hits[0];
}

void FramePaintCarNote(QRenderer *r, const std::string &note, int modelX, int modelY) {
  if (note.empty()) return;
  TextAt(r, note.c_str(), TextPlaceCarNote(modelX, modelY), NOTE_COLOR);
}

void FramePaintOpLine(QRenderer *r, Graph *const graphs[CURVE_COUNT], const OperatingPoint &point, int wheel,
                      int plotLeft, int areaRight, int areaBottom) {
  // Without the UI font (reported at start-up) there is no text to draw.
  if (!r->HasFont() || !graphs[CURVE_FX]) return;
  OpValues v = OpValuesAt(*graphs[CURVE_FX]->GetCurrentTyre(), point);
  char line[256], notes[OP_NOTES_MAX][OP_NOTE_SIZE];
  OpValuesText(v, WHEEL_NAMES[wheel & 3], line, sizeof line);
  TextSpot at = TextPlaceOpLine(plotLeft, areaBottom);
  TextAt(r, line, at, LINE_COLOR);
  int n = OpClampNotes(v, notes);
  if (!n) return;
  // The notes follow on the same line while they fit in the graph area,
  // else each stands beside the peak texts.
  int x = at.x + r->MeasureText(line);
  char joined[OP_NOTES_MAX * OP_NOTE_SIZE + 16] = "";
  for (int i = 0; i < n; i++) snprintf(joined + strlen(joined), sizeof joined - strlen(joined), "; %s", notes[i]);
  if (x + r->MeasureText(joined) <= areaRight) {
    r->DrawText(joined, x, at.y, NOTE_COLOR);
    return;
  }
  int right = PeakRight(r, graphs, plotLeft);
  for (int i = 0; i < n; i++) TextAt(r, notes[i], TextPlaceOpNote(i, right, areaBottom), NOTE_COLOR);
}

void FramePaintEntryNote(QRenderer *r, const std::string &note, int x, int y) {
  if (note.empty()) return;
  r->DrawText(note.c_str(), x + 12, y, NOTE_COLOR);
}

void FramePaintScaleList(QRenderer *r, const KPacejka &tyre, int textsRight, int top) {
  char text[COEFF_SCALE_COUNT][48];
  int widths[COEFF_SCALE_COUNT];
  TextSpot at[COEFF_SCALE_COUNT];
  for (int i = 0; i < COEFF_SCALE_COUNT; i++) {
    CoeffInfo info = CoeffLookup(COEFF_LIST_SCALE, i);
    snprintf(text[i], sizeof text[i], "%s=%.5f", info.name, double(CoeffFieldGet(tyre, info.field)));
    widths[i] = r->MeasureText(text[i]);
  }
  const int rows = 4, left = textsRight + 16;
  TextPlaceScaleList(widths, COEFF_SCALE_COUNT, rows,
                     QRect(left, top, r->Bounds().wid - 4 - left, r->Bounds().hgt - top), at);
  for (int i = 0; i < COEFF_SCALE_COUNT; i++) TextAt(r, text[i], at[i], LINE_COLOR);
}
