// The window's view keys: F2 cycles the graph area through the plot kinds,
// F3 overlays a reference tyre in grey and drops it again. F4's PNG is
// checked in the real window (tests/e2e/tyrograph_views.sh).
#include <cstring>
#include <fstream>
#include <memory>

#include "chart/carload.h"
#include "tool/commands.h"
#include "tool/dispatch.h"
#include "tool/windowframe.h"
#include "chart/plot.h"
#include "tool/viewkeys.h"
#include "tool/panel.h"
#include "tool/session.h"
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
  // Bit for bit, so NaN samples compare equal to themselves.
  static bool Same(const std::vector<float> &a, const std::vector<float> &b) {
    return a.size() == b.size() && (a.empty() || memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0);
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

// F4 says what it wrote: the hint lines name the file and its folder for a
// few seconds, then show the key again.
TEST_F(ViewKeys, F4NamesTheFileWrittenForAWhile) {
  ScratchDir dir;
  setenv("TMPDIR", dir.root.c_str(), 1);
  const std::string folder = QApp::GetScreenshotDir();
  EXPECT_NE(Frame().FindText("F4 save view as PNG"), nullptr);
  EXPECT_TRUE(Press(VIEWKEY_SAVE));
  unsetenv("TMPDIR");
  ASSERT_FALSE(session.savedView.empty());
  EXPECT_EQ(session.savedView.rfind(dir.root, 0), 0u) << session.savedView;
  EXPECT_TRUE(std::ifstream(session.savedView).good()) << session.savedView;
  QRecorder rec = Frame();
  EXPECT_NE(rec.FindText("F4 saved view00001.png"), nullptr);
  EXPECT_EQ(rec.FindText("F4 save view as PNG"), nullptr);
  // The folder on the line under it, shortened in the middle when long.
  bool folderShown = false;
  for (const auto *t : rec.Of(QREC_TEXT)) {
    const std::string &s = t->text;
    folderShown = folderShown || (s.rfind("in ", 0) == 0 && s.size() > 4 && s.back() == '/' &&
                                  (folder.find(s.substr(3)) != std::string::npos || s.find("...") != std::string::npos));
  }
  EXPECT_TRUE(folderShown) << folder;
  ViewExpireSavedNote(session.savedViewUntilMs - 1);  // still within the time
  EXPECT_NE(Frame().FindText("F4 saved view00001.png"), nullptr);
  ViewExpireSavedNote(session.savedViewUntilMs);
  EXPECT_TRUE(session.savedView.empty());
  EXPECT_NE(Frame().FindText("F4 save view as PNG"), nullptr);
}

// Standard output belongs to the frame statistics line (TYROGRAPH_STATS):
// traces such as the coefficient selection's "coeffPtr %d" go to the
// reporters (standard error and the log), never there.
TEST_F(ViewKeys, ASessionWritesNothingToStandardOutput) {
  ScratchDir dir;
  setenv("TMPDIR", dir.root.c_str(), 1);
  testing::internal::CaptureStdout();
  for (int i = 0; i < 28; i += 5) PanelCoefficientRadio(i);
  PanelValueMoved(700);
  PanelFocus(2);
  PanelSelectWheel(1);
  ScriptEntry(TirFile("MagicFormula52_Parameters.tir").c_str());
  CommandOpenTire(ToolEnv{});
  ScriptEntry(TirFile("MagicFormula61_Parameters.tir").c_str());
  Press(VIEWKEY_REFERENCE);
  for (int k = 0; k < PLOT_KIND_COUNT; k++) {
    Frame();
    Press(VIEWKEY_SAVE);
    Press(VIEWKEY_CYCLE);
  }
  fflush(stdout);
  const std::string out = testing::internal::GetCapturedStdout();
  unsetenv("TMPDIR");
  EXPECT_EQ(out, "");
  EXPECT_NE(session.graphs[CURVE_FX]->GetCurrentTyre()->model, KPacejka::PAC96);  // the steps did run
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
  // (the recorder's wide stand-in glyphs shorten the name in the middle)
  EXPECT_NE(rec.FindText("reference: Magic"), nullptr);
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

// The reference tyre of every view is drawn as tyrograph-cli plot draws the
// second of two tyres: a fresh tyre loaded from the file, at the window's
// operating point. Whatever the main tyre is, before or after the reference
// came, none of its state reaches the reference's evaluation.
TEST_F(ViewKeys, ReferenceCurvesOfEveryViewMatchTheCliPictureForAllModelPairs) {
  // A Pacejka2006 tyre: the Magic Formula 6.1 file's coefficients under model 2.
  ScratchDir dir;
  ASSERT_EQ(system(("cp '" + TirFile("MagicFormula61_Parameters.tir") + "' '" + dir.root + "/mf61.tir'").c_str()), 0);
  const std::string pac2006 = dir.root + "/car.ini";
  FILE *f = fopen(pac2006.c_str(), "w");
  ASSERT_NE(f, nullptr);
  fputs("wheel0\n{\n  pacejka\n  {\n    import_file=mf61.tir\n    model=2\n  }\n}\n", f);
  fclose(f);
  const std::string sources[] = {TouringCar(), TirFile("MagicFormula52_Parameters.tir"),
                                 TirFile("MagicFormula61_Parameters.tir"), pac2006};
  const int models[] = {KPacejka::PAC96, KPacejka::MF52, KPacejka::MF61, KPacejka::PAC2006};
  // The main tyre on every wheel of the window's graphs, at the panel's point.
  auto loadMain = [&](const std::string &source) {
    for (Graph *g : session.graphs)
      for (int w = 0; w < CAR_WHEELS; w++) {
        std::string error;
        ASSERT_TRUE(CarLoadTyreSource(source.c_str(), source == TouringCar() ? w : 0, g->GetTyre(w), &error)) << error;
      }
    for (int s = 0; s < OP_SLIDERS; s++) SessionApply(OpSlider(s));
  };
  for (size_t m = 0; m < 4; m++) {
    for (size_t r = 0; r < 4; r++) {
      if (r == m) continue;
      SCOPED_TRACE(sources[m] + " with reference " + sources[r]);
      // Odd pairs take the reference first and change the main tyre after.
      if (r % 2) {
        ASSERT_TRUE(ViewLoadReference(sources[r].c_str()));
      }
      loadMain(sources[m]);
      if (!(r % 2)) {
        ASSERT_TRUE(ViewLoadReference(sources[r].c_str()));
      }
      EXPECT_EQ(session.graphs[CURVE_FX]->GetCurrentTyre()->model, models[m]);
      EXPECT_EQ(session.reference[CURVE_FX]->GetCurrentTyre()->model, models[r]);
      PanelOpMoved(OP_LOAD, 150);  // 4500 N
      PanelOpMoved(OP_CAMBER, 550);
      Frame();  // a frame of the curves first, as the window draws before F2
      FrameState st = FrameStateFromSession();
      // The CLI's second tyre: its own graphs, loaded and placed as plot does.
      std::unique_ptr<Graph> cli[CURVE_COUNT];
      FrameState alone;
      FrameOverlay ov;
      for (int k = 0; k < CURVE_COUNT; k++) {
        cli[k] = std::make_unique<Graph>(CurveKind(k), k ? cli[k - 1].get() : nullptr);
        std::string error;
        ASSERT_TRUE(CarLoadTyreSource(sources[r].c_str(), 0, cli[k]->GetTyre(0), &error)) << error;
        OpApplyAll(cli[k]->GetTyre(0), session.point);
        cli[k]->SetZoom(session.zoom);
        ov.graphs[k] = cli[k].get();
        alone.graphs[k] = st.graphs[k];
      }
      ov.label = st.overlays[0].label;
      alone.label = st.label;
      alone.overlays.push_back(ov);
      for (PlotKind kind : {PLOT_ELLIPSE, PLOT_MU_LOAD, PLOT_STIFFNESS}) {
        Chart win = PlotChart(kind, st, nullptr), want = PlotChart(kind, alone, nullptr);
        ASSERT_EQ(win.series.size(), want.series.size());
        // Each tyre brings the same number of series; the reference's come second.
        size_t bad = 0;
        for (size_t s = win.series.size() / 2; s < win.series.size(); s++)
          bad += !Same(win.series[s].x, want.series[s].x) || !Same(win.series[s].y, want.series[s].y);
        EXPECT_EQ(bad, 0u) << PlotKindName(kind) << ": reference series differ from the CLI's";
      }
      // The curves: what the frame drew for the reference is what the CLI's
      // tyre gives at its point.
      for (int k = 0; k < CURVE_COUNT; k++) {
        Curve want;
        const KPacejka &t = *cli[k]->GetTyre(0);
        CurveSample(t, t.GetStoredPoint(), CurveKind(k), cli[k]->GetRange(), &want);
        const Curve &drawn = session.reference[k]->GetCurve();
        EXPECT_EQ(0, memcmp(drawn.samples, want.samples, sizeof want.samples)) << "curve " << k;
      }
      ViewDropReference();
    }
  }
}
