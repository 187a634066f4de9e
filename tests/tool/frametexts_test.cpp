// The texts of whole frames, recorded through the canvas's text observer:
// no two overlap, range labels stay off the curves, notes say what they should.
#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <thread>
#include <string>
#include <vector>

#include "chart/carload.h"
#include "chart/chart.h"
#include "chart/frametexts.h"
#include "chart/plot.h"
#include "tool/windowframe.h"
#include "chart/opvalues.h"
#include "tool/fitworker.h"
#include "tool/fitkeys.h"
#include "tool/layout.h"
#include "tool/measureddata.h"
#include "tool/settings.h"
#include "tool/tyrehistory.h"
#include "tool/viewkeys.h"
#include "toolwindow.h"
#include "ui/qfont.h"
#include "ui/qwinmgr.h"

namespace {

struct Drawn {
  std::string text;
  QRect box;
  bool glyphs = false;  // put together from single glyphs
};

std::vector<Drawn> &Recorded() {
  static std::vector<Drawn> drawn;
  return drawn;
}

// A caption squeezed into its control is drawn glyph by glyph, each glyph a
// little left of where its advance would put it: the glyphs of one line go
// back together into one text.
void Record(const char *text, const QRect &box) {
  if (box.wid <= 0 || !*text) return;
  std::vector<Drawn> &all = Recorded();
  if (!text[1] && !all.empty()) {
    Drawn &last = all.back();
    bool follows = last.box.y == box.y && box.x >= last.box.x && box.x <= last.box.x + last.box.wid;
    if (follows && (last.glyphs || last.text.size() == 1)) {
      last.text += text;
      last.box.wid = std::max(last.box.wid, box.x + box.wid - last.box.x);
      last.glyphs = true;
      return;
    }
  }
  all.push_back({text, box});
}

bool Meet(const QRect &a, const QRect &b) {
  return a.x < b.x + b.wid && b.x < a.x + a.wid && a.y < b.y + b.hgt && b.y < a.y + a.hgt;
}

std::string Describe(const Drawn &d) {
  return "\"" + d.text + "\" at " + std::to_string(d.box.x) + "," + std::to_string(d.box.y) + " " +
         std::to_string(d.box.wid) + "x" + std::to_string(d.box.hgt);
}

// A range label as the graphs print them: "%.1f %s".
bool IsRangeLabel(const std::string &t) {
  static const std::regex label("-?[0-9]+\\.[0-9] (SR|SA|N/N \\(\xB5\\)|Nm)");
  return std::regex_match(t, label);
}

// A word of "Varying parameter (ghost curves)" or "Pacejka coefficients/scale factors".
bool IsGroupTitleWord(const std::string &word) {
  for (const char *w : {"Varying", "parameter", "(ghost", "curves)", "Pacejka", "coefficients/scale", "factors"})
    if (word == w) return true;
  return false;
}

class FrameTexts : public ToolWindowTest {
 protected:
  void SetUp() override {
    ToolWindowTest::SetUp();
    ASSERT_TRUE(font.Create());
    cv->SetFont(&font);
    session.carNote.clear();
  }
  void TearDown() override {
    cv->SetFont(nullptr);
    session.carNote.clear();
    session.entryNote.clear();
    ToolWindowTest::TearDown();
  }

  // Paints one frame, graphs and controls, and returns what text it drew.
  std::vector<Drawn> Frame() {
    Recorded().clear();
    QCanvas::TextObserver old = QCanvas::SetTextObserver(Record);
    cv->Select();
    FramePaintGraphs(cv, VIEW_W, VIEW_H);
    QGetWindowManager()->Paint(cv);
    QCanvas::SetTextObserver(old);
    return Recorded();
  }

  void OpenTir(const char *name) {
    SessionLoadTir(TirFile(name).c_str());
    PanelResetControls();
    PanelRefreshLabels();
  }

