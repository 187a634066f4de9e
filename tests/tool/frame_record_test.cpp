// What a frame draws, recorded without a window (ui/qrecorder.h), and the
// tyres it leaves behind.
#include <gtest/gtest-spi.h>

#include "golden.h"
#include "tool/frame.h"
#include "tool/settings.h"
#include "tool/tyreguard.h"
#include "ui/qrecorder.h"

namespace {

class FrameRecord : public ::testing::Test {
 protected:
  void SetUp() override {
    CreateTouringGraphs();
    for (Graph *g : session.graphs) g->SetZoom(true);
    GraphApplyEmphasis(session.graphs, 0);
    for (Graph *g : session.graphs)
      for (int w = 0; w < CAR_WHEELS; w++) OpApplyAll(g->GetTyre(w), OperatingPoint());
  }
  void TearDown() override { DeleteGraphs(); }

  FrameState State(int focus, bool camber) {
    FrameState st;
    for (int i = 0; i < CURVE_COUNT; i++) st.graphs[i] = session.graphs[i];
    st.focus = focus;
    st.ghostCamber = camber;
    return st;
  }
  static std::vector<TyreStateGuard::State> Snapshot() {
    std::vector<TyreStateGuard::State> s;
    for (Graph *g : session.graphs) s.push_back(TyreStateGuard::Take(*g->GetCurrentTyre()));
    return s;
  }
  static void ExpectUnchanged(const std::vector<TyreStateGuard::State> &before) {
    std::vector<TyreStateGuard::State> after = Snapshot();
    for (size_t i = 0; i < before.size(); i++) EXPECT_TRUE(before[i] == after[i]) << "graph " << i << "'s tyre changed";
  }
  QRecorder rec;
  const QRect view{GRAPH_LEFT_MARGIN, GRAPH_TOP_MARGIN, 700, 500};
};

}  // namespace

// Curves per focus and ghost quantity, their alphas, colours and clip.
TEST_F(FrameRecord, CurvesGhostsAndClip) {
  struct Case {
    int focus;
    bool camber;
    size_t curves;
  } cases[] = {{0, false, 3}, {2, false, 3 + 5}, {3, true, 3 + 6}, {1, true, 3 + 6}};
  for (const Case &c : cases) {
    rec.BeginPicture(QColor(255, 255, 255, 255));
    GraphApplyEmphasis(session.graphs, c.focus);
    FramePaint(&rec, State(c.focus, c.camber), view);
    auto lines = rec.Of(QREC_POLYLINE);
    ASSERT_EQ(lines.size(), c.curves) << c.focus;
    EXPECT_EQ(rec.Of(QREC_CLIP).size(), c.curves);
    for (size_t i = 0; i < lines.size(); i++) {
      EXPECT_EQ(lines[i]->points.size(), size_t(CURVE_SAMPLES));
      EXPECT_TRUE(lines[i]->stroke.smooth && lines[i]->stroke.width == 1.5f);
    }
    // Main curves: dimmed ones at 0.1 when another graph has the focus.
    for (int g = 0; g < CURVE_COUNT; g++) {
      EXPECT_EQ(lines[g]->color, session.graphs[g]->GetColor());
      EXPECT_FLOAT_EQ(lines[g]->stroke.alpha, c.focus && c.focus != g + 1 ? 0.1f : 1.0f) << c.focus << g;
    }
    for (size_t i = 3; i < lines.size(); i++) {
      EXPECT_EQ(lines[i]->color, session.graphs[c.focus - 1]->GetColor());
      float want = c.camber ? FrameCamberGhostAlpha(int(i - 3)) : FrameLoadGhostAlpha(int(i - 3));
      EXPECT_FLOAT_EQ(lines[i]->stroke.alpha, want);
    }
    EXPECT_EQ(rec.Of(QREC_CLIP)[0]->rect.wid, 2 * Graph::X_ORIGIN + 1);
  }
  // The Fy peak text names the sampled peak; the curve's first point sits at
  // the plot's left edge.
  const QRecord *peak = rec.FindText("Fy peak at SA=8.55 deg");
  ASSERT_NE(peak, nullptr);
  EXPECT_EQ(peak->color, QColor(255, 0, 0, 255));
  EXPECT_FLOAT_EQ(rec.Of(QREC_POLYLINE)[1]->points[0].x, float(view.x + view.wid / 2 - Graph::X_ORIGIN) + 0.5f);
  ASSERT_NE(rec.FindText("Model: Pacejka89/96"), nullptr);
}

// No font: curves and grid, no text at all.
TEST_F(FrameRecord, WithoutFontOnlyLines) {
  QRecorder bare(false);
  FramePaint(&bare, State(2, false), view);
  EXPECT_TRUE(bare.Of(QREC_TEXT).empty());
  EXPECT_EQ(bare.Of(QREC_POLYLINE).size(), 8u);
  EXPECT_EQ(bare.Of(QREC_SEGMENTS).size(), 2u);
}

// Drawing leaves every tyre as it was, ghost passes included; a step that
// changes a tyre without the guard is caught by the same check.
TEST_F(FrameRecord, LeavesTheTyresUnchanged) {
  for (Graph *g : session.graphs) g->GetCurrentTyre()->SetSlipAngle(0.05f);
  for (int focus = 0; focus <= 3; focus++)
    for (bool camber : {false, true}) {
      std::vector<TyreStateGuard::State> before = Snapshot();
      FramePaint(&rec, State(focus, camber), view);
      ExpectUnchanged(before);
    }
  std::vector<TyreStateGuard::State> before = Snapshot();
  {
    TyreStateGuard keep(session.graphs[CURVE_FY]->GetCurrentTyre());
    session.graphs[CURVE_FY]->Sample();
  }
  ExpectUnchanged(before);
  session.graphs[CURVE_FY]->Sample();  // a missed restore
  EXPECT_NONFATAL_FAILURE(ExpectUnchanged(before), "graph 1's tyre changed");
}

// Overlaid tyres: their curves after the main ones, and a legend line each.
TEST_F(FrameRecord, OverlaysWithLegend) {
  Graph *extra[CURVE_COUNT];
  for (int i = 0; i < CURVE_COUNT; i++) {
    extra[i] = new Graph(CurveKind(i), nullptr);
    std::string error;
    ASSERT_TRUE(CarLoadTyreSource(TouringCar().c_str(), 1, extra[i]->GetTyre(0), &error)) << error;
    OpApplyAll(extra[i]->GetTyre(0), OperatingPoint());
    extra[i]->SetZoom(true);
    extra[i]->SetColor(QColor(150, 150, 150, 255));
  }
  FrameState st = State(0, false);
  st.label = "touring (wheel 0)";
  st.overlays.push_back({{extra[0], extra[1], extra[2]}, "touring (wheel 1)"});
  FramePaint(&rec, st, view);
  auto lines = rec.Of(QREC_POLYLINE);
  ASSERT_EQ(lines.size(), 3u + 3u + 2u);  // main, overlay, two legend strokes
  for (int i = 3; i < 6; i++) EXPECT_EQ(lines[i]->color, QColor(150, 150, 150, 255));
  const QRecord *a = rec.FindText("touring (wheel 0)"), *b = rec.FindText("touring (wheel 1)");
  ASSERT_TRUE(a && b);
  EXPECT_EQ(b->y - a->y, 16);
  EXPECT_EQ(a->color, QColor(255, 0, 0, 255));
  for (Graph *g : extra) delete g;
}
