// A button's symbol triangle, face and focus ring through the offscreen
// backend, and the symbol geometry per direction.
#include <gtest/gtest.h>

#include "gltest.h"
#include "ui/qbutton.h"

namespace {

class QButtonPixels : public GLTest {};

TEST_F(QButtonPixels, RightArrowOnIdleFace) {
  QButton b(QRect(40, 40, 60, 40));  // symbol: (60,50) (60,70) (80,60)
  QButtonDraw(cv, b, nullptr, QButtonSymbol::Right, false);
  Rgba face = Pixel(45, 45);
  EXPECT_FALSE(Near(face, 255, 255, 255, 30)) << "the face must not look like the symbol";
  EXPECT_PIXEL(Pixel(64, 60), 255, 255, 255, 2);    // inside, near the base
  EXPECT_PIXEL(Pixel(76, 60), 255, 255, 255, 2);    // inside, near the tip
  EXPECT_PIXEL(Pixel(78, 52), face.r, face.g, face.b, 2);  // beside the tip: face
  EXPECT_PIXEL(Pixel(57, 60), face.r, face.g, face.b, 2);  // left of the base: face
  EXPECT_PIXEL(Pixel(30, 60), 0, 0, 0, 0);          // outside the button
}

TEST_F(QButtonPixels, PressedFaceDiffersAndFocusRingShows) {
  QButton b(QRect(40, 40, 60, 40));
  QButtonDraw(cv, b, nullptr, QButtonSymbol::None, false);
  Rgba idle = Pixel(42, 42);
  QEvent press;
  press.type = QEVENT_BUTTONPRESS;
  press.n = QMB_LEFT;
  press.x = 50;
  press.y = 50;
  b.Feed(press);
  QButtonDraw(cv, b, nullptr, QButtonSymbol::None, true);
  Rgba pressed = Pixel(45, 45);
  EXPECT_FALSE(Near(pressed, idle.r, idle.g, idle.b, 10)) << "pressed face looks idle";
  EXPECT_PIXEL(Pixel(42, 60), 255, 255, 255, 2);  // the focus ring, two pixels in
}

TEST(QButtonSymbol, TrianglesPointTheirWay) {
  QRect r(0, 0, 40, 40);  // centre (20, 20), half extent 10
  struct Row {
    QButtonSymbol sym;
    int tip_x, tip_y;
  };
  const Row rows[] = {{QButtonSymbol::Left, 10, 20}, {QButtonSymbol::Right, 30, 20},
                      {QButtonSymbol::Up, 20, 10},   {QButtonSymbol::Down, 20, 30}};
  for (const Row &row : rows) {
    QTri t = QButtonSymbolTri(r, row.sym, false);
    EXPECT_EQ(t.x[2], row.tip_x);
    EXPECT_EQ(t.y[2], row.tip_y);
    QTri p = QButtonSymbolTri(r, row.sym, true);
    for (int i = 0; i < 3; i++) {
      EXPECT_EQ(p.x[i], t.x[i] + 1);
      EXPECT_EQ(p.y[i], t.y[i] + 1);
    }
  }
}

}  // namespace

#include "ui/qprop.h"

namespace {

class QSliderPixels : public GLTest {};

TEST_F(QSliderPixels, KnobSitsAtTheValue) {
  QSlider s(QRect(50, 100, 201, 12), 0.0f, 100.0f, 25.0f);  // value pixel 100
  QSliderDraw(cv, s, false);
  Rgba knob = Pixel(100, 106);
  Rgba fill = Pixel(70, 106);
  Rgba groove = Pixel(200, 106);
  EXPECT_FALSE(Near(knob, fill.r, fill.g, fill.b, 10));
  EXPECT_FALSE(Near(fill, groove.r, groove.g, groove.b, 10));
  EXPECT_PIXEL(Pixel(100, 99), knob.r, knob.g, knob.b, 1);  // the knob stands above the track
  EXPECT_PIXEL(Pixel(200, 99), 0, 0, 0, 0);                 // the groove does not
  QRect k = QSliderKnob(s);
  EXPECT_EQ(k.x, 96);
  EXPECT_EQ(k.wid, 8);
}

}  // namespace
