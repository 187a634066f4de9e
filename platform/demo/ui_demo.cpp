// ui_demo: a small window on the real platform backend, used for the smoke
// test under Xvfb and for frame-time figures. It draws the palette, shaded
// lines and a clickable box, counts clicks on the box and leaves on Escape
// (or on closing the window). On leaving it prints the frame statistics:
//   ui_demo: clicks=<n> frames=<n> fps=<f> cpu_ms_per_frame=<f>
//
// Options: --frames N  stop after N frames; --nosleep  no 16 ms pause per
// frame (for measuring); --font NAME  draw text with that texture font.
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qfont.h"
#include "ui/qplatform.h"

namespace {

const int WID = 910, HGT = 714;
const QRect BOX(40, 300, 160, 60);

QPWindow *win = nullptr;
QCanvas *canvas = nullptr;
QFont *font = nullptr;
int clicks = 0;
long frames = 0;
long maxFrames = -1;
bool sleepEachFrame = true;
uint64_t startMs = 0;

double CpuSeconds() {
  rusage ru;
  getrusage(RUSAGE_SELF, &ru);
  return double(ru.ru_utime.tv_sec + ru.ru_stime.tv_sec) + double(ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) / 1e6;
}
double cpuStart = 0;

void PrintStats() {
  double secs = double(qpTimeMs() - startMs) / 1000.0;
  double cpu = CpuSeconds() - cpuStart;
  printf("ui_demo: clicks=%d frames=%ld fps=%.1f cpu_ms_per_frame=%.3f\n", clicks, frames,
         secs > 0 ? double(frames) / secs : 0.0, frames ? cpu * 1000.0 / double(frames) : 0.0);
  fflush(stdout);
}

void Paint() {
  QCanvas &c = *canvas;
  c.Select();
  c.SetBlending(QCANVAS_BLEND_OFF);
  c.SetColor(28, 32, 36);
  c.Clear();
  // Palette swatches 0..11 along the top.
  for (unsigned code = 0; code < 12; code++) {
    c.SetBlending(QCANVAS_BLEND_OFF);
    c.SetColor(code);
    c.Rectfill(20 + int(code) * 70, 20, 60, 60);
  }
  c.SetBlending(QCANVAS_BLEND_OFF);
  // A fan of shaded lines.
  QColor a(255, 80, 0), b(0, 160, 255);
  for (int i = 0; i <= 20; i++) c.Line(40, 120 + i * 8, 600, 280 - i * 8, &a, &b);
  // The clickable box: its colour shows the number of clicks.
  c.SetColor(clicks % 2 ? QCANVAS_PX_LTTEAL : QCANVAS_PX_WARMGRAY);
  c.Rectfill(BOX);
  c.Outline(BOX);
  if (font && font->IsCreated()) {
    char text[64];
    snprintf(text, sizeof(text), "Clicks: %d", clicks);
    c.SetColor(QCANVAS_PX_BLACK);
    c.Text(text, BOX.x + 12, BOX.y + 20);
    c.SetColor(QCANVAS_PX_WHITE);
    c.TextML("Tyrograph UI demo\nClick the box, press Escape to leave.\n0123456789 +-.,:; ABCxyz", 40, 400);
  }
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

bool Events(QEvent *e) {
  if (e->type == QEVENT_BUTTONPRESS && e->n == QMB_LEFT && BOX.Contains(e->x, e->y)) {
    clicks++;
    printf("ui_demo: box clicked (%d)\n", clicks);
    fflush(stdout);
    return true;
  }
  return false;
}

}  // namespace

int main(int argc, char **argv) {
  const char *fontName = nullptr;
  for (int i = 1; i < argc; i++) {
    if (!strcmp(argv[i], "--frames") && i + 1 < argc) maxFrames = atol(argv[++i]);
    else if (!strcmp(argv[i], "--nosleep")) sleepEachFrame = false;
    else if (!strcmp(argv[i], "--font") && i + 1 < argc) fontName = argv[++i];
  }
  QApp *a = new QApp(argc, argv, "ui_demo");
  win = qpCreateWindow("ui_demo", 40, 40, WID, HGT, QPW_NORESIZE);
  if (!win) {
    fprintf(stderr, "ui_demo: no window: %s\n", qpLastError());
    return 1;
  }
  a->SetMainWindow(nullptr, win);
  canvas = new QCanvas();
  canvas->SetTargetSize(WID, HGT);
  a->SetBC(canvas);
  if (fontName) {
    font = new QFont(fontName);
    font->Create();
    canvas->SetFont(font);
  }
  a->AddKeyboardHandler(Keys);
  a->SetEventProc(Events);
  a->SetIdleProc(Paint);
  a->SetExitProc(PrintStats);
  startMs = qpTimeMs();
  cpuStart = CpuSeconds();
  a->Run();
  return 0;
}
