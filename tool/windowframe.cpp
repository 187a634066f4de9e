// The window's frame: the session's state and the texts around the plot.
#include "tool/windowframe.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "base/qelide.h"
#include "chart/frametexts.h"
#include "chart/graph.h"
#include "chart/plot.h"
#include "chart/textplace.h"
#include "render/qrenderer.h"
#include "tool/fitkeys.h"
#include "tool/layout.h"
#include "tool/measureddata.h"
#include "tool/session.h"
#include "tool/settings.h"

namespace {

// Lines of hints under the "Wheel index" slider the window has room for.
constexpr int HINT_LINES = 7;

// Whether the band under the operating-point sliders holds a Magic Formula
// 5.2 tyre's scale list (drawn with the selected coefficient's texts).
bool ScaleListShown() {
  return session.edit.desc && session.edit.unit && session.graphs[CURVE_FX] &&
         session.graphs[CURVE_FX]->GetCurrentTyre()->model == 1;
}

void PaintCoefficientTexts(QRenderer *r, int left, int top, int bandTop) {
  // Nothing is selected yet while the start-up still loads the car.
  if (!r->HasFont() || !session.edit.desc || !session.edit.unit) return;
  char buf[160];
  const QColor black(0, 0, 0, 255);
  snprintf(buf, sizeof buf, "%s: %s", session.edit.name, session.edit.desc);
  r->DrawText(buf, left, top, black);
  const char *unit = *session.edit.unit ? session.edit.unit : "(non-dimensional)";
  int textsRight = left + r->MeasureText(buf);
  snprintf(buf, sizeof buf, "Value: %.3f %s", double(SessionCoefficientValue()), unit);
  r->DrawText(buf, left, top + 16, black);
  FramePaintEntryNote(r, session.entryNote, left + r->MeasureText(buf), top + 16);
  textsRight = std::max(textsRight, left + r->MeasureText(buf));
  if (!ScaleListShown()) return;
  // Magic Formula 5.2: all scaling factors, beside these texts under the
  // operating-point sliders.
  FramePaintScaleList(r, *session.graphs[CURVE_FX]->GetCurrentTyre(), textsRight, bandTop);
}

}  // namespace

FrameState FrameStateFromSession() {
  FrameState st;
  for (int i = 0; i < CURVE_COUNT; i++) st.graphs[i] = session.graphs[i];
  st.focus = session.focus;
  st.ghostCamber = session.ghostCamber;
  if (session.reference[CURVE_FX] && session.graphs[CURVE_FX]) {
    // The reference tyre follows the operating point (drawn at it, not set
    // into it) and the zoom.
    FrameOverlay ref;
    ref.hasPoint = true;
    ref.point = session.point;
    for (int i = 0; i < CURVE_COUNT; i++) {
      ref.graphs[i] = session.reference[i];
      session.reference[i]->SetZoom(session.zoom);
    }
    ref.label = session.referenceLabel;
    // The legend names the file, not its folders (the title bar has the path).
    st.label = session.lastTir.empty() ? session.car + ", wheel " + std::to_string(session.wheel)
                                       : QPathTail(session.lastTir);
    st.overlays.push_back(ref);
  }
  return st;
}