  // No two texts meet, and each fits: inside the window, and set at its
  // font's own width (a caption wider than its room is drawn tighter, glyph
  // by glyph, and comes back here word by word). Only the two group titles
  // of the side column are set tighter, to stay near their 150-pixel column.
  static void ExpectNoOverlap(const std::vector<Drawn> &drawn, const char *what) {
    ASSERT_GT(drawn.size(), 40u) << what;
    for (size_t i = 0; i < drawn.size(); i++)
      for (size_t j = i + 1; j < drawn.size(); j++)
        EXPECT_FALSE(Meet(drawn[i].box, drawn[j].box))
            << what << ": " << Describe(drawn[i]) << " overlaps " << Describe(drawn[j]);
    for (const Drawn &d : drawn) {
      EXPECT_TRUE(d.box.x >= 0 && d.box.y >= 0 && d.box.x + d.box.wid <= WIN_W && d.box.y + d.box.hgt <= WIN_H)
          << what << ": " << Describe(d) << " leaves the window";
      EXPECT_TRUE(!d.glyphs || IsGroupTitleWord(d.text)) << what << ": " << Describe(d) << " is squeezed into its room";
    }
  }

  static bool Has(const std::vector<Drawn> &drawn, const std::string &text) {
    for (const Drawn &d : drawn)
      if (d.text.find(text) != std::string::npos) return true;
    return false;
  }

  // Every main curve, followed pixel by pixel, misses every range label.
  void ExpectCurvesMissRangeLabels(const std::vector<Drawn> &drawn, const char *what) {
    int cx = GRAPH_LEFT_MARGIN + VIEW_W / 2, cy = GRAPH_TOP_MARGIN + VIEW_H / 2, labels = 0;
    for (const Drawn &d : drawn) {
      if (!IsRangeLabel(d.text)) continue;
      labels++;
      for (Graph *g : session.graphs) {
        const Curve &c = g->GetCurve();
        for (int i = 0; i + 1 < CURVE_SAMPLES; i++) {
          int x0 = g->SampleX(i, cx), y0 = g->SampleY(c.samples[i], cy);
          int x1 = g->SampleX(i + 1, cx), y1 = g->SampleY(c.samples[i + 1], cy);
          int steps = std::max(std::abs(x1 - x0), std::abs(y1 - y0)) + 1;
          for (int s = 0; s <= steps; s++) {
            int x = x0 + (x1 - x0) * s / steps, y = y0 + (y1 - y0) * s / steps;
            if (d.box.Contains(x, y)) {
              ADD_FAILURE() << what << ": the " << CurveTitle(g->GetKind()) << " curve crosses " << Describe(d)
                            << " at " << x << "," << y;
              s = steps + 1;
              i = CURVE_SAMPLES;
            }
          }
        }
      }
    }
    EXPECT_EQ(labels, 12) << what;
  }

