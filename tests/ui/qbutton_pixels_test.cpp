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
