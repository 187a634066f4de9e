// A real OpenGL window for pixel tests (SDL's offscreen driver through the
// headless backend) and a pixel reader in canvas coordinates.
//
// The GL driver keeps allocations of its own for the life of the process
// (some from generated code the leak checker cannot attribute), so leak
// checking is paused while a GL window exists: GLTEST_LSAN_DISABLE/ENABLE.
// llvmpipe is told to render on the calling thread (LP_NUM_THREADS=0) so
// that the pause covers all of its work.
#pragma once

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#define GLTEST_LSAN_DISABLE() __lsan_disable()
#define GLTEST_LSAN_ENABLE() __lsan_enable()
#else
#define GLTEST_LSAN_DISABLE()
#define GLTEST_LSAN_ENABLE()
#endif

#include "ui/qcanvas.h"
#include "ui/qplatform.h"

struct Rgba {
  int r, g, b, a;
};

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
  // The pixel at canvas (x, y) of the back buffer.
  Rgba Pixel(int x, int y) {
    unsigned char p[4] = {};
    glFinish();
    glReadBuffer(GL_BACK);
    glReadPixels(x, H - 1 - y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
    return {p[0], p[1], p[2], p[3]};
  }
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
