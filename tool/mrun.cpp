// Tyrograph: start-up sequence, frame callback, event and exit callbacks.
//
// Sections: globals; error hook; title bar; frame; events; exit; start-up.
#include "tool/mrun.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/qinfo.h"
#include "chart/basedir.h"
#include "tool/dispatch.h"
#include "tool/fitworker.h"
#include "tool/fitkeys.h"
#include "tool/measureddata.h"
#include "chart/graph.h"
#include "tool/panel.h"
#include "tool/session.h"
#include "tool/settings.h"
#include "tool/toolenv.h"
#include "tool/viewkeys.h"
#include "tool/windowframe.h"
#include "diag/qdebug.h"
#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qfont.h"
#include "ui/qmsgbox.h"
#include "ui/qplatform.h"
#include "ui/qtitlebar.h"
#include "ui/qwindow.h"
#include "ui/qwinmgr.h"

// ---- Globals ---------------------------------------------------------------------------

namespace {

constexpr const char *PRODUCT_TEXT = "Tyrograph v8.1.0 (Pac96/MF5.2) 32 bits";
// The title bar's strip at the top of the client area, above the graph area
// (whose top margin is 32) and the side column (from y = 30).
constexpr int TITLE_BAR_HEIGHT = 24;

QInfo *settingsTree = nullptr;
ToolSettings settings;
QPWindow *window = nullptr;
QWindow *mainWindow = nullptr;
QTitleBar *titleBar = nullptr;
QCanvas *canvas = nullptr;
QFont *font = nullptr;
QReportHook previousErrorHook = nullptr;

// Frame statistics, printed at exit when TYROGRAPH_STATS is set (the figures
// of the README): frames, their rate, CPU time per frame, start to first frame.
struct FrameStats {
  bool enabled = false;
  long maxFrames = -1;  // TYROGRAPH_STATS=N ends the program after N frames
  long frames = 0;
  uint64_t startMs = 0, firstFrameMs = 0;
  double cpuAtFirstFrame = 0;
  uint64_t lastFrameMs = 0, maxFrameMs = 0;  // the longest frame after the first, pacing included
  uint64_t maxFitFrameMs = 0;                 // the longest while a fit ran on its worker
  long fitFrames = 0;
  // Every frame's time after the first, while a fit ran and while none did
  // (for the median and 99th percentile of each).
  std::vector<uint32_t> fitFrameMs, otherFrameMs;
} stats;

// The median and 99th percentile (nearest rank) of frame times.
void PrintPercentiles(const char *what, std::vector<uint32_t> *t) {
  if (t->empty()) return;
  std::sort(t->begin(), t->end());
  auto rank = [t](double q) { return (*t)[std::min(t->size() - 1, size_t(q * double(t->size() - 1) + 0.5))]; };
  printf(" %s_frame_ms_median=%u %s_frame_ms_p99=%u", what, rank(0.5), what, rank(0.99));
}

double CpuSeconds() {
  rusage ru;
  getrusage(RUSAGE_SELF, &ru);
  return double(ru.ru_utime.tv_sec + ru.ru_stime.tv_sec) + double(ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
}

void StatsFrameDone() {
  if (!stats.enabled) return;
  const uint64_t now = qpTimeMs();
  if (stats.frames++ == 0) {
    stats.firstFrameMs = now;
    stats.cpuAtFirstFrame = CpuSeconds();
  } else {
    const uint64_t ms = now - stats.lastFrameMs;
    if (ms > stats.maxFrameMs) stats.maxFrameMs = ms;
    if (FitWorkerRunning()) {
      stats.fitFrames++;
      if (ms > stats.maxFitFrameMs) stats.maxFitFrameMs = ms;
      stats.fitFrameMs.push_back(uint32_t(ms));
    } else {
      stats.otherFrameMs.push_back(uint32_t(ms));
    }
  }
  stats.lastFrameMs = now;
  if (stats.maxFrames > 0 && stats.frames >= stats.maxFrames) app->Exit(0);
}

void StatsPrint() {
  if (!stats.enabled || stats.frames < 1) return;
  double secs = double(qpTimeMs() - stats.firstFrameMs) / 1000.0;
  long later = stats.frames - 1;
  double cpu = CpuSeconds() - stats.cpuAtFirstFrame;
  printf("tyrograph: frames=%ld fps=%.1f cpu_ms_per_frame=%.2f start_to_first_frame_ms=%llu max_frame_ms=%llu",
         stats.frames, secs > 0 ? double(later) / secs : 0.0, later ? cpu * 1000.0 / double(later) : 0.0,
         (unsigned long long)(stats.firstFrameMs - stats.startMs), (unsigned long long)stats.maxFrameMs);
  // With a fit on its worker: the frames drawn meanwhile, the longest of
  // them, their median and 99th percentile; then, to compare, the median
  // and 99th percentile of the frames drawn while no fit ran.
  if (stats.fitFrames) {
    printf(" fit_frames=%ld max_fit_frame_ms=%llu", stats.fitFrames, (unsigned long long)stats.maxFitFrameMs);
    PrintPercentiles("fit", &stats.fitFrameMs);
    PrintPercentiles("nofit", &stats.otherFrameMs);
  }
  printf("\n");
  fflush(stdout);
}

}  // namespace

// ---- Error hook --------------------------------------------------------------------------

namespace {

// Every reported error is shown to the user before it goes on to the hook
// installed before this one. An error raised while the box is up (the box
// runs the event loop) only goes on, so boxes never stack up.
int ErrorHook(const char *prefix, const char *message) {
  static bool showing = false;
  if (!showing) {
    showing = true;
    QMessageBoxAt("Error", message, QMB_OK, QRect(100, 100, 500, 150));
    showing = false;
  }
  if (previousErrorHook) return previousErrorHook(prefix, message);
  // No hook before this one: the reporters' own output, stderr and the log.
  fprintf(stderr, "%s", message);
  if (qGetLogMask() & QLOG_WARN) qlogf(QLOG_ERR | QLOG_NO_STDERR, prefix, "%s", message);
  return 0;
}

}  // namespace

// ---- Title bar -----------------------------------------------------------------------------

void TyroUpdateTitle() {
  char text[1200];
  snprintf(text, sizeof text, "%s - %s", PRODUCT_TEXT, session.lastTir.c_str());
  if (titleBar)
    titleBar->SetText(text);  // the real window's caption too
  else if (window)
    qpSetWindowTitle(window, text);
}

void TyroLoadCar() { SessionLoadCar(); }

// ---- Frame -------------------------------------------------------------------------------

namespace {

void PaintFrame() {
  // The tool's frame pacing: one frame, then 16 ms of rest.
  qpSleep(16);
  session.ghostCamber = PanelGhostCamber();
  ViewExpireSavedNote(qpTimeMs());
  DataPoll();  // F5's read, once it has ended on its worker
  FitPoll();  // a fit that ended on its worker goes into the tyre
  FramePaintGraphs(canvas, settings.viewWidth, settings.viewHeight);
  // The controls, and a dialog over them while one runs.
  if (QGetWindowManager()) QGetWindowManager()->Paint(canvas);
  qpSwapBuffers(window);
  StatsFrameDone();
}

// ---- Events --------------------------------------------------------------------------------

bool OnEvent(QEvent *ev) {
  // While a modal dialog runs the loop, its keys (Escape among them) are the
  // dialog's, not the panel's.
  if (app->GetFocusShell() && app->GetFocusShell()->GetModal()) return false;
  ToolEnv env;
  env.settingsTree = settingsTree;
  env.viewWidth = settings.viewWidth;
  env.viewHeight = settings.viewHeight;
  env.updateTitle = TyroUpdateTitle;
  return ToolDispatch(ev, env);
}

// ---- Exit ----------------------------------------------------------------------------------

void OnExit() {
  FitWorkerCancel();
  FitWorkerWait();
  DataLoadWait();
  StatsPrint();
  if (settingsTree) {
    SettingsStoreLastCar(settingsTree, session.car.c_str());
    QSetMainInfo(nullptr);
    app->CloseInfo();
    delete settingsTree;
    settingsTree = nullptr;
  }
  // The command buttons, then "Enter numerically", then the other controls.
  PanelDestroy();
  delete titleBar;
  titleBar = nullptr;
}

// ---- Start-up ------------------------------------------------------------------------------

// Step 1: the base folder becomes the working folder; the settings tree is
// read from it and stays open until exit.
void OpenSettings() {
  std::string base = BaseFolderFind();
  if (chdir(base.c_str()) != 0) QWARN_IN("TyroRun", "can't change to base folder '%s'", base.c_str());
  if (!BaseFolderSeedSettings("."))
    QWARN_IN("TyroRun", "can't copy data/%s to %s", SETTINGS_FILE, SETTINGS_FILE);
  settingsTree = new QInfo(SETTINGS_FILE, QINFO_SILENT);
  QSetMainInfo(settingsTree);
}

// Steps 3 and 4: the application object and its window.
void OpenWindow(int argc, char **argv) {
  QApp *a = new QApp(argc, argv, "pacejka");
  a->SetInfo(settingsTree);
  QDisplayMode &mode = a->GetDisplayMode();
  mode.wid = settings.width;
  mode.hgt = settings.height;
  mode.colorBits = settings.bits;
  unsigned flags = QPW_NORESIZE | (settings.fullscreen ? QPW_FULLSCREEN : 0u);
  window = qpCreateWindow("Tyrograph", settings.x, settings.y, settings.width, settings.height, flags);
  if (!window) qfatal("Tyrograph: can't open the window (%s)", qpLastError());
  canvas = new QCanvas();
  canvas->SetTargetSize(settings.width, settings.height);
  a->SetBC(canvas);
  // The main window of the window tree adopts the platform window; the
  // controls and dialogs are soft windows inside it.
  mainWindow = new QWindow(a->GetRoot(), 0, 0, settings.width, settings.height);
  mainWindow->MakeRealX();
  mainWindow->AdoptPlatformWindow(window);
  mainWindow->Create();
  a->SetMainWindow(mainWindow, window);
}

// Step 12: the three graphs, each given the one before it, with the car.
void CreateGraphs() {
  Graph *previous = nullptr;
  for (int i = 0; i < CURVE_COUNT; i++) {
    session.graphs[i] = new Graph(CurveKind(i), previous);
    previous = session.graphs[i];
  }
  TyroLoadCar();
  PanelRefreshLabels();
  SessionApplyZoom();
  PanelResetControls();
  PanelSelectWheel(0);
}

}  // namespace

void TyroRun(int argc, char **argv) {
  const char *wantStats = getenv("TYROGRAPH_STATS");
  stats.enabled = wantStats && *wantStats;
  stats.maxFrames = stats.enabled ? atol(wantStats) : -1;
  stats.startMs = qpTimeMs();
  OpenSettings();
  settings = SettingsRead(settingsTree);
  OpenWindow(argc, argv);
  previousErrorHook = qSetErrorHook(ErrorHook);
  font = new QFont("data/fonts/eurostile11");
  if (font->Create()) {
    canvas->SetFont(font);
  } else {
    // Without its font the window would show curves and no single label; the
    // platform's own box still has text to say why.
    char cwd[1024];
    std::string text = std::string("Can't load the interface font data/fonts/eurostile11 (.dtf and .tga) in ") +
                       (getcwd(cwd, sizeof cwd) ? cwd : ".") +
                       ".\nThe window will show no labels or captions until the font files are back.";
    qpMessageBox(window, "Tyrograph", text.c_str(), QPMB_OK);
  }
  PanelBuild(mainWindow, settings.viewWidth, settings.viewHeight);
  titleBar = new QTitleBar(mainWindow, 0, 0, settings.width, TITLE_BAR_HEIGHT, PRODUCT_TEXT);
  titleBar->Create();
  app->SetIdleProc(PaintFrame);
  app->SetExitProc(OnExit);
  app->SetEventProc(OnEvent);
  session.car = settings.lastCar;
  TyroUpdateTitle();
  CreateGraphs();
  app->Run();
  QExit(0);  // Run never returns; this only tells the compiler so
}
