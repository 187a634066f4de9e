// What a frame draws, recorded without a window (render/qrecorder.h), and the
// tyres it leaves behind.
#include <gtest/gtest-spi.h>

#include "golden.h"
#include "chart/frame.h"
#include "chart/oppoint.h"
#include "chart/tyreguard.h"
#include "render/qrecorder.h"

namespace {

class FrameRecord : public ::testing::Test {
 protected:
  void SetUp() override {
    CreateTouringGraphs(graphs);
    for (Graph *g : graphs) g->SetZoom(true);
    GraphApplyEmphasis(graphs, 0);
    for (Graph *g : graphs)
      for (int w = 0; w < CAR_WHEELS; w++) OpApplyAll(g->GetTyre(w), OperatingPoint());
  }
  void TearDown() override { DeleteGraphs(graphs); }

  FrameState State(int focus, bool camber) {
    FrameState st;
    for (int i = 0; i < CURVE_COUNT; i++) st.graphs[i] = graphs[i];
    st.focus = focus;
    st.ghostCamber = camber;
    return st;
  }
  std::vector<TyreStateGuard::State> Snapshot() const {
    std::vector<TyreStateGuard::State> s;
    for (Graph *g : graphs) s.push_back(TyreStateGuard::Take(*g->GetCurrentTyre()));
    return s;
  }
  void ExpectUnchanged(const std::vector<TyreStateGuard::State> &before) const {
    std::vector<TyreStateGuard::State> after = Snapshot();
    for (size_t i = 0; i < before.size(); i++) EXPECT_TRUE(before[i] == after[i]) << "graph " << i << "'s tyre changed";
  }
  Graph *graphs[CURVE_COUNT] = {};
  QRecorder rec;
  const QRect view{15, 32, 700, 500};  // the window's graph area
};

}  // namespace

// Curves per focus and ghost quantity, their alphas and clip.
TEST_F(FrameRecord, CurvesGhostsAndClip) {
  struct Case {
    int focus;
    bool camber;
    size_t curves;
  } cases[] = {{0, false, 3}, {2, false, 3 + 5}, {3, true, 3 + 6}, {1, true, 3 + 6}};
  for (const Case &c : cases) {
    rec.BeginPicture(QColor(255, 255, 255, 255));
    GraphApplyEmphasis(graphs, c.focus);
    FramePaint(&rec, State(c.focus, c.camber), view);
    auto lines = rec.Of(QREC_POLYLINE);
    ASSERT_EQ(lines.size(), c.curves) << c.focus;
    EXPECT_EQ(rec.Of(QREC_CLIP).size(), c.curves);
    // Main curves: dimmed ones at 0.1 when another graph has the focus.
    for (int g = 0; g < CURVE_COUNT; g++)
      EXPECT_FLOAT_EQ(lines[g]->stroke.alpha, c.focus && c.focus != g + 1 ? 0.1f : 1.0f) << c.focus << g;
    for (size_t i = 3; i < lines.size(); i++) {
      EXPECT_EQ(lines[i]->color, graphs[c.focus - 1]->GetColor());
      float want = c.camber ? FrameCamberGhostAlpha(int(i - 3)) : FrameLoadGhostAlpha(int(i - 3));
      EXPECT_FLOAT_EQ(lines[i]->stroke.alpha, want);
    }
    EXPECT_EQ(rec.Of(QREC_CLIP)[0]->rect.wid, 2 * Graph::X_ORIGIN + 1);
  }
  EXPECT_NE(rec.FindText("Fy peak at SA=8.55 deg"), nullptr);
}

// Drawing leaves every tyre as it was, ghost passes included; a step that
// changes a tyre without the guard is caught by the same check.
TEST_F(FrameRecord, LeavesTheTyresUnchanged) {
  for (Graph *g : graphs) g->GetCurrentTyre()->SetSlipAngle(0.05f);
  for (int focus = 0; focus <= 3; focus++)
    for (bool camber : {false, true}) {
      std::vector<TyreStateGuard::State> before = Snapshot();
      FramePaint(&rec, State(focus, camber), view);
      ExpectUnchanged(before);
    }
  std::vector<TyreStateGuard::State> before = Snapshot();
  {
    TyreStateGuard keep(graphs[CURVE_FY]->GetCurrentTyre());
    graphs[CURVE_FY]->Sample();
  }
  ExpectUnchanged(before);
  graphs[CURVE_FY]->Sample();  // a missed restore
  EXPECT_NONFATAL_FAILURE(ExpectUnchanged(before), "graph 1's tyre changed");
}
