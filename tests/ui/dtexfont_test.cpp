// Texture fonts: reading .dtf descriptions, glyph ranges, the generator, and
// text drawn from the committed UI font compared with its glyph image.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/ui/capture.h"
#include "tests/ui/gltest.h"
#include "ui/dtexfont.h"
#include "ui/qfont.h"

namespace {

const std::string UI_FONT = std::string(TYRO_SOURCE_DIR) + "/data/fonts/eurostile11";

class FontFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    dir = std::filesystem::temp_directory_path() / ("tyro_fonts_" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
  }
  void TearDown() override { std::filesystem::remove_all(dir); }
  // Writes <name>.dtf holding `general` and `chars`, and a 32x32 image beside it.
  std::string Write(const char *name, const std::string &general, const std::string &chars, bool image = true) {
    std::string base = (dir / name).string();
    FILE *f = fopen((base + ".dtf").c_str(), "wb");
    fputs(("general\n{\n" + general + "}\nchars\n{\n" + chars + "}\n").c_str(), f);
    fclose(f);
    if (image) QTgaWrite((base + ".tga").c_str(), QImage(32, 32), QTGA_RGBA, false);
    return base;
  }
  std::filesystem::path dir;
};

TEST_F(FontFiles, GlyphFieldsAdvanceAndRangesWithGaps) {
  const std::string ab =
      "char65\n{\nx=1\ny=2\nwid=5\nhgt=9\nadvance=7.5\nbearingx=1\n}\nchar66\n{\nx=8\ny=2\nwid=6\nhgt=9\n}\n";
  std::string chars = ab;
  for (int code : {67, 68, 70})  // C has no x
    chars += "char" + std::to_string(code) + "\n{\n" + (code == 67 ? "" : "x=" + std::to_string(code - 65)) + "\n}\n";
  std::string base = Write("gap", "minchar=65\nmaxchar=70\n", chars);
  DTexFont f;
  ReportCapture rc;
  ASSERT_TRUE(f.Load(base.c_str()));
  EXPECT_EQ(rc.warnings, std::vector<std::string>{"No X defined for texfont " + base + ", entry 2\n"});
  EXPECT_EQ(f.GetVersion(), 2);
  EXPECT_FLOAT_EQ(f.FindGlyph('A')->bearingx, 1.0f);
  EXPECT_FLOAT_EQ(f.GetWidth("AB"), 13.5f);  // B advances by its width
  EXPECT_EQ(f.FindGlyph('C'), nullptr);
  ASSERT_EQ(f.GetRangeCount(), 3);  // A-B, D, F
  EXPECT_EQ(f.GetRange(0).last, 66);
  EXPECT_EQ(f.GetRange(1).first, 68);
  EXPECT_EQ(f.GetRange(2).first, 70);
  EXPECT_EQ(f.FindGlyph('F')->x, 5);
  DTexFont v1;
  ASSERT_TRUE(v1.Load(Write("v1", "minchar=65\nmaxchar=66\nversion=1\n", ab).c_str()));
  EXPECT_FLOAT_EQ(v1.FindGlyph('A')->advance, 5.0f);
}

TEST_F(FontFiles, MissingFilesFailAndSixRangesEndTheProgram) {
  DTexFont f;
  ReportCapture rc;
  EXPECT_FALSE(f.Load((dir / "nothing").c_str()));
  EXPECT_EQ(rc.warnings, std::vector<std::string>{"DTexFont:Load(" + (dir / "nothing").string() + ") failed\n"});
  EXPECT_FALSE(f.Load(Write("noimg", "minchar=65\nmaxchar=65\n", "", false).c_str()));
  QFont qf((dir / "nothing").c_str());
  EXPECT_FALSE(qf.Create());
  std::string six;
  for (int code = 60; code <= 70; code += 2) six += "char" + std::to_string(code) + "\n{\nx=0\n}\n";
  std::string base = Write("six", "minchar=60\nmaxchar=80\n", six);
  EXPECT_DEATH(DTexFont().Load(base.c_str()), "");
}

