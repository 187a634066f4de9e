// The frame's notes and lists.
#include "tool/frametexts.h"

#include <algorithm>
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

}  // namespace

void FramePaintCarNote(QCanvas *cv, int modelX, int modelY) {
  if (session.carNote.empty()) return;
  cv->SetColor(NOTE_COLOR);
  TextAt(cv, session.carNote.c_str(), TextPlaceCarNote(modelX, modelY));
}

void FramePaintOpLine(QCanvas *cv, int plotLeft, int areaBottom) {
  if (!session.graphs[CURVE_FX]) return;
  OpValues v = OpValuesAt(*session.graphs[CURVE_FX]->GetCurrentTyre(), session.point);
  char line[256], notes[OP_NOTES_MAX][OP_NOTE_SIZE];
  OpValuesText(v, WHEEL_NAMES[session.wheel & 3], line, sizeof line);
  cv->SetColor(LINE_COLOR);
  TextSpot at = TextPlaceOpLine(plotLeft, areaBottom);
  TextAt(cv, line, at);
  int n = OpClampNotes(v, notes);
  if (!n) return;
  // The notes follow on the same line while they fit beside the plot, else
  // each stands beside the peak texts.
  cv->SetColor(NOTE_COLOR);
  int x = at.x + cv->GetTextWidth(line), limit = plotLeft + Graph::WIDTH + 60;
  char joined[OP_NOTES_MAX * OP_NOTE_SIZE + 16] = "";
  for (int i = 0; i < n; i++) snprintf(joined + strlen(joined), sizeof joined - strlen(joined), "; %s", notes[i]);
  if (x + cv->GetTextWidth(joined) <= limit) {
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