  QFont font{(std::string(TYRO_SOURCE_DIR) + "/data/fonts/eurostile11").c_str()};
};

TEST_F(FrameTexts, BundledCarsKeepTheirTextsApartAndOffTheCurves) {
  for (const char *car : {"touring", "hmmwv", "wvp", "mf61"}) {
    std::string path = std::string(TYRO_SOURCE_DIR) + "/data/cars/" + car;
    for (Graph *g : session.graphs)
      for (int w = 0; w < CAR_WHEELS; w++) {
        std::string error;
        ASSERT_TRUE(CarLoadTyreSource(path.c_str(), w, g->GetTyre(w), &error)) << error;
      }
    PanelResetControls();
    PanelRefreshLabels();
    for (bool zoom : {false, true}) {
      PanelZoom(zoom);
      std::vector<Drawn> drawn = Frame();
      ExpectNoOverlap(drawn, car);
      ExpectCurvesMissRangeLabels(drawn, car);
    }
  }
}

TEST_F(FrameTexts, MagicFormula52ScaleFactorsStandClear) {
  for (const char *tir : {"MagicFormula52_Parameters.tir", "335_65R22_5_G275MSA_60psi.tir"}) {
    OpenTir(tir);
    ASSERT_EQ(Tyre(CURVE_FX, 0)->model, 1) << tir;
    for (bool zoom : {false, true}) {
      PanelZoom(zoom);
      std::vector<Drawn> drawn = Frame();
      EXPECT_TRUE(Has(drawn, "lgyr=") && Has(drawn, "lfz0=")) << tir;
      ExpectNoOverlap(drawn, tir);
      ExpectCurvesMissRangeLabels(drawn, tir);
    }
    // Scale factors of unusual size still fit.
    PanelSetCoefficientValue(-12.5f);
    ExpectNoOverlap(Frame(), tir);
  }
}

// The line under the peaks: the current wheel's forces at the sliders, and
// the load the model clamps to the TIR file's FZMIN.
TEST_F(FrameTexts, OperatingPointLineAndClampNotes) {
  std::vector<Drawn> drawn = Frame();
  OpValues v = OpValuesAt(*Tyre(CURVE_FX, 0), session.point);
  char line[256];
  OpValuesText(v, "FL", line, sizeof line);
  EXPECT_TRUE(Has(drawn, line)) << line;
  EXPECT_FALSE(Has(drawn, "clamped"));

  OpenTir("335_65R22_5_G275MSA_60psi.tir");
  drawn = Frame();
  EXPECT_TRUE(Has(drawn, "load 2500 N, clamped to 10752 N"));
  // Slip ratio -1 and slip angle -20 degrees lie outside its KPUMIN -0.8 and
  // ALPMIN -0.195 rad too: three notes, still clear of every other text.
  PanelOpMoved(OP_SLIP_RATIO, 0);
  PanelOpMoved(OP_SLIP_ANGLE, 400);
  drawn = Frame();
  EXPECT_TRUE(Has(drawn, "slip ratio -1.00, clamped to -0.80"));
  EXPECT_TRUE(Has(drawn, "slip angle -20.00 deg, clamped to -11.17 deg"));
  ExpectNoOverlap(drawn, "three clamp notes");
  // A reference tyre's legend beside the peak texts keeps clear of them.
  ASSERT_TRUE(ViewLoadReference(TirFile("MagicFormula61_Parameters.tir").c_str()));
  drawn = Frame();
  ViewDropReference();
  EXPECT_TRUE(Has(drawn, "reference: MagicFormula61_Parameters.tir"));
  ExpectNoOverlap(drawn, "three clamp notes and a reference tyre");
  // The longest line: the slider's top load and camber -10 degrees give
  // five-digit forces with signs, beside the clamp notes.
  PanelOpMoved(OP_LOAD, 1000);
  PanelOpMoved(OP_CAMBER, 0);
  drawn = Frame();
  v = OpValuesAt(*Tyre(CURVE_FX, 0), session.point);
  OpValuesText(v, "FL", line, sizeof line);
  EXPECT_TRUE(Has(drawn, line)) << line;
  ExpectNoOverlap(drawn, line);
}

// A reference tyre's legend, in the curves and in every view: file names
// rather than paths, shortened in the middle when long, on no other text and
// under no curve.
TEST_F(FrameTexts, LegendsInEveryViewKeepClearOfTextsAndCurves) {
  // A TIR file deep in folders with a long name, as the main tyre.
  ScratchDir dir;
  const std::string deep = dir.root + "/a/rather/long/folder/for/the/tyres/of/this/car";
  const std::string tir = deep + "/MagicFormula52_Parameters_front_axle_summer_compound_2024_v2.tir";
  ASSERT_EQ(system(("mkdir -p '" + deep + "' && cp '" + TirFile("MagicFormula52_Parameters.tir") + "' '" + tir + "'")
                       .c_str()),
            0);
  SessionLoadTir(tir.c_str());
  session.lastTir = tir;
  PanelResetControls();
  PanelRefreshLabels();
  for (const char *ref : {"MagicFormula61_Parameters.tir", "335_65R22_5_G275MSA_60psi.tir"}) {
    ASSERT_TRUE(ViewLoadReference(TirFile(ref).c_str()));
    for (int view = 0; view < PLOT_KIND_COUNT; view++) {
      session.view = view;
      const std::string what = std::string(PlotKindName(PlotKind(view))) + " with " + ref;
      std::vector<Drawn> drawn = Frame();
      ExpectNoOverlap(drawn, what.c_str());
      const QRect area(GRAPH_LEFT_MARGIN, GRAPH_TOP_MARGIN, VIEW_W, VIEW_H);
      const int cx = area.x + VIEW_W / 2, cy = area.y + VIEW_H / 2;
      const Chart chart = PlotChart(PlotKind(view), FrameStateFromSession(), nullptr);
      int legends = 0;
      for (const Drawn &d : drawn) {
        const bool main = d.text.find("MagicFormula52") != std::string::npos, other = d.text.find(ref) != std::string::npos;
        if (!main && !other && d.text.find("...") == std::string::npos) continue;
        if (!Meet(d.box, area) || d.box.y < area.y + 40) continue;  // the title bar has the path
        legends++;
        EXPECT_EQ(d.text.find('/'), std::string::npos) << what << ": " << Describe(d);
        EXPECT_LE(d.box.wid, CHART_LEGEND_TEXT) << what << ": " << Describe(d);
        if (view == PLOT_CURVES) {
          Graph *const *refGraphs = session.reference;
          EXPECT_EQ(FrameCurveHits(session.graphs, d.box, cx, cy) + FrameCurveHits(refGraphs, d.box, cx, cy), 0)
              << what << ": a curve runs through " << Describe(d);
        } else {
          EXPECT_EQ(ChartHits(cv, chart, area, d.box), 0) << what << ": a series runs through " << Describe(d);
        }
      }
      // Two tyres: the curves have two legend lines, the views one per series.
      EXPECT_GE(legends, 2) << what;
    }
    ViewDropReference();
  }
  session.view = PLOT_CURVES;
  session.lastTir.clear();
}

// Text that is no number is taken as a number all the same; the note after
// the value line says which, until the next selection or move.
TEST_F(FrameTexts, TypedValueThatIsNoNumberIsNamed) {
  PanelCoefficientRadio(3);
  ScriptEntry("1,5");
  ASSERT_TRUE(PanelEnterNumerically());
  std::vector<Drawn> drawn = Frame();
  EXPECT_TRUE(Has(drawn, "typed \"1,5\" is no number: taken as 1"));
  ExpectNoOverlap(drawn, "1,5");
  ScriptEntry("0.25");
  ASSERT_TRUE(PanelEnterNumerically());
  EXPECT_FALSE(Has(Frame(), "is no number"));
  ScriptEntry("abc");
  ASSERT_TRUE(PanelEnterNumerically());
  PanelCoefficientRadio(4);
  EXPECT_FALSE(Has(Frame(), "is no number"));
}

TEST(PanelEntryNote, PlainNumbersHaveNone) {
  const struct {
    const char *text;
    float value;
    const char *note;
  } cases[] = {
      {"1.5", 1.5f, ""},
      {" -2e3 ", -2000.0f, ""},
      {"abc", 0.0f, "typed \"abc\" is no number: taken as 0"},
      {"1,5", 1.0f, "typed \"1,5\" is no number: taken as 1"},
      {"1e99", 0.0f, "typed \"1e99\" is no number: taken as 0"},
      {"", 0.0f, "typed \"\" is no number: taken as 0"},
  };
  for (const auto &c : cases) EXPECT_EQ(PanelEntryNote(c.text, c.value), c.note) << c.text;
}

// A car without some wheels' tyres loads as before; the line under the model
// name names the car and the wheels.
TEST_F(FrameTexts, CarNoteNamesTheWheelsWithoutTyre) {
  ScratchDir dir;
  dir.LinkCar("nowheel2");
  WorkingDir in(dir.root);
  std::string oldCar = session.car;
  session.car = "nowheel2";
  SessionLoadCar();
  std::vector<Drawn> drawn = Frame();
  EXPECT_TRUE(Has(drawn, "car \"nowheel2\" has no tyre on RL (no wheel2.pacejka section)"));
  ExpectNoOverlap(drawn, "nowheel2");
  session.car = "nosuch";
  SessionLoadCar();
  EXPECT_TRUE(Has(Frame(), "car \"nosuch\" not found (data/cars/nosuch/car.ini): no tyre on any wheel"));
  OpenTir("MagicFormula52_Parameters.tir");
  EXPECT_FALSE(Has(Frame(), "no tyre"));
  session.car = oldCar;
}

}  // namespace

