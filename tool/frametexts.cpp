// The frame's notes and lists.
#include "tool/frametexts.h"

#include <algorithm>
#include <cstdlib>
#include <cstdio>
#include <cstring>

#include "tool/coeftable.h"
#include "tool/graph.h"
#include "tool/opvalues.h"
#include "tool/session.h"
#include "tool/textplace.h"
#include "ui/qcanvas.h"

namespace {

const QColor NOTE_COLOR(190, 80, 0, 255);  // a note that something is not as asked
const QColor LINE_COLOR(60, 60, 60, 255);

void TextAt(QCanvas *cv, const char *text, TextSpot at) { cv->Text(text, at.x, at.y); }

// Right end of the widest peak text, where the notes that do not fit on the
// operating-point line go.
int PeakRight(QCanvas *cv, int plotLeft) {
  char buf[128];
  int right = plotLeft;
  for (Graph *g : session.graphs) {
    const Curve &c = g->GetCurve();
    snprintf(buf, sizeof buf, CurvePeakFormat(g->GetKind()), double(c.peakX), double(c.peakValue));
    right = std::max(right, plotLeft + cv->GetTextWidth(buf));
  }
  return right;
}

// Pixels of the main curves, followed along each segment, inside `box`.
int CurveHits(const QRect &box, int cx, int cy) {
  int hits = 0;
  for (const Graph *g : session.graphs) {
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

}  // namespace

bool FrameXMinLabelsAbove(QCanvas *cv, int cx, int cy) {
  if (!cv->GetFont()) return false;
  int hits[2] = {0, 0};
  char buf[64];
  for (const Graph *g : session.graphs) {
    if (!g) continue;
    snprintf(buf, sizeof buf, "%.1f %s", double(g->GetRange().xMin), CurveXQuantity(g->GetKind()));
    for (int above = 0; above < 2; above++) {
      TextSpot at = TextPlaceRangeLabel(RANGE_X_MIN, int(g->GetKind()), 0, cx, cy, above);
      hits[above] += CurveHits(QRect(at.x, at.y, cv->GetTextWidth(buf), cv->GetTextHeight()), cx, cy);
    }
  }
  return hits[0] > 0 && hits[1] < hits[0];
}

void FramePaintCarNote(QCanvas *cv, int modelX, int modelY) {
  if (session.carNote.empty()) return;
  cv->SetColor(NOTE_COLOR);
  TextAt(cv, session.carNote.c_str(), TextPlaceCarNote(modelX, modelY));
}

void FramePaintOpLine(QCanvas *cv, int plotLeft, int areaRight, int areaBottom) {
  // Without the UI font (reported at start-up) there is no text to draw.
  if (!cv->GetFont() || !session.graphs[CURVE_FX]) return;
  OpValues v = OpValuesAt(*session.graphs[CURVE_FX]->GetCurrentTyre(), session.point);
  char line[256], notes[OP_NOTES_MAX][OP_NOTE_SIZE];
  OpValuesText(v, WHEEL_NAMES[session.wheel & 3], line, sizeof line);
  cv->SetColor(LINE_COLOR);
  TextSpot at = TextPlaceOpLine(plotLeft, areaBottom);
  TextAt(cv, line, at);
  int n = OpClampNotes(v, notes);
  if (!n) return;
  // The notes follow on the same line while they fit in the graph area,
  // else each stands beside the peak texts.
  cv->SetColor(NOTE_COLOR);
  int x = at.x + cv->GetTextWidth(line);
  char joined[OP_NOTES_MAX * OP_NOTE_SIZE + 16] = "";
  for (int i = 0; i < n; i++) snprintf(joined + strlen(joined), sizeof joined - strlen(joined), "; %s", notes[i]);
  if (x + cv->GetTextWidth(joined) <= areaRight) {
    cv->Text(joined, x, at.y);
    return;
  }
  int right = PeakRight(cv, plotLeft);
  for (int i = 0; i < n; i++) TextAt(cv, notes[i], TextPlaceOpNote(i, right, areaBottom));
}

void FramePaintEntryNote(QCanvas *cv, int x, int y) {
  if (session.entryNote.empty()) return;
  cv->SetColor(NOTE_COLOR);
  cv->Text(session.entryNote.c_str(), x + 12, y);
}

void FramePaintScaleList(QCanvas *cv, const KPacejka &tyre, int textsRight, int top) {
  char text[COEFF_SCALE_COUNT][48];
  int widths[COEFF_SCALE_COUNT];
  TextSpot at[COEFF_SCALE_COUNT];
  for (int i = 0; i < COEFF_SCALE_COUNT; i++) {
    CoeffInfo info = CoeffLookup(COEFF_LIST_SCALE, i);
    snprintf(text[i], sizeof text[i], "%s=%.5f", info.name, double(CoeffFieldGet(tyre, info.field)));
    widths[i] = cv->GetTextWidth(text[i]);
  }
  const int rows = 4, left = textsRight + 16;
  TextPlaceScaleList(widths, COEFF_SCALE_COUNT, rows,
                     QRect(left, top, cv->GetTargetWidth() - 4 - left, cv->GetTargetHeight() - top), at);
  cv->SetColor(LINE_COLOR);
  for (int i = 0; i < COEFF_SCALE_COUNT; i++) TextAt(cv, text[i], at[i]);
}
