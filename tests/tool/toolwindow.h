// A headless main window with the graphs on the test car and the panel at
// start-up. An idle watchdog presses Escape now and then, so a dialog the
// script leaves waiting ends and `stuck` tells.
#pragma once

#include "golden.h"
#include "platform/headless/qpscript.h"
#include "tests/ui/gltest.h"
#include "tool/panel.h"
#include "tool/toolenv.h"
#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qplatform.h"
#include "ui/qwindow.h"

class ToolWindowTest : public ::testing::Test {
 protected:
  static constexpr int WIN_W = 910, WIN_H = 714, VIEW_W = 700, VIEW_H = 500;

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
    a->SetIdleProc([] {
      if (++idles % 20000 == 0) {
        stuck = true;
        qpsKeyTap(QK_ESC);
      }
    });
    CreateTouringGraphs();
    session.lastTir.clear();
    PanelBuild(mw, VIEW_W, VIEW_H);
    PanelRefreshLabels();
    SessionApplyZoom();
    PanelResetControls();
    PanelSelectWheel(0);
  }

  void TearDown() override {
    PanelDestroy();
    DeleteGraphs();
    a->SetMainWindow(nullptr, nullptr);
    delete mw;
    qpDestroyWindow(pw);
    delete a;
    delete cv;
    qpsClear();
    GLTEST_LSAN_ENABLE();
  }

  // Replaces a string dialog's text and ends the dialog with the key.
  static void ScriptEntry(const char *text, int key = QK_ENTER) {
    for (int i = 0; i < 30; i++) qpsKeyTap(QK_BACKSPACE);
    qpsType(text);
    qpsKeyTap(key);
  }

  KPacejka *Tyre(int graph, int wheel) { return session.graphs[graph]->GetTyre(wheel); }

  static inline int idles = 0;
  static inline bool stuck = false;
  QApp *a = nullptr;
  QPWindow *pw = nullptr;
  QCanvas *cv = nullptr;
  QWindow *mw = nullptr;
};