std::vector<FrameHint> FrameHintLines(const QRenderer &r, int viewWidth, int viewHeight) {
  std::vector<FrameHint> lines;
  if (!r.HasFont()) return lines;
  // For a few seconds after F4 its line names the file written, and the line
  // under it the folder.
  std::string hint[HINT_LINES];
  hint[0] = std::string("F2 view: ") + PlotKindName(PlotKind(session.view));
  hint[1] = std::string("F3 reference tyre: ") + (session.reference[CURVE_FX] ? "on" : "off");
  hint[2] = "F4 save view as PNG";
  if (!session.savedView.empty()) {
    const std::string name = QPathTail(session.savedView);
    hint[2] = "F4 saved " + name;
    hint[3] = "in " + session.savedView.substr(0, session.savedView.size() - name.size());
  }
  // The fitting keys after F4's folder line while that shows, as many as the
  // window holds: with data all of them, without only F5's. A Magic Formula
  // 5.2 tyre's scale list fills the band under the sliders: without data it
  // keeps it, and with data (or while F5 reads) the fitting keys take the
  // rows above the band in place of the view keys, whose lines would
  // otherwise run into the list.
  const PanelLayout layout = LayoutCompute(viewWidth, viewHeight);
  const int top = layout.wheel.y + layout.wheel.hgt + 12;
  const QRect lastSlider = layout.op[OP_SLIDERS - 1];
  const bool band = ScaleListShown();
  const int bottom = band ? lastSlider.y + lastSlider.hgt + 1 : top + 15 * HINT_LINES;
  std::string more[4];
  FitHintLines(more);
  int first = hint[3].empty() ? 3 : 4;
  if (band && (DataGet() || DataLoading())) {
    for (std::string &h : hint) h.clear();
    first = 0;
  }
  for (int i = 0; i < 4 && first + i < HINT_LINES && top + 15 * (first + i + 1) <= bottom; i++) hint[first + i] = more[i];
  const int room = layout.wheel.wid + 30;
  auto width = [&r](const std::string &t) { return r.MeasureText(t.c_str()); };
  for (int i = 0; i < HINT_LINES; i++)
    if (!hint[i].empty()) lines.push_back({QElideMiddle(hint[i], room, width), QRect(layout.wheel.x, top + 15 * i, room, 15)});
  return lines;
}

void FramePaintGraphs(QRenderer *r, int viewWidth, int viewHeight) {
  r->BeginPicture(QColor(255, 255, 255, 255));
  QRect view(GRAPH_LEFT_MARGIN, GRAPH_TOP_MARGIN, viewWidth, viewHeight);
  // Measured data (F5): the nearest set point's points behind the curves.
  const PlotPoints *points = DataPointsAt(session.point.load, session.point.camber);
  PlotPaint(r, PlotKind(session.view), FrameStateFromSession(), view, points);
  int cx = GRAPH_LEFT_MARGIN + viewWidth / 2;
  int areaTop = GRAPH_TOP_MARGIN, areaBottom = GRAPH_TOP_MARGIN + viewHeight;
  if (r->HasFont() && session.graphs[CURVE_FX]) {
    std::string note = session.carNote;
    if (const MeasuredData *d = DataGet()) note = note.empty() ? d->note : note + "; " + d->note;
    FramePaintCarNote(r, note, view.x + 15, areaTop + 10);
  }
  if (session.view == PLOT_CURVES) 
    FramePaintOpLine(r, session.graphs, session.point, session.wheel, cx - Graph::X_ORIGIN, GRAPH_LEFT_MARGIN + viewWidth,
                     areaBottom);
  const PanelLayout layout = LayoutCompute(viewWidth, viewHeight);
  const QRect lastSlider = layout.op[OP_SLIDERS - 1];
  PaintCoefficientTexts(r, 13, viewHeight + 72 + 4 * 21 + 4, lastSlider.y + lastSlider.hgt + 1);
  // The keys of the views and of fitting, in the free corner under the wheel
  // slider (the band along the bottom edge holds a Magic Formula 5.2 tyre's
  // scale list).
  if (r->HasFont()) {
    for (const FrameHint &h : FrameHintLines(*r, viewWidth, viewHeight))
      r->DrawText(h.text.c_str(), h.box.x, h.box.y, QColor(128, 128, 128, 255));
    // The last fit's figures, right-aligned in the graph area on the peak
    // lines, one per fitted channel.
    if (session.view == PLOT_CURVES)
      for (int ch = 0; ch < KCH_COUNT; ch++) {
        std::string t = FitFiguresText(ch);
        if (t.empty()) continue;
        TextSpot at = TextPlacePeak(ch, 0, areaBottom);
        r->DrawText(t.c_str(), GRAPH_LEFT_MARGIN + viewWidth - 8 - r->MeasureText(t.c_str()), at.y,
                    QColor(0, 0, 0, 255));
      }
  }
}
