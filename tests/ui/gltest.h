// A real OpenGL window for pixel tests (SDL's offscreen driver through the headless backend), and an application
// with a main window for the window layer. The GL driver keeps allocations for the life of the process, so leak
// checking is paused while a GL window exists; llvmpipe renders on the calling thread (LP_NUM_THREADS=0) so that
// the pause covers all its work.
#pragma once

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#define GLTEST_LSAN_DISABLE() __lsan_disable()
#define GLTEST_LSAN_ENABLE() __lsan_enable()
#else
#define GLTEST_LSAN_DISABLE()
#define GLTEST_LSAN_ENABLE()
#endif

#include "platform/headless/qpscript.h"
#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qplatform.h"
#include "ui/qwindow.h"
#include "ui/qwinmgr.h"

struct Rgba {
  int r, g, b, a;
};

inline Rgba GLTestPixel(int x, int y, int h) {
  unsigned char p[4] = {};
  glFinish();
  glReadBuffer(GL_BACK);
  glReadPixels(x, h - 1 - y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
  return {p[0], p[1], p[2], p[3]};
}

class GLTest : public ::testing::Test {
 protected:
  static constexpr int W = 320, H = 240;
  void SetUp() override {
    setenv("LP_NUM_THREADS", "0", 0);
    GLTEST_LSAN_DISABLE();
    ASSERT_TRUE(qpOpenDisplay()) << qpLastError();
    win = qpCreateWindow("pixels", 0, 0, W, H, 0);
    ASSERT_NE(win, nullptr) << qpLastError();
    qpMakeCurrent(win);
    cv.SetTargetSize(W, H);
    cv.Select();
    cv.SetColor(QCANVAS_PX_BLACK);
    cv.Clear();
  }
  void TearDown() override {
    qpDestroyWindow(win);
    GLTEST_LSAN_ENABLE();
  }
  Rgba Pixel(int x, int y) { return GLTestPixel(x, y, H); }
  static bool Near(Rgba p, int r, int g, int b, int tol = 2) {
    return std::abs(p.r - r) <= tol && std::abs(p.g - g) <= tol && std::abs(p.b - b) <= tol;
  }
  QPWindow *win = nullptr;
  QCanvas cv;
};

#define EXPECT_PIXEL(px, R, G, B, tol)                                \
  do {                                                                \
    Rgba got_ = (px);                                                 \
    EXPECT_TRUE(GLTest::Near(got_, R, G, B, tol))                     \
        << "got " << got_.r << "," << got_.g << "," << got_.b;        \
  } while (0)

// Windows made in the test are deleted afterwards; Seen() holds the control
// events (click, change) the program saw.
class MainWindowTest : public ::testing::Test {
 protected:
  static constexpr int W = 320, H = 240;
  void SetUp() override {
    setenv("LP_NUM_THREADS", "0", 0);
    GLTEST_LSAN_DISABLE();
    qpsClear();
    Seen().clear();
    a = new QApp(0, nullptr, "wintest");
    main = new QWindow(a->GetRoot(), 0, 0, W, H);
    main->MakeRealX();
    ASSERT_TRUE(main->Create());
    a->SetMainWindow(main, main->GetPlatformWindow());
    a->SetEventProc([](QEvent *ev) {
      if (ev->type == QEVENT_CLICK || ev->type == QEVENT_CHANGE) Seen().push_back(*ev);
      return false;
    });
    wm = QGetWindowManager();
    ASSERT_NE(wm, nullptr);
  }
  void TearDown() override {
    for (auto it = owned.rbegin(); it != owned.rend(); ++it) delete *it;
    delete main;
    delete a;
    qpsClear();
    GLTEST_LSAN_ENABLE();
  }
  template <class T>
  T *Make(T *w) {
    EXPECT_TRUE(w->Create());
    owned.push_back(w);
    return w;
  }
  void Drain() {
    while (a->Run1() != 2) {
    }
  }
  static std::vector<QEvent> &Seen() {
    static std::vector<QEvent> seen;
    return seen;
  }
  QApp *a = nullptr;
  QWindow *main = nullptr;
  QWindowManager *wm = nullptr;
  std::vector<QWindow *> owned;
};