// The fitting keys' hint lines (with data loaded), a running fit's progress
// and a finished fit's figures keep clear of every other text and inside
// the window.
TEST_F(FrameTexts, FittingHintsProgressAndFiguresStandClear) {
  auto inside = [&](const std::vector<Drawn> &drawn, const char *what) {
    for (const Drawn &d : drawn) {
      EXPECT_LE(d.box.x + d.box.wid, WIN_W) << what << ": " << Describe(d);
      EXPECT_LE(d.box.y + d.box.hgt, WIN_H) << what << ": " << Describe(d);
    }
  };
  HistoryClear(-1);
  OpenTir("MagicFormula61_Parameters.tir");
  ASSERT_TRUE(DataLoad((std::string(TYRO_SOURCE_DIR) + "/data/measured/rig_run_mf61.txt").c_str()));
  std::vector<Drawn> drawn = Frame();
  EXPECT_TRUE(Has(drawn, "F5 "));
  EXPECT_TRUE(Has(drawn, "F6 fit: all"));
  EXPECT_TRUE(Has(drawn, "F7 write tyre"));
  EXPECT_TRUE(Has(drawn, "Ctrl+Z/Y undo 0, redo 0"));
  EXPECT_TRUE(Has(drawn, "rig_run_mf61.txt: 24 set points, 14206 points kept"));
  ExpectNoOverlap(drawn, "data loaded");
  inside(drawn, "data loaded");
  // The widest set point line and the widest progress line fit beside the
  // panel, in the room the hint lines have before they are shortened.
  const int room = LayoutCompute(VIEW_W, VIEW_H).wheel.wid + 30;
  for (float load : {2000.0f, 9000.0f}) {
    std::string hint = DataHint(load, -3);
    EXPECT_LE(cv->MeasureText(hint.c_str()), room) << hint;
  }
  for (const char *widest : {"F6 6/6 combined Mz #200", "RMS 100.00 %, Esc cancels", "Ctrl+Z/Y undo 100, redo 100"})
    EXPECT_LE(cv->MeasureText(widest), room) << widest;
  // A running fit: its progress in the hint lines.
  PanelFocus(2);
  ASSERT_TRUE(FitStart());
  for (int i = 0; i < 3000 && FitWorkerGetProgress().stage.empty(); i++)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  drawn = Frame();
  EXPECT_TRUE(Has(drawn, "F6 2/6 pure Fy #"));
  EXPECT_TRUE(Has(drawn, ", Esc cancels"));
  ExpectNoOverlap(drawn, "fit running");
  inside(drawn, "fit running");
  FitWorkerCancel();
  for (int i = 0; i < 3000 && !FitPoll(); i++) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  // A finished fit of every stage (thinned data: quicker): its figures.
  PanelFocus(0);
  ASSERT_TRUE(DataLoad((std::string(TYRO_SOURCE_DIR) + "/data/measured/rig_run_mf61.txt").c_str(), 40));
  ASSERT_TRUE(FitStart());
  bool ended = false;
  for (int i = 0; i < 12000 && !(ended = FitPoll()); i++) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  ASSERT_TRUE(ended);
  drawn = Frame();
  for (const char *ch : {"Fx fit: RMS ", "Fy fit: RMS ", "Mz fit: RMS "}) EXPECT_TRUE(Has(drawn, ch)) << ch;
  EXPECT_TRUE(Has(drawn, "Ctrl+Z/Y undo 1, redo 0"));
  ExpectNoOverlap(drawn, "fit figures");
  inside(drawn, "fit figures");
  FitForget();
  DataDrop();
  HistoryClear(-1);
}
