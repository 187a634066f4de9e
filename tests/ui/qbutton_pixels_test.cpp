// Button symbols: their boxes and their shapes on real pixels.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "gltest.h"
#include "ui/qbutton.h"
#include "ui/qbutton_symbol.h"

namespace {

TEST(QButtonSymbolBox, HalfTheButtonCentredWithTheShiftAndNames) {
  const struct {
    int x, y, wid, hgt, shift;
    QRect box;
  } rows[] = {
      {100, 50, 40, 20, 0, QRect(110, 55, 20, 10)},
      {0, 0, 41, 21, 0, QRect(10, 5, 20, 10)},  // halves round towards zero
      {0, 0, 41, 21, 2, QRect(9, 4, 20, 10)},
      {0, 0, 109, 25, 0, QRect(27, 6, 54, 12)},
  };
  for (const auto &r : rows) {
    QRect b = QButtonSymbolBox(r.x, r.y, r.wid, r.hgt, r.shift);
    EXPECT_TRUE(b.x == r.box.x && b.y == r.box.y && b.wid == r.box.wid && b.hgt == r.box.hgt)
        << r.wid << "x" << r.hgt << " shift " << r.shift << ": " << b.x << "," << b.y << " " << b.wid << "x" << b.hgt;
  }
  EXPECT_EQ(QButtonSymbolFromText("$DOWN"), QButtonSymbol::Down);
  EXPECT_EQ(QButtonSymbolFromText("$play"), QButtonSymbol::None);
  EXPECT_EQ(QButtonSymbolFromText(nullptr), QButtonSymbol::None);
}

class QButtonPixels : public GLTest {
 protected:
  // Bounding box of the pixels of grey `g` inside `area`.
  QRect InkBox(const QRect &area, int g) {
    int x0 = 1 << 20, y0 = 1 << 20, x1 = -1, y1 = -1;
    for (int y = area.y; y < area.y + area.hgt; y++)
      for (int x = area.x; x < area.x + area.wid; x++)
        if (Near(Pixel(x, y), g, g, g, 3)) {
          x0 = std::min(x0, x);
          y0 = std::min(y0, y);
          x1 = std::max(x1, x);
          y1 = std::max(y1, y);
        }
    return x1 < 0 ? QRect() : QRect(x0, y0, x1 - x0 + 1, y1 - y0 + 1);
  }
};

// Box (20, 10) 40 x 20 of an 80 x 40 button; $PLAY's triangle fills it, its point at the right middle.
TEST_F(QButtonPixels, EverySymbolStaysInItsBoxAndPointsItsWay) {
  const struct {
    const char *text;
    int heavyX, heavyY;  // a pixel the shape covers
    int emptyX, emptyY;  // a pixel of the box it leaves empty
  } rows[] = {
      {"$PLAY", 21, 20, 58, 11},    {"$REVERSE", 58, 20, 21, 11}, {"$REWIND", 24, 20, 42, 11},
      {"$FORWARD", 58, 20, 38, 11}, {"$LEFT", 24, 20, 58, 11},    {"$RIGHT", 58, 20, 21, 11},
      {"$DOWN", 40, 28, 21, 11},
  };
  for (const auto &r : rows) {
    cv.SetColor(QCANVAS_PX_BLACK);
    cv.Clear();
    QButton b(nullptr, 0, 0, 80, 40, r.text);
    b.Paint(&cv);
    int g = b.GetShade();
    QRect ink = InkBox(QRect(0, 0, 80, 40), g);
    EXPECT_TRUE(ink.x >= 20 && ink.y >= 10 && ink.x + ink.wid <= 60 && ink.y + ink.hgt <= 30) << r.text;
    EXPECT_TRUE(Near(Pixel(r.heavyX, r.heavyY), g, g, g, 3)) << r.text;
    EXPECT_FALSE(Near(Pixel(r.emptyX, r.emptyY), g, g, g, 3)) << r.text;
    if (r.text != std::string("$PLAY")) continue;
    EXPECT_TRUE(ink.x == 20 && ink.y == 10 && ink.y + ink.hgt == 30 && ink.x + ink.wid >= 56);
    EXPECT_TRUE(Near(Pixel(52, 19), g, g, g, 3));  // near the point
    Rgba face = Pixel(40, 6);
    EXPECT_FALSE(Near(face, g, g, g, 60)) << "the symbol must stand out from the face";
    EXPECT_PIXEL(Pixel(52, 12), face.r, face.g, face.b, 3);  // above the slope
  }
}

}  // namespace
