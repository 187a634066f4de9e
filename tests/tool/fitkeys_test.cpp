// The fitting keys: F5 measured data behind the curves, F6 a fit of the
// focused graph on a worker thread, Escape cancelling it, undo and redo of
// fits and coefficient edits per wheel, F7 writing the tyre.
#include <chrono>
#include <cstdlib>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "chart/carload.h"
#include "chart/plot.h"
#include "tool/commands.h"
#include "tool/dispatch.h"
#include "tool/fitworker.h"
#include "tool/fitkeys.h"
#include "tool/measureddata.h"
#include "tool/tyrehistory.h"
#include "tool/windowframe.h"
#include "toolwindow.h"
#include "render/qrecorder.h"
#include "chart/fitrun.h"
#include "tests/base/capture.h"
#include "tyre/kdataload.h"

namespace {

std::string Measured(const char *name) { return std::string(TYRO_SOURCE_DIR) + "/data/measured/" + name; }

class FitKeys : public ToolWindowTest {
 protected:
  void TearDown() override {
    FitWorkerCancel();
    FitWorkerWait();
    FitForget();
    DataLoadWait();
    DataDrop();
    HistoryClear(-1);
    session.carNote.clear();  // Revert of a car that is not there
    ToolWindowTest::TearDown();
  }
  static bool Press(int key, int mods = 0) {
    QEvent ev;
    ev.type = QEVENT_KEYPRESS;
    ev.n = key;
    ev.xn = key | mods;
    return ToolDispatch(&ev, ToolEnv{});
  }
  QRecorder Frame() {
    QRecorder rec;
    FramePaintGraphs(&rec, VIEW_W, VIEW_H);
    return rec;
  }
  static size_t Drawn(const QRecorder &rec) { return rec.Of(QREC_FILL).size() + rec.Of(QREC_SEGMENTS).size(); }
  // Polls as the frame does until F5's read has ended; false after a minute.
  static bool WaitForData() {
    for (int i = 0; i < 6000; i++) {
      if (DataPoll()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }
  // Polls as the frame does until the fit has ended; false after two minutes.
  static bool WaitForFit() {
    for (int i = 0; i < 12000; i++) {
      if (FitPoll()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }
  void OpenTir(const char *name) {
    SessionLoadTir(TirFile(name).c_str());
    PanelResetControls();
    PanelRefreshLabels();
  }
  KTyreParams Params(int wheel = 0) { return *Tyre(CURVE_FX, wheel); }
  static bool Same(const KTyreParams &a, const KTyreParams &b) { return memcmp(&a, &b, sizeof a) == 0; }
  // Every fitted member of the tyre's model 5 % off, so a fit has work.
  void Nudge() {
    KPacejka *t = Tyre(CURVE_FX, session.wheel);
    for (int i = 0; i < kpacejkaMemberCount; i++) {
      const KPacejkaMember &m = kpacejkaMembers[i];
      if (m.kind == KPacejkaMember::FLOAT && KPacejkaIsFitted(m) && KPacejkaModelReads(m, t->model))
        *KPacejkaFloat(*t, m) *= 1.05f;
    }
  }
  static std::string Slurp(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }
};

// How many times `part` stands in `text`.
int Count(const std::string &text, const std::string &part) {
  int n = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) n++;
  return n;
}

// Threads of this process at niceness `nice` (field 19 of their stat).
int NiceThreads(int nice) {
  int n = 0;
  for (const auto &t : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream in(t.path() / "stat");
    std::string stat((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::istringstream rest(stat.substr(stat.rfind(')') + 2));  // after the name, which may hold spaces
    std::string field;
    for (int i = 3; i <= 19 && rest >> field; i++) {}
    n += std::atoi(field.c_str()) == nice;
  }
  return n;
}

bool OfChannel(KPacejkaMember::Group g, int ch) {
  using G = KPacejkaMember;
  const G::Group pure[] = {G::PURE_FX, G::PURE_FY, G::PURE_MZ}, comb[] = {G::COMBINED_FX, G::COMBINED_FY, G::COMBINED_MZ};
  return g == pure[ch] || g == comb[ch];
}

}  // namespace

TEST_F(FitKeys, F5DrawsTheNearestSetPointBehindTheCurvesAndNamesIt) {
  const size_t bare = Drawn(Frame());
  {
    // Without data one hint line names F5, and no other fitting key.
    QRecorder rec = Frame();
    EXPECT_NE(rec.FindText(FITHINT_NO_DATA), nullptr);
    EXPECT_EQ(rec.FindText("F6"), nullptr);
    EXPECT_EQ(rec.FindText("Ctrl+Z"), nullptr);
  }
  // Through the file dialog, read on a worker thread: the hint line says
  // so meanwhile, and F5 again does nothing.
  ScriptEntry(Measured("touring.csv").c_str());
  EXPECT_TRUE(Press(FITKEY_DATA));
  EXPECT_FALSE(stuck);
  EXPECT_TRUE(DataLoading());
  EXPECT_NE(Frame().FindText("F5 reading touring.csv"), nullptr);
  EXPECT_TRUE(Press(FITKEY_DATA));
  EXPECT_FALSE(FitStart());  // no data yet
  ASSERT_TRUE(WaitForData());
  EXPECT_FALSE(DataLoading());
  ASSERT_NE(DataGet(), nullptr);
  EXPECT_NE(DataGet()->note.find("touring.csv: 9 set points, 198 points kept"), std::string::npos) << DataGet()->note;
  PanelOpMoved(OP_LOAD, 100);  // 3000 N
  QRecorder rec = Frame();
  EXPECT_GT(Drawn(rec), bare);
  EXPECT_NE(rec.FindText("touring.csv: 9 set points"), nullptr);
  const QRecord *hint = rec.FindText("F5 ");
  ASSERT_NE(hint, nullptr);
  int sp = -1;
  const PlotPoints *pts = DataPointsAt(session.point.load, session.point.camber, &sp);
  ASSERT_NE(pts, nullptr);
  EXPECT_FALSE(pts->Empty());
  // The load slider picks the nearest set point.
  const double near = DataGet()->setPoints[size_t(sp)].fz;
  for (const KSetPoint &s : DataGet()->setPoints) EXPECT_LE(std::fabs(near - 3000), std::fabs(s.fz - 3000) + 1e-9);
  PanelOpMoved(OP_LOAD, 300);  // 9000 N
  int far = -1;
  DataPointsAt(session.point.load, session.point.camber, &far);
  EXPECT_NE(far, sp);
  EXPECT_STRNE(Frame().FindText("F5 ")->text.c_str(), hint->text.c_str());
  // Every view shows them (the ellipse as Fx over Fy).
  session.view = PLOT_ELLIPSE;
  EXPECT_GT(Drawn(Frame()), 0u);
  session.view = PLOT_CURVES;
  // F5 again: gone, without a dialog.
  EXPECT_TRUE(Press(FITKEY_DATA));
  EXPECT_EQ(DataGet(), nullptr);
  EXPECT_NE(Frame().FindText(FITHINT_NO_DATA), nullptr);
  EXPECT_EQ(Frame().FindText("F6"), nullptr);
  // A file that cannot be read leaves no data, and says why on the window's
  // thread, read here or on the worker.
  ReportCapture reports;
  EXPECT_FALSE(DataLoad("/nonexistent/none.csv"));
  EXPECT_EQ(DataGet(), nullptr);
  EXPECT_EQ(Count(reports.errors, "/nonexistent/none.csv"), 1);
  ASSERT_TRUE(DataLoadStart("/nonexistent/none.csv"));
  ASSERT_TRUE(WaitForData());
  EXPECT_EQ(DataGet(), nullptr);
  EXPECT_EQ(Count(reports.errors, "/nonexistent/none.csv"), 2);
  const std::string bad = std::string(TYRO_BINARY_DIR) + "/fitkeys_bad.csv";
  std::ofstream(bad) << "fz,alpha,fy\n4000,0.01,x\n";
  ASSERT_TRUE(DataLoadStart(bad.c_str()));
  ASSERT_TRUE(WaitForData());
  EXPECT_EQ(DataGet(), nullptr);
  EXPECT_EQ(Count(reports.errors, "fitkeys_bad.csv:2"), 1) << reports.errors;
  // Escape during a read throws it away (and does not end the program).
  ASSERT_TRUE(DataLoadStart(Measured("touring.csv").c_str()));
  EXPECT_TRUE(Press(QK_ESC));
  ASSERT_TRUE(WaitForData());
  EXPECT_EQ(DataGet(), nullptr);
  std::remove(bad.c_str());
}

TEST_F(FitKeys, EachFocusFitsOnlyItsGroupsAndUndoGivesEveryBitBack) {
  ASSERT_TRUE(DataLoad(Measured("touring.csv").c_str()));
  const char *names[] = {"Fx", "Fy", "Mz"};
  for (int focus = 1; focus <= 3; focus++) {
    const int ch = focus - 1;
    PanelFocus(focus);
    Nudge();
    const KTyreParams before = Params();
    ASSERT_TRUE(Press(FITKEY_FIT));
    EXPECT_TRUE(FitWorkerRunning());
    ASSERT_TRUE(WaitForFit()) << names[ch];
    EXPECT_EQ(FitLastMessage(), "") << names[ch];
    const KTyreParams after = Params();
    int changed = 0;
    for (int i = 0; i < kpacejkaMemberCount; i++) {
      const KPacejkaMember &m = kpacejkaMembers[i];
      const double a = KPacejkaGetMember(before, m), b = KPacejkaGetMember(after, m);
      if (OfChannel(m.group, ch)) changed += a != b;
      else EXPECT_EQ(a, b) << names[ch] << " fit moved " << m.name;
    }
    EXPECT_GT(changed, 3) << names[ch];
    // The figures of the fitted channel alone, under the peak lines.
    for (int c = 0; c < KCH_COUNT; c++) EXPECT_EQ(FitFiguresText(c).empty(), c != ch) << names[ch];
    EXPECT_NE(Frame().FindText(std::string(names[ch]) + " fit: RMS "), nullptr);
    EXPECT_LT(FitLastFigures().channel[ch].rmsPercent, 1.0) << names[ch];
    // Undo: every member as before, bit for bit; redo: the fit again.
    EXPECT_TRUE(Press(0x5A, QK_MOD_CTRL));
    EXPECT_TRUE(Same(Params(), before)) << names[ch];
    EXPECT_EQ(FitFiguresText(ch), "");  // the figures were the fitted tyre's
    EXPECT_TRUE(Press(0x59, QK_MOD_CTRL));
    EXPECT_TRUE(Same(Params(), after)) << names[ch];
  }
  EXPECT_EQ(HistoryUndoCount(0), 3);
}

TEST_F(FitKeys, NoFocusFitsEveryStageAsTheCommandLineDoesFromTheSameStart) {
  // The rig run, thinned to 40 points a sweep (the full run fits for
  // seconds more and the figures agree the same way), from the MF 6.1 file.
  const std::string run = Measured("rig_run_mf61.txt"), tir = TirFile("MagicFormula61_Parameters.tir");
  OpenTir("MagicFormula61_Parameters.tir");
  ASSERT_TRUE(DataLoad(run.c_str(), 40));
  PanelFocus(0);
  ASSERT_TRUE(FitStart());
  ASSERT_TRUE(WaitForFit());
  ASSERT_EQ(FitLastMessage(), "");
  // What `tyrograph-cli fit RUN --thin 40 --model mf61 --start TIR` does,
  // through the command line's own driver.
  FitJob job;
  job.input = run;
  job.condition.thin = 40;
  job.start = tir;
  job.model = KPacejka::MF61;
  job.outOptional = true;
  const FitOutcome cli = FitRun(job);
  ASSERT_TRUE(cli.ok);
  const KFitResult &r = cli.result;
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    ASSERT_GT(r.channel[ch].points, 0);
    EXPECT_TRUE(FitLastFigures().fitted[ch]);
    // The same fit (any number of Jacobian threads gives the same bits), so
    // the same figures, well within the 0.1 percentage points asked for.
    EXPECT_NEAR(FitLastFigures().channel[ch].rmsPercent, r.channel[ch].rmsPercent, 1e-9) << KChannelName(ch);
    EXPECT_NEAR(FitLastFigures().channel[ch].r2, r.channel[ch].r2, 1e-12) << KChannelName(ch);
    EXPECT_LT(FitLastFigures().channel[ch].rmsPercent, 3.0) << KChannelName(ch);
  }
  // The model stays the tyre's own.
  EXPECT_EQ(Tyre(CURVE_FX, 0)->model, KPacejka::MF61);
}

TEST_F(FitKeys, EscapeCancelsTheFitAndLeavesTheTyreAsItWas) {
  OpenTir("MagicFormula61_Parameters.tir");
  ASSERT_TRUE(DataLoad(Measured("rig_run_mf61.txt").c_str()));
  Nudge();
  const KTyreParams before = Params();
  ASSERT_TRUE(FitStart());
  EXPECT_FALSE(FitStart());  // one at a time
  // The progress line shows once the solver has gone round once.
  for (int i = 0; i < 3000 && FitWorkerGetProgress().stage.empty(); i++)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  // The worker runs below the window's thread in priority.
  EXPECT_GE(NiceThreads(10), 1);  // (and its Jacobian threads on more than two cores)
  std::string hints[4];
  FitHintLines(hints);
  EXPECT_EQ(hints[1].rfind("F6 1/", 0), 0u) << hints[1];
  EXPECT_NE(hints[1].find(" pure Fx #"), std::string::npos) << hints[1];
  EXPECT_EQ(hints[2].rfind("RMS ", 0), 0u) << hints[2];
  EXPECT_NE(hints[2].find(" %, Esc cancels"), std::string::npos) << hints[2];
  EXPECT_TRUE(Press(QK_ESC));  // not the end of the program while a fit runs
  ASSERT_TRUE(WaitForFit());
  EXPECT_EQ(FitLastMessage(), "fit cancelled");
  EXPECT_TRUE(Same(Params(), before));
  EXPECT_EQ(HistoryUndoCount(0), 0);
  EXPECT_FALSE(FitLastFigures().shown);
  // Revert during a fit cancels it: its result would belong to no tyre.
  ASSERT_TRUE(FitStart());
  qpsKeyTap(QK_ENTER);  // Yes
  ASSERT_TRUE(CommandRevert());
  ASSERT_TRUE(WaitForFit());
  EXPECT_EQ(FitLastMessage(), "fit cancelled");
  EXPECT_EQ(HistoryUndoCount(0), 0);
}

TEST_F(FitKeys, CoefficientEditsUndoPerWheelFiftyDeepAndRevertForgets) {
  // One drag of one coefficient is one step.
  const KTyreParams start = Params();
  for (int pos = 100; pos <= 900; pos += 100) PanelValueMoved(pos);
  EXPECT_EQ(HistoryUndoCount(0), 1);
  const KTyreParams dragged = Params();
  EXPECT_FALSE(Same(dragged, start));
  // Sixty single steps, on two coefficients in turn.
  std::vector<KTyreParams> states{Params()};
  for (int i = 0; i < 60; i++) {
    PanelCoefficientRadio(i % 2);
    PanelValueMoved(200 + 10 * i);
    states.push_back(Params());
  }
  EXPECT_EQ(HistoryUndoCount(0), 61);
  // Wheel 1 has its own history: nothing to undo there.
  PanelSelectWheel(1);
  const KTyreParams wheel1 = Params(1);
  EXPECT_TRUE(Press(0x5A, QK_MOD_CTRL));
  EXPECT_TRUE(Same(Params(1), wheel1));
  PanelSelectWheel(0);
  for (int i = 60; i > 0; i--) {
    ASSERT_TRUE(FitUndo());
    ASSERT_TRUE(Same(Params(), states[size_t(i - 1)])) << i;
  }
  ASSERT_TRUE(FitUndo());
  EXPECT_TRUE(Same(Params(), start));
  EXPECT_FALSE(FitUndo());
  EXPECT_TRUE(FitRedo());
  EXPECT_TRUE(Same(Params(), dragged));
  // Revert reloads the car and forgets the history.
  PanelValueMoved(50);
  qpsKeyTap(QK_ENTER);  // Yes
  ASSERT_TRUE(CommandRevert());
  EXPECT_EQ(HistoryUndoCount(0), 0);
  EXPECT_EQ(HistoryRedoCount(0), 0);
  EXPECT_FALSE(FitUndo());
  // The history stays bounded.
  for (int i = 0; i < HISTORY_DEPTH + 20; i++) {
    PanelCoefficientRadio(i % 2);
    PanelValueMoved(i % 1000);
  }
  EXPECT_EQ(HistoryUndoCount(0), HISTORY_DEPTH);
}

TEST_F(FitKeys, F7WritesTirOrCarIniAndAsksBeforeReplacing) {
  // A Magic Formula tyre to a TIR file: read back, the same coefficients.
  OpenTir("MagicFormula61_Parameters.tir");
  PanelValueMoved(321);
  char scratch[] = "/tmp/tyro_fitkeys_XXXXXX";
  ASSERT_NE(mkdtemp(scratch), nullptr);
  const std::string here = std::string(scratch) + "/";
  const std::string tir = here + "fitkeys_out.tir", ini = here + "fitkeys_car.ini";
  std::remove(tir.c_str());
  std::remove(ini.c_str());
  ScriptEntry(tir.c_str());
  EXPECT_TRUE(Press(FITKEY_WRITE));
  EXPECT_FALSE(stuck);
  KPacejka back;
  std::string error;
  ASSERT_TRUE(CarLoadTyreSource(tir.c_str(), 0, &back, &error)) << error;
  const KPacejka &now = *Tyre(CURVE_FX, 0);
  EXPECT_EQ(back.model, now.model);
  EXPECT_EQ(back.pcx1, now.pcx1);
  EXPECT_EQ(back.pky1, now.pky1);
  EXPECT_EQ(back.qbz1, now.qbz1);
  // Anything else: a car.ini with four wheel blocks.
  ASSERT_TRUE(FitWriteTyre(ini));
  const std::string text = Slurp(ini);
  for (int w = 0; w < CAR_WHEELS; w++)
    EXPECT_NE(text.find("wheel" + std::to_string(w) + "\n{\n  pacejka\n"), std::string::npos) << w;
  KPacejka fromIni;
  ASSERT_TRUE(CarLoadTyreSource(ini.c_str(), 3, &fromIni, &error)) << error;
  EXPECT_EQ(fromIni.pdy1, now.pdy1);
  // An existing file: No keeps it, Yes replaces it.
  PanelValueMoved(654);
  qpsKeyTap(QK_ESC);  // No
  EXPECT_FALSE(FitWriteTyre(ini));
  EXPECT_TRUE(Slurp(ini) == text);
  qpsKeyTap(QK_ENTER);  // Yes
  EXPECT_TRUE(FitWriteTyre(ini));
  EXPECT_FALSE(stuck);
  EXPECT_TRUE(Slurp(ini) != text);
  // A Pacejka89/96 tyre has no TIR form.
  for (Graph *g : session.graphs)
    ASSERT_TRUE(CarLoadTyreSource((std::string(TYRO_SOURCE_DIR) + "/data/cars/touring").c_str(), 0, g->GetTyre(0), &error));
  ASSERT_EQ(Tyre(CURVE_FX, 0)->model, KPacejka::PAC96);
  EXPECT_FALSE(FitWriteTyre(here + "fitkeys_pac96.tir"));
  EXPECT_FALSE(std::filesystem::exists(here + "fitkeys_pac96.tir"));
  // The required "Save*" button still says it is not there.
  EXPECT_EQ(Frame().FindText("F7"), nullptr);  // no data: F5's hint line alone
  std::filesystem::remove_all(scratch);
}
