// QCanvas: palette codes, the coordinate rule and primitives, checked on
// real pixels read back from an offscreen OpenGL window.
#include <gtest/gtest.h>

#include "tests/ui/capture.h"
#include "tests/ui/gltest.h"
#include "ui/qcanvas.h"

namespace {

struct PaletteRow {
  unsigned code;
  int alpha;
  int r, g, b, a;
  int blend;  // blend mode afterwards (starting from off)
};

const PaletteRow PALETTE_ROWS[] = {
    {0, -1, 255, 255, 255, 255, 0},  {1, -1, 0, 0, 0, 255, 0},       {2, -1, 224, 224, 224, 255, 0},
    {3, -1, 212, 208, 200, 255, 0},  {4, -1, 128, 128, 128, 255, 0}, {5, -1, 255, 0, 0, 255, 0},
    {5, 10, 255, 0, 0, 255, 0},      // alpha ignored
    {6, -1, 39, 73, 78, 255, 0},     {6, 40, 39, 73, 78, 40, 0},     {7, -1, 68, 126, 142, 128, 1},
    {7, 255, 68, 126, 142, 255, 1},  {8, -1, 83, 153, 165, 255, 0},  {9, -1, 110, 208, 221, 255, 0},
    {10, -1, 139, 201, 219, 255, 0}, {11, -1, 255, 255, 255, 255, 1}, {11, 64, 255, 255, 255, 64, 1},
    {12, -1, 0, 255, 0, 255, 0},     {99, 7, 0, 255, 0, 255, 0},     // unknown: visible green
};

TEST(QCanvasState, PaletteCodes) {
  for (const PaletteRow &r : PALETTE_ROWS) {
    QCanvas c;
    c.SetColor(r.code, r.alpha);
    QColor got = c.GetColor();
    EXPECT_EQ(got, QColor(r.r, r.g, r.b, r.a)) << "code " << r.code << " alpha " << r.alpha;
    EXPECT_EQ(c.GetBlending(), r.blend) << "code " << r.code;
  }
}

TEST(QCanvasState, UnknownCodeWarns) {
  ReportCapture rc;
  QCanvas c;
  c.SetColor(12u);
  ASSERT_EQ(rc.warnings.size(), 1u);
  EXPECT_EQ(rc.warnings[0], "QCanvas::SetColor(12) unknown PX_xxx\n");
}

TEST(QCanvasState, ReportsOfUnsupportedCalls) {
  ReportCapture rc;
  QCanvas c;
  c.Text("x", 0, 0);
  c.Text3D("x", 0, 0, 0);
  c.Shade(QRect(0, 0, 1, 1));
  c.SetMode(QCANVAS_MODE_X);
  c.Line(0, 0, 1, 1);
  c.Blit(0, 0, 1, 1, 2, 2);
  c.Outline(QRect(0, 0, 4, 4));
  const char *expect[] = {"QCanvas:Text(); no font selected\n", "QCanvas:Text3D(); no font selected\n",
                          "QCanvas::Shade obsolete call\n", "Canvas:Line not supported for X\n",
                          "QCanvas::Blit() not implemented for USEX\n", "QCanvas:Outline not support for ISX\n"};
  ASSERT_EQ(rc.warnings.size(), 6u);
  for (int i = 0; i < 6; i++) EXPECT_EQ(rc.warnings[size_t(i)], expect[i]);
  EXPECT_EQ(c.GetColor(), QColor(139, 201, 219, 255));  // Outline still sets its colour
}

TEST(QCanvasState, PackedColourUnpacksRedFirst) {
  QCanvas c;
  c.SetColor(QColor(0x11223344u));
  EXPECT_EQ(c.GetColor().GetR(), 0x11);
  EXPECT_EQ(c.GetColor().GetG(), 0x22);
  EXPECT_EQ(c.GetColor().GetB(), 0x33);
  EXPECT_EQ(c.GetColor().GetA(), 0x44);
}

TEST(QCanvasState, CoordinateRule) {
  QCanvas c;
  c.SetTargetSize(640, 480);
  EXPECT_EQ(c.MapX(0), 0);
  EXPECT_EQ(c.MapY(0), 479);
  c.SetOffset(10, 20);
  EXPECT_EQ(c.MapX(5), 15);
  EXPECT_EQ(c.MapY(5), 480 - 25 - 1);
}

TEST(QCanvasState, TextMlRefusesOversizedText) {
  ReportCapture rc;
  QCanvas c;  // no font: the refusal comes before any drawing
  std::string big(QCanvas::TEXTML_BUFFER, 'x');
  c.TextML(big.c_str(), 0, 0);
  ASSERT_EQ(rc.warnings.size(), 1u);
  EXPECT_EQ(rc.warnings[0], "QCanvas::TextML(); text>temp buffer\n");
}

using QCanvasPixels = GLTest;

TEST_F(QCanvasPixels, OpaquePaletteColours) {
  for (unsigned code = 0; code < 12; code++) {
    cv.SetBlending(QCANVAS_BLEND_OFF);
    cv.SetColor(code, 255);
    cv.SetBlending(QCANVAS_BLEND_OFF);
    cv.Rectfill(int(code) * 20, 0, 20, 20);
    const PaletteRow *row = nullptr;
    for (const PaletteRow &r : PALETTE_ROWS)
      if (r.code == code && (r.alpha == -1 || r.alpha == 255)) row = &r;
    ASSERT_NE(row, nullptr);
    EXPECT_PIXEL(Pixel(int(code) * 20 + 10, 10), row->r, row->g, row->b, 1);
  }
}

TEST_F(QCanvasPixels, TranslucentTealBlendsOverBlack) {
  cv.SetColor(QCANVAS_PX_TEAL_ALPHA);  // alpha 128, blending on
  cv.Rectfill(0, 0, 10, 10);
  EXPECT_PIXEL(Pixel(5, 5), 68 * 128 / 255, 126 * 128 / 255, 142 * 128 / 255, 2);
}

TEST_F(QCanvasPixels, UnknownCodeDrawsGreen) {
  cv.SetColor(12u);
  cv.Rectfill(0, 0, 4, 4);
  EXPECT_PIXEL(Pixel(1, 1), 0, 255, 0, 0);
}

TEST_F(QCanvasPixels, YAxisPointsDown) {
  cv.SetColor(QCANVAS_PX_WHITE);
  cv.Point(0, 0);
  EXPECT_PIXEL(Pixel(0, 0), 255, 255, 255, 0);
  unsigned char p[4];
  glReadPixels(0, H - 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);  // OpenGL row H-1 is the top
  EXPECT_EQ(p[0], 255);
  EXPECT_PIXEL(Pixel(0, 1), 0, 0, 0, 0);
  EXPECT_PIXEL(Pixel(1, 0), 0, 0, 0, 0);
}

TEST_F(QCanvasPixels, RectfillCoversExactlyItsPixels) {
  cv.SetColor(QCANVAS_PX_RED);
  cv.Rectfill(10, 20, 5, 3);
  EXPECT_PIXEL(Pixel(10, 20), 255, 0, 0, 0);
  EXPECT_PIXEL(Pixel(14, 22), 255, 0, 0, 0);
  EXPECT_PIXEL(Pixel(9, 20), 0, 0, 0, 0);
  EXPECT_PIXEL(Pixel(15, 20), 0, 0, 0, 0);
  EXPECT_PIXEL(Pixel(10, 19), 0, 0, 0, 0);
  EXPECT_PIXEL(Pixel(10, 23), 0, 0, 0, 0);
}

TEST_F(QCanvasPixels, OffsetMovesEverything) {
  cv.SetOffset(100, 50);
  cv.SetColor(QCANVAS_PX_WHITE);
  cv.Point(3, 4);
  cv.SetOffset(0, 0);
  EXPECT_PIXEL(Pixel(103, 54), 255, 255, 255, 0);
}

TEST_F(QCanvasPixels, OutlineAlwaysUsesPaleBlue) {
  cv.SetColor(QCANVAS_PX_RED);
  cv.Outline(QRect(20, 20, 30, 10));
  EXPECT_EQ(cv.GetColor(), QColor(139, 201, 219, 255));  // and it stays current
  EXPECT_PIXEL(Pixel(20, 20), 139, 201, 219, 0);
  EXPECT_PIXEL(Pixel(49, 29), 139, 201, 219, 0);
  EXPECT_PIXEL(Pixel(35, 25), 0, 0, 0, 0);  // a frame, not a fill
  cv.SetColor(QCANVAS_PX_BLACK);
  cv.Inline(QRect(60, 20, 10, 10));
  EXPECT_PIXEL(Pixel(60, 25), 139, 201, 219, 0);
}

TEST_F(QCanvasPixels, LineShadesBetweenEndColours) {
  QColor red(255, 0, 0), blue(0, 0, 255);
  cv.SetColor(QCANVAS_PX_WHITE);
  cv.Line(0, 10, 200, 10, &red, &blue);
  EXPECT_PIXEL(Pixel(0, 10), 255, 0, 0, 3);
  EXPECT_PIXEL(Pixel(100, 10), 128, 0, 128, 4);
  EXPECT_PIXEL(Pixel(200, 10), 0, 0, 255, 3);  // the last pixel is drawn too
  // Without end colours the current colour is used throughout.
  cv.Line(0, 30, 50, 30);
  EXPECT_PIXEL(Pixel(25, 30), 255, 255, 255, 0);
  EXPECT_PIXEL(Pixel(25, 31), 0, 0, 0, 0);
}

TEST_F(QCanvasPixels, TriangleFillsItsBox) {
  cv.SetColor(QCANVAS_PX_WHITE);
  // The play-symbol triangle of a 40x20 button at (0, 0): box (10, 5) 20x10.
  cv.Triangle(10, 5, 30, 10, 10, 15);
  EXPECT_PIXEL(Pixel(12, 10), 255, 255, 255, 0);
  EXPECT_PIXEL(Pixel(28, 6), 0, 0, 0, 0);
  EXPECT_PIXEL(Pixel(9, 10), 0, 0, 0, 0);
}

TEST_F(QCanvasPixels, OpenGLChecksReportAfterPrimitives) {
  while (glGetError() != GL_NO_ERROR) {
  }
  unsigned saved = qGetDevFlags();
  ReportCapture rc;
  glEnable(0xFFFF);  // an error left behind by someone
  cv.Rectfill(0, 0, 2, 2);  // checks off: nothing said
  EXPECT_TRUE(rc.errors.empty());
  qSetDevFlags(saved | QDEV_OPENGL_CHECKS);
  glEnable(0xFFFF);
  cv.Rectfill(0, 0, 2, 2);
  qSetDevFlags(saved);
  ASSERT_EQ(rc.errors.size(), 1u);
  EXPECT_EQ(rc.errors[0].rfind("QCanvas::Rectfill: OpenGL error (1280): ", 0), 0u) << rc.errors[0];
  while (glGetError() != GL_NO_ERROR) {
  }
}

TEST_F(QCanvasPixels, DrawPixelsTopRowFirst) {
  unsigned char img[2 * 2 * 4] = {255, 0, 0, 255, 0, 255, 0, 255,  // top: red, green
                                  0, 0, 255, 255, 255, 255, 255, 255};
  cv.DrawPixels(img, 2, 2, 40, 40);
  EXPECT_PIXEL(Pixel(40, 40), 255, 0, 0, 0);
  EXPECT_PIXEL(Pixel(41, 40), 0, 255, 0, 0);
  EXPECT_PIXEL(Pixel(40, 41), 0, 0, 255, 0);
}

}  // namespace