// How unlike two glyphs of a font look: the coverage that differs (in whole
// pixels) over the rows both glyphs ink, with their inked columns centred on
// each other. A glyph that differs from another only by being taller or wider
// counts as like it: that is what makes l and I one letter on screen.
double GlyphShapeDifference(const DTexFont &f, int a, int b) {
  struct Ink {
    const DTexFontGlyph *g;
    int left = 1 << 20, right = -1, top = 1 << 20, bottom = -1;
  };
  const auto ink = [&](int code) {
    Ink k{f.FindGlyph(code)};
    for (int y = 0; k.g && y < k.g->hgt; y++)
      for (int x = 0; x < k.g->wid; x++)
        if (f.GetImage().PixelAt(k.g->x + x, k.g->y + y)[3] >= 96) {
          k.left = std::min(k.left, x), k.right = std::max(k.right, x);
          k.top = std::min(k.top, y), k.bottom = std::max(k.bottom, y);
        }
    return k;
  };
  const Ink p = ink(a), q = ink(b);
  if (p.right < 0 || q.right < 0) return 0.0;
  const auto at = [&](const Ink &k, int x, int y) {
    return x < 0 || x >= k.g->wid ? 0 : f.GetImage().PixelAt(k.g->x + x, k.g->y + y)[3];
  };
  // q's column x lies under p's column x + shift.
  const int shift = (p.left + p.right - q.left - q.right) / 2;
  int diff = 0;
  for (int y = std::max(p.top, q.top); y <= std::min(p.bottom, q.bottom); y++)
    for (int x = std::min(p.left, q.left + shift) - 1; x <= std::max(p.right, q.right + shift) + 1; x++)
      diff += std::abs(at(p, x, y) - at(q, x - shift, y));
  return diff / 255.0;
}

// The letters a user copies from the screen into --set or a script: lower
// case l, capital I and the digit 1, zero and capital O differ in shape (a
// serif, a tail, a foot, a slash), not only in height. (A face whose l and I
// are both a plain stem scores under 2 here.)
TEST_F(FontFiles, CommittedUiFontTellsLookalikesApart) {
  DTexFont f;
  ASSERT_TRUE(f.Load(UI_FONT.c_str()));
  for (const char *pair : {"lI", "l1", "I1", "0O"})
    EXPECT_GT(GlyphShapeDifference(f, pair[0], pair[1]), 4.0) << pair[0] << " and " << pair[1];
}

class TextPixels : public GLTest {
 protected:
  void SetUp() override {
    GLTest::SetUp();
    ASSERT_TRUE(font.Create());
    cv.SetFont(&font);
    cv.SetColor(QCANVAS_PX_WHITE);
  }
  QFont font{UI_FONT.c_str()};
};

// Every pixel of a drawn glyph equals the glyph image's coverage (white text on black).
TEST_F(TextPixels, CommittedFontGlyphMatchesItsImage) {
  cv.Text("H", 10, 20);
  const DTexFont *tf = font.GetTexFont();
  const DTexFontGlyph *g = tf->FindGlyph('H');
  int left = 10 + int(g->bearingx);
  int worst = 0, lit = 0;
  for (int y = 0; y < g->hgt; y++) {
    for (int x = 0; x < g->wid; x++) {
      int cover = tf->GetImage().PixelAt(g->x + x, g->y + y)[3];
      worst = std::max(worst, std::abs(Pixel(left + x, 20 + y).r - cover));
      lit += cover > 128;
    }
  }
  EXPECT_LE(worst, 2);
  EXPECT_GT(lit, 10);
  EXPECT_PIXEL(Pixel(left - 1, 20 + g->hgt / 2), 0, 0, 0, 0);
}

TEST_F(TextPixels, TextMlDrawsAtMostTenLinesAndSkipsMissingGlyphs) {
  std::string lines;
  for (int i = 0; i < 11; i++) lines.append(i ? "\n" : "").append("I\x01IIII");
  ReportCapture rc;
  cv.TextML(lines.c_str(), 5, 0);
  ASSERT_EQ(rc.warnings.size(), 11u);  // before drawing, then one per line drawn
  EXPECT_EQ(rc.warnings[0], "QCanvas::TextML() max #lines reached (10)\n");
  EXPECT_EQ(rc.warnings[1], "DTexFont: can't find char 0x1\n");
  auto litInLine = [&](int line) {
    int lit = 0;
    for (int y = line * 15; y < line * 15 + 15; y++)  // the UI font's lines are 15 pixels
      for (int x = 5; x < 40; x++) lit += Pixel(x, y).r > 128;
    return lit;
  };
  EXPECT_GT(litInLine(0), 10);
  EXPECT_GT(litInLine(9), 10);
  EXPECT_EQ(litInLine(10), 0);
  EXPECT_EQ(font.GetWidth("\x01"), 0);
}

}  // namespace
