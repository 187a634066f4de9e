// A headless Tyrograph window for tests of the panel and the commands: the
// application object of the headless backend, a real main window (SDL's
// offscreen driver), the three graphs on the test car and the control panel
// in their start-up state. Dialogs run on scripted events; an idle watchdog
// presses Escape when a dialog waits for input the script does not give, so
// a wrong script fails instead of hanging.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "golden.h"
#include "platform/headless/qpscript.h"
#include "tests/ui/gltest.h"
#include "tool/graph.h"
#include "tool/panel.h"
#include "tool/session.h"
#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qplatform.h"
#include "ui/qwindow.h"

class ToolWindowTest : public ::testing::Test {
 protected:
  static constexpr int WIN_W = 910, WIN_H = 714;
  static constexpr int VIEW_W = 700, VIEW_H = 500;

  void SetUp() override {
    setenv("LP_NUM_THREADS", "0", 0);
    GLTEST_LSAN_DISABLE();
    qpsClear();
    qpsSetMessageBoxAnswer(QPMB_IDOK);
    a = new QApp(0, nullptr, "tooltest");
    pw = qpCreateWindow("Tyrograph test", 0, 0, WIN_W, WIN_H, 0);
    ASSERT_NE(pw, nullptr) << qpLastError();
    qpMakeCurrent(pw);
    cv = new QCanvas();
    cv->SetTargetSize(WIN_W, WIN_H);
    a->SetBC(cv);
    mw = new QWindow(a->GetRoot(), 0, 0, WIN_W, WIN_H);
    mw->MakeRealX();
    mw->AdoptPlatformWindow(pw);
    ASSERT_TRUE(mw->Create());
    a->SetMainWindow(mw, pw);
    idles = 0;
    stuck = false;
    a->SetIdleProc(Watchdog);

    Graph *prev = nullptr;
    for (int i = 0; i < CURVE_COUNT; i++) session.graphs[i] = prev = new Graph(CurveKind(i), prev);
    for (Graph *g : session.graphs)
      for (int w = 0; w < CAR_WHEELS; w++) {
        std::string error;
        ASSERT_TRUE(CarLoadTyreSource(TouringCar().c_str(), w, g->GetTyre(w), &error)) << error;
      }
    session.wheel = 0;
    session.lastTir.clear();
    PanelBuild(mw, VIEW_W, VIEW_H);
    PanelRefreshLabels();
    SessionApplyZoom();
    PanelResetControls();
    PanelSelectWheel(0);
  }

  void TearDown() override {
    PanelDestroy();
    for (Graph *&g : session.graphs) {
      delete g;
      g = nullptr;
    }
    a->SetMainWindow(nullptr, nullptr);
    delete mw;
    qpDestroyWindow(pw);
    delete a;
    delete cv;
    qpsClear();
    GLTEST_LSAN_ENABLE();
  }

  // Escape every so many idle passes: a dialog left waiting ends.
  static void Watchdog() {
    if (++idles % 20000 == 0) {
      stuck = true;
      qpsKeyTap(QK_ESC);
    }
  }

  // Clears a string dialog's start text (the caret stands at its end).
  static void ScriptClearEntry() {
    for (int i = 0; i < 30; i++) qpsKeyTap(QK_BACKSPACE);
  }
  // Replaces the entry's text and presses Enter.
  static void ScriptEntry(const char *text) {
    ScriptClearEntry();
    qpsType(text);
    qpsKeyTap(QK_ENTER);
  }

  KPacejka *Tyre(int graph, int wheel) { return session.graphs[graph]->GetTyre(wheel); }

  static inline int idles = 0;
  static inline bool stuck = false;
  QApp *a = nullptr;
  QPWindow *pw = nullptr;
  QCanvas *cv = nullptr;
  QWindow *mw = nullptr;
};
