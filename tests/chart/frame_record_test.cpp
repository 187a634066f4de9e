// What a frame draws, recorded without a window (render/qrecorder.h), and the
// tyres it leaves behind.
#include <gtest/gtest-spi.h>

#include "golden.h"
#include "chart/frame.h"
#include "chart/oppoint.h"
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
  // Every byte of each current tyre's coefficients, operating point and
  // results (bitwise, so NaN results compare equal to themselves).
  static std::string Bytes(const KPacejka &t) {
    std::string b(reinterpret_cast<const char *>(static_cast<const KTyreParams *>(&t)), sizeof(KTyreParams));
    const char *from = reinterpret_cast<const char *>(&t.camber), *to = reinterpret_cast<const char *>(&t.resultSpares[4]);
    return b + std::string(from, size_t(to - from));
  }
  std::vector<std::string> Snapshot() const {
    std::vector<std::string> s;
    for (Graph *g : graphs) s.push_back(Bytes(*g->GetCurrentTyre()));
    return s;
  }
  void ExpectUnchanged(const std::vector<std::string> &before) const {
    std::vector<std::string> after = Snapshot();
    std::string changed;  // the graphs share their tyres: one report for all
    for (size_t i = 0; i < before.size(); i++)
      if (before[i] != after[i]) changed += " " + std::to_string(i);
    EXPECT_EQ(changed, "") << "the tyre of graphs" << changed << " changed";
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

// Drawing changes no byte of any tyre, ghost passes and overlays at their
// own point included; a step that writes into a tyre (as the setters and
// Calculate do) is caught by the same check.
TEST_F(FrameRecord, LeavesTheTyresUnchanged) {
  for (Graph *g : graphs) g->GetCurrentTyre()->SetSlipAngle(0.05f);
  for (int focus = 0; focus <= 3; focus++)
    for (bool camber : {false, true}) {
      std::vector<std::string> before = Snapshot();
      FrameState st = State(focus, camber);
      FrameOverlay ref;
      for (int i = 0; i < CURVE_COUNT; i++) ref.graphs[i] = graphs[i];
      ref.hasPoint = true;
      ref.point = {6000.0f, 0.1f, 4.0f, 2.0f};
      st.overlays.push_back(ref);
      FramePaint(&rec, st, view);
      ExpectUnchanged(before);
    }
  // the three graphs share one tyre per wheel
  for (int w = 0; w < CAR_WHEELS; w++)
    EXPECT_TRUE(graphs[CURVE_FX]->GetTyre(w) == graphs[CURVE_FY]->GetTyre(w) &&
                graphs[CURVE_FY]->GetTyre(w) == graphs[CURVE_MZ]->GetTyre(w));
  std::vector<std::string> before = Snapshot();
  graphs[CURVE_FY]->Sample();
  ExpectUnchanged(before);
  graphs[CURVE_FY]->GetCurrentTyre()->Calculate();  // an evaluation that writes into the tyre
  EXPECT_NONFATAL_FAILURE(ExpectUnchanged(before), "the tyre of graphs 0 1 2 changed");
}
