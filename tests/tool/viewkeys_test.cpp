// The window's view keys: F2 cycles the graph area through the plot kinds,
// F3 overlays a reference tyre in grey and drops it again. F4's PNG is
// checked in the real window (tests/e2e/tyrograph_views.sh).
#include <cstring>

#include "tool/dispatch.h"
#include "tool/windowframe.h"
#include "chart/plot.h"
#include "tool/viewkeys.h"
#include "toolwindow.h"
#include "render/qrecorder.h"

namespace {

class ViewKeys : public ToolWindowTest {
 protected:
  void TearDown() override {
    ViewDropReference();
    session.view = PLOT_CURVES;
    ToolWindowTest::TearDown();
  }
  static bool Press(int key) {
    QEvent ev;
    ev.type = QEVENT_KEYPRESS;
    ev.n = ev.xn = key;
    return ToolDispatch(&ev, ToolEnv{});
  }
  QRecorder Frame() {
    QRecorder rec;
    FramePaintGraphs(&rec, VIEW_W, VIEW_H);
    return rec;
  }
};

}  // namespace

TEST_F(ViewKeys, F2CyclesTheViewsAndTheHintSaysWhich) {
  const char *titles[] = {"Fx/Fz (normalized longitudinal force)", "Friction ellipse", "Peak friction over load",
                          "Slip stiffness over load"};
  for (int round = 0; round <= PLOT_KIND_COUNT; round++) {
    int kind = round % PLOT_KIND_COUNT;
    EXPECT_EQ(session.view, kind);
    QRecorder rec = Frame();
    EXPECT_NE(rec.FindText(titles[kind]), nullptr) << kind;
    EXPECT_NE(rec.FindText(std::string("F2 view: ") + PlotKindName(PlotKind(kind))), nullptr) << kind;
    // The coefficient texts stay whatever the view.
    EXPECT_NE(rec.FindText("b0: "), nullptr);
    EXPECT_TRUE(Press(VIEWKEY_CYCLE));
  }
  EXPECT_FALSE(Press(QK_F1 + 7));  // F8 is no key of the window
}

TEST_F(ViewKeys, F3ReferenceTyreInGreyFollowsTheOperatingPoint) {
  ScriptEntry(TirFile("MagicFormula61_Parameters.tir").c_str());
  EXPECT_TRUE(Press(VIEWKEY_REFERENCE));
  EXPECT_FALSE(stuck);
  ASSERT_NE(session.reference[CURVE_FX], nullptr);
  PanelOpMoved(OP_LOAD, 200);  // 6000 N
  QRecorder rec = Frame();
  auto lines = rec.Of(QREC_POLYLINE);
  ASSERT_EQ(lines.size(), 3u + 3u + 2u);  // own curves, reference curves, legend strokes
  QColor grey[CURVE_COUNT];
  PlotReferenceColors(grey);
  for (int i = 0; i < CURVE_COUNT; i++) EXPECT_EQ(lines[3 + size_t(i)]->color, grey[i]);
  EXPECT_NE(rec.FindText("reference: MagicFormula61_Parameters.tir"), nullptr);
  EXPECT_NE(rec.FindText("F3 reference tyre: on"), nullptr);
  // Its curves are drawn at the sliders' point (6000 N), which is not set
  // into the reference tyre.
  const KPacejka &ref = *session.reference[CURVE_FY]->GetCurrentTyre();
  Curve want;
  CurveSample(ref, OpStoredPoint(ref, session.point), CURVE_FY, session.reference[CURVE_FY]->GetRange(), &want);
  EXPECT_EQ(0, memcmp(want.samples, session.reference[CURVE_FY]->GetCurve().samples, sizeof want.samples));
  EXPECT_FLOAT_EQ(OpStoredPoint(ref, session.point).Fz, session.graphs[CURVE_FY]->GetCurrentTyre()->Fz);
  // Pressed again: gone, without a dialog.
  EXPECT_TRUE(Press(VIEWKEY_REFERENCE));
  EXPECT_EQ(session.reference[CURVE_FX], nullptr);
  EXPECT_EQ(Frame().Of(QREC_POLYLINE).size(), 3u);
  // A file that does not load leaves no reference behind.
  EXPECT_FALSE(ViewLoadReference("/nonexistent/none.tir"));
  EXPECT_EQ(session.reference[CURVE_FX], nullptr);
}
