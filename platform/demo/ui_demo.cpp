// ui_demo: a demo screen of every control kind on the real platform backend,
// used for the smoke test under Xvfb and for frame-time figures. A title
// bar, push buttons (with symbol buttons), sliders with captions, check
// boxes, radio groups and labels, all soft windows of one main window,
// painted through the window manager each frame. Every click and change is
// shown in a label, in the title and on stdout:
//   ui_demo: click <text> (<clicks so far>)
//   ui_demo: change <name> <n>
// Escape (or closing the window) leaves, printing the frame statistics:
//   ui_demo: clicks=<n> frames=<n> fps=<f> cpu_ms_per_frame=<f>
//
// Options: --frames N  stop after N frames; --nosleep  no 16 ms pause per
// frame (for measuring); --font NAME  the texture font (default
// data/fonts/eurostile11).
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "ui/qapp.h"
#include "ui/qbutton.h"
#include "ui/qcanvas.h"
#include "ui/qcheck.h"
#include "ui/qfont.h"
#include "ui/qlabel.h"
#include "ui/qplatform.h"
#include "ui/qprop.h"
#include "ui/qradio.h"
#include "ui/qtitlebar.h"
#include "ui/qwindow.h"
#include "ui/qwinmgr.h"

namespace {

const int WID = 910, HGT = 714;
const char *const TITLE = "ui_demo";

QPWindow *win = nullptr;
QWindow *mainWin = nullptr;
QCanvas *canvas = nullptr;
QFont *font = nullptr;
QTitleBar *titleBar = nullptr;
QLabel *status = nullptr;
std::vector<QWindow *> controls;  // deleted at exit, last made first
QProp *op[4] = {};
QProp *valueSlider = nullptr, *wheelSlider = nullptr;
int clicks = 0;
long frames = 0;
long maxFrames = -1;
bool sleepEachFrame = true;
uint64_t startMs = 0;
double cpuStart = 0;

double CpuSeconds() {
  rusage ru;
  getrusage(RUSAGE_SELF, &ru);
  return double(ru.ru_utime.tv_sec + ru.ru_stime.tv_sec) + double(ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
}

template <class T>
T *Add(T *w) {
  w->Create();
  controls.push_back(w);
  return w;
}

// ---- Slider captions ----------------------------------------------------------------

void CaptionOp(int i) {
  char buf[64];
  int p = op[i]->GetPosition();
  switch (i) {
    case 0: snprintf(buf, sizeof buf, "Load %.fN", double(p * 30)); break;
    case 1: snprintf(buf, sizeof buf, "Slipratio %.2f", double(p) / 500.0 - 1.0); break;
    case 2: snprintf(buf, sizeof buf, "Slipangle %.2f", double(p) / 5.0 - 100.0); break;
    default: snprintf(buf, sizeof buf, "Inclination %.2f (camber)", double(p) / 50.0 - 10.0); break;
  }
  op[i]->SetCaption(buf);
}

void CaptionValue() {
  char buf[32];
  snprintf(buf, sizeof buf, "%.4f", double(valueSlider->GetPosition()) / 500.0);
  valueSlider->SetCaption(buf);
}

void CaptionWheel() {
  static const char *const names[4] = {"FL", "FR", "RL", "RR"};
  char buf[16];
  int w = wheelSlider->GetPosition();
  snprintf(buf, sizeof buf, "%d/%s", w, names[w & 3]);
  wheelSlider->SetCaption(buf);
}

// ---- The screen ---------------------------------------------------------------------------

void Build() {
  titleBar = Add(new QTitleBar(mainWin, 0, 0, WID, 24, TITLE));

  // Left: buttons, the status label and four sliders as wide as a graph.
  const int x = 20;
  Add(new QLabel(mainWin, x, 40, 400, 16, "Push buttons"));
  const char *labels[] = {"Open tire", "Revert", "Save*", "Export ASCII", "Export for Car.Ini", "Analyse"};
  for (int i = 0; i < 6; i++) {
    QButton *b = Add(new QButton(mainWin, x + i * (109 + 10), 60, 109, 25, labels[i]));
    if (i == 2) b->Disable();
  }
  Add(new QLabel(mainWin, x, 100, 400, 16, "Symbol buttons"));
  const char *symbols[] = {"$REWIND", "$REVERSE", "$PLAY", "$FORWARD", "$LEFT", "$RIGHT", "$DOWN"};
  for (int i = 0; i < 7; i++) Add(new QButton(mainWin, x + i * 50, 120, 40, 25, symbols[i]));
  Add(new QButton(mainWin, x + 7 * 50 + 20, 120, 60, 40, "$PLAY"));

  status = Add(new QLabel(mainWin, x, 180, 680, 48, "Nothing clicked yet.\nClick a button, drag a slider."));

  Add(new QLabel(mainWin, x, 250, 400, 16, "Sliders (caption drawn on the slider)"));
  const int starts[4] = {83, 500, 500, 500};
  for (int i = 0; i < 4; i++) {
    op[i] = Add(new QProp(mainWin, x, 270 + 21 * i, 704, 18));
    op[i]->SetRange(0, 1000);
    op[i]->SetStepSizes(3, 10);
    op[i]->SetPosition(starts[i]);
    CaptionOp(i);
  }
  QProp *off = Add(new QProp(mainWin, x, 270 + 21 * 4, 704, 18));
  off->SetRange(0, 100);
  off->SetPosition(30);
  off->SetCaption("Disabled slider");
  off->Disable();

  Add(new QLabel(mainWin, x, 400, 680, 80,
                 "Tab and Shift+Tab move the focus; Space or Enter clicks the focused button.\n"
                 "Arrows step the focused slider (PageUp/PageDown: big step) and move radios.\n"
                 "Space toggles a check box. Escape leaves."));

  // Right: the side column of rows 150 x 16, 17 apart.
  const int cx = 735;
  auto row = [](int r) { return 40 + 17 * r; };
  Add(new QLabel(mainWin, cx, row(0), 150, 16, "Force focus"));
  const char *focusNames[] = {"No focus", "Focus Fx", "Focus Fy", "Focus Mz"};
  for (int i = 0; i < 4; i++) {
    QRadio *r = Add(new QRadio(mainWin, cx, row(1 + i), 150, 16, focusNames[i], 1000));
    if (i == 0) r->SetChecked();
  }
  Add(new QCheck(mainWin, cx, row(6), 150, 16, "Zoom in horizontally", true));
  QCheck *dis = Add(new QCheck(mainWin, cx, row(7), 150, 16, "Disabled check", true));
  dis->Disable();
  Add(new QLabel(mainWin, cx, row(8), 150, 16, "Varying parameter (ghost curves)"));
  QRadio *ghost = Add(new QRadio(mainWin, cx, row(9), 150, 16, "Load (Fz)", 1001));
  ghost->SetChecked();
  Add(new QRadio(mainWin, cx, row(10), 150, 16, "Camber", 1001));
  Add(new QLabel(mainWin, cx, row(12), 150, 16, "Pacejka coefficients/scale factors"));
  for (int i = 0; i < 10; i++) {
    char name[8];
    snprintf(name, sizeof name, "b%d", i);
    QRadio *r = Add(new QRadio(mainWin, cx + (i / 5) * 60, row(13 + i % 5), 60, 16, name, 1002));
    if (i == 0) r->SetChecked();
  }
  valueSlider = Add(new QProp(mainWin, cx, row(19), 150, 16));
  valueSlider->SetRange(0, 1000);
  valueSlider->SetStepSizes(5, 10);
  valueSlider->SetPosition(700);
  CaptionValue();
  Add(new QButton(mainWin, cx, row(20), 150, 30, "Enter numerically"));
  Add(new QLabel(mainWin, cx, row(20) + 35, 150, 16, "Wheel index"));
  wheelSlider = Add(new QProp(mainWin, cx, row(20) + 52, 150, 16));
  wheelSlider->SetRange(0, 3);
  wheelSlider->SetStepSizes(1, 4);
  CaptionWheel();
}

// ---- Events and frames --------------------------------------------------------------------

void ShowStatus(const char *line) {
  char text[256];
  snprintf(text, sizeof text, "%s\nButtons clicked so far: %d", line, clicks);
  status->SetText(text);
}

const char *NameOf(QWindow *w) {
  if (auto *b = dynamic_cast<QButton *>(w)) return b->GetText();
  if (auto *c = dynamic_cast<QCheck *>(w)) return c->GetText();
  if (auto *r = dynamic_cast<QRadio *>(w)) return r->GetText();
  if (auto *p = dynamic_cast<QProp *>(w)) return p->GetCaption();
  return "?";
}

bool Events(QEvent *e) {
  char line[160];
  if (e->type == QEVENT_CLICK) {
    clicks++;
    snprintf(line, sizeof line, "Clicked \"%s\"", NameOf(e->win));
    ShowStatus(line);
    std::string title = std::string(TITLE) + " - " + NameOf(e->win);
    titleBar->SetText(title.c_str());
    printf("ui_demo: click %s (%d)\n", NameOf(e->win), clicks);
    fflush(stdout);
    return true;
  }
  if (e->type == QEVENT_CHANGE) {
    for (int i = 0; i < 4; i++)
      if (e->win == op[i]) CaptionOp(i);
    if (e->win == valueSlider) CaptionValue();
    if (e->win == wheelSlider) CaptionWheel();
    snprintf(line, sizeof line, "Changed \"%s\" to %d", NameOf(e->win), e->n);
    ShowStatus(line);
    printf("ui_demo: change %s %d\n", NameOf(e->win), e->n);
    fflush(stdout);
    return true;
  }
  return false;
}

void PrintStats() {
  double secs = double(qpTimeMs() - startMs) / 1000.0;
  double cpu = CpuSeconds() - cpuStart;
  printf("ui_demo: clicks=%d frames=%ld fps=%.1f cpu_ms_per_frame=%.3f\n", clicks, frames,
         secs > 0 ? double(frames) / secs : 0.0, frames ? cpu * 1000.0 / double(frames) : 0.0);
  fflush(stdout);
}

void Cleanup() {
  for (auto it = controls.rbegin(); it != controls.rend(); ++it) delete *it;
  controls.clear();
}

void Paint() {
  canvas->Select();
  canvas->SetBlending(QCANVAS_BLEND_OFF);
  canvas->SetColor(QCANVAS_PX_WHITE);
  canvas->Clear();
  QGetWindowManager()->Paint(canvas);
  qpSwapBuffers(win);
  frames++;
  if (maxFrames >= 0 && frames >= maxFrames) app->Exit(0);
  if (sleepEachFrame) qpSleep(16);
}

bool Keys(QEvent *e) {
  if (e->type == QEVENT_KEYPRESS && e->n == QK_ESC) {
    app->Exit(0);
    return true;
  }
  return false;
}

}  // namespace

int main(int argc, char **argv) {
  const char *fontName = "data/fonts/eurostile11";
  for (int i = 1; i < argc; i++) {
    if (!strcmp(argv[i], "--frames") && i + 1 < argc) maxFrames = atol(argv[++i]);
    else if (!strcmp(argv[i], "--nosleep")) sleepEachFrame = false;
    else if (!strcmp(argv[i], "--font") && i + 1 < argc) fontName = argv[++i];
  }
  QApp *a = new QApp(argc, argv, "ui_demo");
  win = qpCreateWindow(TITLE, 40, 40, WID, HGT, QPW_NORESIZE);
  if (!win) {
    fprintf(stderr, "ui_demo: no window: %s\n", qpLastError());
    return 1;
  }
  mainWin = new QWindow(a->GetRoot(), 0, 0, WID, HGT);
  mainWin->MakeRealX();
  mainWin->AdoptPlatformWindow(win);
  mainWin->Create();
  a->SetMainWindow(mainWin, win);
  canvas = new QCanvas(mainWin);
  canvas->SetTargetSize(WID, HGT);
  a->SetBC(canvas);
  font = new QFont(fontName);
  if (font->Create()) canvas->SetFont(font);
  else fprintf(stderr, "ui_demo: font %s not loaded; no text\n", fontName);
  Build();
  a->AddKeyboardHandler(Keys);
  a->SetEventProc(Events);
  a->SetIdleProc(Paint);
  a->SetExitProc(PrintStats);
  a->AddCleanupProc(Cleanup);
  startMs = qpTimeMs();
  cpuStart = CpuSeconds();
  a->Run();
  return 0;
}
