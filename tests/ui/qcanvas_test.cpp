// QCanvas and the OpenGL error helpers: palette codes, the coordinate rule and
// primitives, checked on real pixels read back from an offscreen OpenGL window.
#include <gtest/gtest.h>

#include "tests/ui/capture.h"
#include "tests/ui/gltest.h"
#include "ui/qcanvas.h"
#include "ui/qerror.h"

namespace {

TEST(QCanvasState, PaletteCodesAndPackedColour) {
  const struct {
    unsigned code;
    int alpha, r, g, b, a, blend;  // blend: the mode afterwards, starting from off
  } rows[] = {
      {0, -1, 255, 255, 255, 255, 0},  {1, -1, 0, 0, 0, 255, 0},        {2, -1, 224, 224, 224, 255, 0},
      {3, -1, 212, 208, 200, 255, 0},  {4, -1, 128, 128, 128, 255, 0},  {5, -1, 255, 0, 0, 255, 0},
      {5, 10, 255, 0, 0, 255, 0},  // alpha ignored
      {6, -1, 39, 73, 78, 255, 0},     {6, 40, 39, 73, 78, 40, 0},      {7, -1, 68, 126, 142, 128, 1},
      {7, 255, 68, 126, 142, 255, 1},  {8, -1, 83, 153, 165, 255, 0},   {9, -1, 110, 208, 221, 255, 0},
      {10, -1, 139, 201, 219, 255, 0}, {11, -1, 255, 255, 255, 255, 1}, {11, 64, 255, 255, 255, 64, 1},
      {12, -1, 0, 255, 0, 255, 0},     {99, 7, 0, 255, 0, 255, 0},  // unknown: visible green
  };
  for (const auto &r : rows) {
    QCanvas c;
    c.SetColor(r.code, r.alpha);
    EXPECT_EQ(c.GetColor(), QColor(r.r, r.g, r.b, r.a)) << "code " << r.code << " alpha " << r.alpha;
    EXPECT_EQ(c.GetBlending(), r.blend) << "code " << r.code;
  }
  QCanvas c;
  c.SetColor(QColor(0x11223344u));  // red first
  EXPECT_EQ(c.GetColor(), QColor(0x11, 0x22, 0x33, 0x44));
}

TEST(QCanvasState, ReportsOfUnknownCodesAndUnsupportedCalls) {
  ReportCapture rc;
  QCanvas c;  // no font
  c.SetColor(12u);
  c.Text("x", 0, 0);
  c.Text3D("x", 0, 0, 0);
  c.Shade(QRect(0, 0, 1, 1));
  c.SetMode(QCANVAS_MODE_X);
  c.Line(0, 0, 1, 1);
  c.Blit(0, 0, 1, 1, 2, 2);
  c.Outline(QRect(0, 0, 4, 4));
  c.TextML(std::string(QCanvas::TEXTML_BUFFER, 'x').c_str(), 0, 0);
  EXPECT_EQ(rc.warnings, (std::vector<std::string>{
                             "QCanvas::SetColor(12) unknown PX_xxx\n", "QCanvas:Text(); no font selected\n",
                             "QCanvas:Text3D(); no font selected\n", "QCanvas::Shade obsolete call\n",
                             "Canvas:Line not supported for X\n", "QCanvas::Blit() not implemented for USEX\n",
                             "QCanvas:Outline not support for ISX\n", "QCanvas::TextML(); text>temp buffer\n"}));
  EXPECT_EQ(c.GetColor(), QColor(139, 201, 219, 255));  // Outline still sets its colour
}

using QCanvasPixels = GLTest;

TEST_F(QCanvasPixels, YAxisPointsDownAndPrimitivesCoverExactlyTheirPixels) {
  cv.SetColor(QCANVAS_PX_WHITE);
  cv.Point(0, 0);
  unsigned char p[4];
  glReadPixels(0, H - 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);  // OpenGL row H-1 is the top
  EXPECT_EQ(p[0], 255);
  EXPECT_PIXEL(Pixel(0, 1), 0, 0, 0, 0);
  EXPECT_PIXEL(Pixel(1, 0), 0, 0, 0, 0);
  cv.SetColor(QCANVAS_PX_RED);
  cv.SetOffset(5, 10);
  cv.Rectfill(5, 10, 5, 3);
  cv.SetOffset(0, 0);
  for (auto [x, y] : {std::pair{10, 20}, {14, 22}}) EXPECT_PIXEL(Pixel(x, y), 255, 0, 0, 0);
  for (auto [x, y] : {std::pair{9, 20}, {15, 20}, {10, 19}, {10, 23}}) EXPECT_PIXEL(Pixel(x, y), 0, 0, 0, 0);
  unsigned char img[2 * 2 * 4] = {255, 0, 0, 255, 0, 255, 0, 255,  // top row: red, green
                                  0, 0, 255, 255, 255, 255, 255, 255};
  cv.DrawPixels(img, 2, 2, 40, 40);
  EXPECT_PIXEL(Pixel(41, 40), 0, 255, 0, 0);
  EXPECT_PIXEL(Pixel(40, 41), 0, 0, 255, 0);
  cv.Outline(QRect(20, 20, 30, 10));  // always pale blue
  EXPECT_PIXEL(Pixel(20, 20), 139, 201, 219, 0);
  EXPECT_PIXEL(Pixel(49, 29), 139, 201, 219, 0);
  EXPECT_PIXEL(Pixel(35, 25), 0, 0, 0, 0);  // a frame, not a fill
  QColor red(255, 0, 0), blue(0, 0, 255);
  cv.Line(0, 10, 200, 10, &red, &blue);
  EXPECT_PIXEL(Pixel(100, 10), 128, 0, 128, 4);
  EXPECT_PIXEL(Pixel(200, 10), 0, 0, 255, 3);  // the last pixel is drawn too
  EXPECT_PIXEL(Pixel(100, 11), 0, 0, 0, 0);
  cv.SetColor(QCANVAS_PX_TEAL_ALPHA);  // alpha 128, blending on, over black
  cv.Rectfill(0, 30, 10, 10);
  EXPECT_PIXEL(Pixel(5, 35), 68 * 128 / 255, 126 * 128 / 255, 142 * 128 / 255, 2);
}

TEST_F(QCanvasPixels, OpenGLErrorsAreReportedAndCleared) {
  while (glGetError() != GL_NO_ERROR) {
  }
  glEnable(0xFFFF);  // GL_INVALID_ENUM
  EXPECT_EQ(QShowGLErrors("bad enum"), 1);
  EXPECT_EQ(QShowGLErrors("again"), 0);
  unsigned saved = qGetDevFlags();
  ReportCapture rc;
  glEnable(0xFFFF);
  cv.Rectfill(0, 0, 2, 2);  // checks off: nothing said
  EXPECT_TRUE(rc.errors.empty());
  qSetDevFlags(saved | QDEV_OPENGL_CHECKS);
  glEnable(0xFFFF);
  cv.Rectfill(0, 0, 2, 2);
  qSetDevFlags(saved);
  ASSERT_EQ(rc.errors.size(), 1u);
  EXPECT_EQ(rc.errors[0].rfind("QCanvas::Rectfill: OpenGL error (1280): ", 0), 0u) << rc.errors[0];
  EXPECT_TRUE(QCatchGLErrors());  // llvmpipe offers the debug output extension
  glEnable(0xFFFF);
  QShowGLErrors("after callback");
  QGLErrorCallback(0x824A, 0x824C, 131218, 0x9146, 0, "ignored", nullptr);  // reports, never crashes
  QGLState::DbgPrint("test");  // the state dump leaves no error behind
  EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

}  // namespace
