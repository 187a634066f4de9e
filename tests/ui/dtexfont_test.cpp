// Texture fonts: reading .dtf descriptions, glyph ranges, the generator, and
// text drawn from the committed UI font compared with its glyph image.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
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
    QImage img(32, 32);
    for (int i = 0; i < 32 * 32 * 4; i++) img.GetPixels()[i] = 255;
    tga = img;
  }
  void TearDown() override { std::filesystem::remove_all(dir); }
  // Writes <name>.dtf with the given text and a 32x32 image beside it.
  std::string Write(const char *name, const char *dtf, bool withImage = true) {
    std::string base = (dir / name).string();
    FILE *f = fopen((base + ".dtf").c_str(), "wb");
    fputs(dtf, f);
    fclose(f);
    if (withImage) QTgaWrite((base + ".tga").c_str(), tga, QTGA_RGBA, false);
    return base;
  }
  std::filesystem::path dir;
  QImage tga;
};

TEST_F(FontFiles, CommittedUiFontLoads) {
  DTexFont f;
  ASSERT_TRUE(f.Load(UI_FONT.c_str()));
  EXPECT_EQ(f.GetMinChar(), 32);
  EXPECT_EQ(f.GetMaxChar(), 255);
  EXPECT_EQ(f.GetVersion(), 2);
  EXPECT_EQ(f.GetRangeCount(), 1);
  EXPECT_EQ(f.GetHeight(), 15);
  const DTexFontGlyph *a = f.FindGlyph('A');
  ASSERT_NE(a, nullptr);
  EXPECT_GT(a->wid, 5);
  EXPECT_GT(a->advance, 5.0f);
  EXPECT_FLOAT_EQ(a->u0, float(a->x) / 256.0f);
  EXPECT_FLOAT_EQ(a->v1, float(a->y + a->hgt) / 256.0f);
  EXPECT_EQ(f.FindGlyph(20), nullptr);
}

TEST_F(FontFiles, VersionDefaultsToTwoAndAdvanceToWidth) {
  std::string base = Write("v", "general\n{\n  minchar=65\n  maxchar=66\n}\n"
                                "chars\n{\n  char65\n  {\n    x=1\n    y=2\n    wid=5\n    hgt=9\n"
                                "    advance=7.5\n    bearingx=1\n  }\n"
                                "  char66\n  {\n    x=8\n    y=2\n    wid=6\n    hgt=9\n  }\n}\n");
  DTexFont f;
  ASSERT_TRUE(f.Load(base.c_str()));
  EXPECT_EQ(f.GetVersion(), 2);
  ASSERT_NE(f.FindGlyph('A'), nullptr);
  EXPECT_FLOAT_EQ(f.FindGlyph('A')->advance, 7.5f);
  EXPECT_FLOAT_EQ(f.FindGlyph('A')->bearingx, 1.0f);
  EXPECT_FLOAT_EQ(f.FindGlyph('B')->advance, 6.0f);  // default: the width
  EXPECT_FLOAT_EQ(f.GetWidth("AB"), 13.5f);
}

TEST_F(FontFiles, VersionOneIgnoresAdvance) {
  std::string base = Write("v1", "general\n{\n  minchar=65\n  maxchar=65\n  version=1\n}\n"
                                 "chars\n{\n  char65\n  {\n    x=1\n    wid=5\n    hgt=9\n    advance=7.5\n  }\n}\n");
  DTexFont f;
  ASSERT_TRUE(f.Load(base.c_str()));
  EXPECT_FLOAT_EQ(f.FindGlyph('A')->advance, 5.0f);
}

TEST_F(FontFiles, GlyphWithoutXIsSkippedAndGapsMakeRanges) {
  std::string base = Write("gap", "general\n{\n  minchar=65\n  maxchar=70\n}\n"
                                  "chars\n{\n"
                                  "  char65\n  {\n    x=0\n    wid=2\n    hgt=4\n  }\n"
                                  "  char66\n  {\n    x=3\n    wid=2\n    hgt=4\n  }\n"
                                  "  char67\n  {\n    wid=2\n    hgt=4\n  }\n"  // no x
                                  "  char68\n  {\n    x=6\n    wid=2\n    hgt=4\n  }\n"
                                  "  char70\n  {\n    x=9\n    wid=2\n    hgt=4\n  }\n}\n");
  DTexFont f;
  ReportCapture rc;
  ASSERT_TRUE(f.Load(base.c_str()));
  ASSERT_EQ(rc.warnings.size(), 1u);
  EXPECT_EQ(rc.warnings[0], "No X defined for texfont " + base + ", entry 2\n");
  EXPECT_EQ(f.FindGlyph('C'), nullptr);
  EXPECT_NE(f.FindGlyph('D'), nullptr);
  ASSERT_EQ(f.GetRangeCount(), 3);  // A-B, D, F
  EXPECT_EQ(f.GetRange(0).first, 65);
  EXPECT_EQ(f.GetRange(0).last, 66);
  EXPECT_EQ(f.GetRange(1).first, 68);
  EXPECT_EQ(f.GetRange(2).first, 70);
  EXPECT_EQ(f.FindGlyph('F')->x, 9);
}

TEST_F(FontFiles, OutlineFontReadsOutlineRectangles) {
  std::string base = Write("ol", "general\n{\n  minchar=65\n  maxchar=65\n  outline=1\n}\n"
                                 "chars\n{\n  char65\n  {\n    x=0\n    wid=4\n    hgt=8\n"
                                 "    outline\n    {\n      x=2\n      y=3\n      wid=6\n      hgt=10\n    }\n  }\n}\n");
  DTexFont f;
  EXPECT_FALSE(f.Load(base.c_str()));  // no outline image yet
  QTgaWrite((base + "_outline.tga").c_str(), tga, QTGA_RGBA, true);
  ASSERT_TRUE(f.Load(base.c_str()));
  const DTexFontGlyph *g = f.FindGlyph('A');
  EXPECT_EQ(g->ox, 2);
  EXPECT_EQ(g->oy, 3);
  EXPECT_EQ(g->owid, 6);
  EXPECT_EQ(g->ohgt, 10);
  EXPECT_FLOAT_EQ(g->ou1, 8.0f / 32.0f);
}

TEST_F(FontFiles, MissingFilesFail) {
  DTexFont f;
  {
    ReportCapture rc;
    EXPECT_FALSE(f.Load((dir / "nothing").c_str()));
    ASSERT_EQ(rc.warnings.size(), 1u);
    EXPECT_EQ(rc.warnings[0], "DTexFont:Load(" + (dir / "nothing").string() + ") failed\n");
  }
  std::string base = Write("noimg", "general\n{\n  minchar=65\n  maxchar=65\n}\n", false);
  EXPECT_FALSE(f.Load(base.c_str()));
  QFont qf((dir / "nothing").c_str());
  EXPECT_FALSE(qf.Create());
  EXPECT_FALSE(qf.IsCreated());
}

TEST_F(FontFiles, SixRangesEndTheProgram) {
  std::string text = "general\n{\n  minchar=60\n  maxchar=80\n}\nchars\n{\n";
  for (int code = 60; code <= 70; code += 2) text += "  char" + std::to_string(code) + "\n  {\n    x=0\n  }\n";
  text += "}\n";
  std::string base = Write("six", text.c_str());
  EXPECT_DEATH(
      {
        DTexFont f;
        f.Load(base.c_str());
      },
      "");
}

TEST_F(FontFiles, QFontCreatesOnce) {
  QFont f(UI_FONT.c_str());
  EXPECT_TRUE(f.Create());
  EXPECT_FALSE(f.Create());  // reported; the first font stays
  EXPECT_TRUE(f.IsCreated());
  EXPECT_EQ(f.GetHeight(), 15);
  EXPECT_GT(f.GetWidth("Hello"), 20);
}

TEST_F(FontFiles, CreateWritesALoadableFont) {
  std::string base = (dir / "made").string();
  DTexFont maker;
  ASSERT_TRUE(maker.Create("DejaVu Sans", 20, 'A', 'E', base.c_str(), 128, 64));
  DTexFont f;
  ASSERT_TRUE(f.Load(base.c_str()));
  EXPECT_EQ(f.GetRangeCount(), 1);
  EXPECT_EQ(f.GetRange(0).first, 'A');
  EXPECT_EQ(f.GetRange(0).last, 'E');
  EXPECT_EQ(f.GetImage().GetWidth(), 128);
  // Glyph cells do not overlap: each starts right of the previous one or on a new row.
  for (int c = 'B'; c <= 'E'; c++) {
    const DTexFontGlyph *p = f.FindGlyph(c - 1), *g = f.FindGlyph(c);
    EXPECT_TRUE(g->y > p->y || g->x >= p->x + p->wid) << char(c);
  }
}

TEST_F(FontFiles, CreateReportsTextureOverflow) {
  DTexFont maker;
  EXPECT_FALSE(maker.Create("DejaVu Sans", 30, 32, 126, (dir / "tiny").c_str(), 64, 64));
  EXPECT_FALSE(std::filesystem::exists(dir / "tiny.dtf"));
}

// ---- Text on pixels ---------------------------------------------------------------

class TextPixels : public GLTest {
 protected:
  void SetUp() override {
    GLTest::SetUp();
    ASSERT_TRUE(font.Create());
    cv.SetFont(&font);
  }
  QFont font{UI_FONT.c_str()};
};

// Every pixel of a drawn glyph equals the glyph image's coverage (white text on black).
TEST_F(TextPixels, GlyphMatchesItsImage) {
  cv.SetColor(QCANVAS_PX_WHITE);
  cv.Text("H", 10, 20);
  const DTexFont *tf = font.GetTexFont();
  const DTexFontGlyph *g = tf->FindGlyph('H');
  int left = 10 + int(g->bearingx);
  int worst = 0, lit = 0;
  for (int y = 0; y < g->hgt; y++) {
    for (int x = 0; x < g->wid; x++) {
      int cover = tf->GetImage().PixelAt(g->x + x, g->y + y)[3];
      Rgba p = Pixel(left + x, 20 + y);
      worst = std::max(worst, std::abs(p.r - cover));
      if (cover > 128) lit++;
    }
  }
  EXPECT_LE(worst, 2);
  EXPECT_GT(lit, 10);
  EXPECT_PIXEL(Pixel(left - 1, 20 + g->hgt / 2), 0, 0, 0, 0);
}

TEST_F(TextPixels, TextTakesTheCanvasColourAndOffset) {
  cv.SetColor(QCANVAS_PX_RED);
  cv.SetOffset(50, 40);
  cv.Text("IIII", 0, 0);
  cv.SetOffset(0, 0);
  int red = 0;
  for (int y = 40; y < 40 + 17; y++)
    for (int x = 50; x < 50 + 30; x++) {
      Rgba p = Pixel(x, y);
      if (p.r > 60 && p.g <= 1 && p.b <= 1) red++;  // red hue, any coverage
    }
  EXPECT_GT(red, 30);  // four stems of 2x10 pixels
}

TEST_F(TextPixels, TextMlDrawsAtMostTenLines) {
  cv.SetColor(QCANVAS_PX_WHITE);
  std::string lines;
  for (int i = 0; i < 11; i++) lines += (i ? "\n" : "") + std::string("IIIII");
  ReportCapture rc;
  cv.TextML(lines.c_str(), 5, 0);
  ASSERT_EQ(rc.warnings.size(), 1u);
  EXPECT_EQ(rc.warnings[0], "QCanvas::TextML() max #lines reached (10)\n");
  auto litInLine = [&](int line) {
    int lit = 0;
    for (int y = line * 15; y < line * 15 + 15; y++)  // the UI font's lines are 15 pixels
      for (int x = 5; x < 40; x++) lit += Pixel(x, y).r > 128;
    return lit;
  };
  EXPECT_GT(litInLine(0), 10);
  EXPECT_GT(litInLine(9), 10);
  EXPECT_EQ(litInLine(10), 0);
}

TEST_F(TextPixels, MissingGlyphIsReportedAndSkipped) {
  ReportCapture rc;
  cv.SetColor(QCANVAS_PX_WHITE);
  cv.Text("\x01I", 0, 0);
  ASSERT_EQ(rc.warnings.size(), 1u);
  EXPECT_EQ(rc.warnings[0], "DTexFont: can't find char 0x1\n");
  EXPECT_EQ(font.GetWidth("\x01"), 0);
}

TEST_F(TextPixels, TextWithoutFontDrawsNothing) {
  QCanvas bare;
  bare.SetTargetSize(W, H);
  bare.SetColor(QCANVAS_PX_WHITE);
  bare.Text("IIII", 0, 0);
  EXPECT_PIXEL(Pixel(2, 8), 0, 0, 0, 0);
  EXPECT_EQ(bare.GetTextWidth("IIII"), 0);
}

}  // namespace

namespace {

class FixedFontPixels : public GLTest {
 protected:
  void SetUp() override {
    GLTest::SetUp();
    ASSERT_TRUE(font.CreateFixed(8, 10));
    cv.SetFont(&font);
  }
  QFont font{"fixed"};
};

TEST_F(FixedFontPixels, BoxesAdvanceByTheCellWidth) {
  EXPECT_EQ(cv.GetTextWidth("abc"), 24);
  EXPECT_EQ(cv.GetTextHeight(), 10);
  EXPECT_FALSE(font.CreateFixed(8, 10));  // once only
  cv.SetColor(QCANVAS_PX_WHITE);
  cv.Text("ab", 4, 6);
  EXPECT_PIXEL(Pixel(4, 6), 255, 255, 255, 0);
  EXPECT_PIXEL(Pixel(10, 15), 255, 255, 255, 0);
  EXPECT_PIXEL(Pixel(11, 10), 0, 0, 0, 0);  // the gap between the cells
  EXPECT_PIXEL(Pixel(12, 10), 255, 255, 255, 0);
  EXPECT_PIXEL(Pixel(20, 10), 0, 0, 0, 0);
  EXPECT_PIXEL(Pixel(4, 16), 0, 0, 0, 0);
}

TEST_F(FixedFontPixels, TextMlStopsAtTenLines) {
  cv.SetColor(QCANVAS_PX_WHITE);
  std::string text;
  for (int i = 0; i < 11; i++) text += (i ? "\n" : "") + std::string("x");
  cv.TextML(text.c_str(), 0, 0);
  EXPECT_PIXEL(Pixel(2, 5), 255, 255, 255, 0);
  EXPECT_PIXEL(Pixel(2, 95), 255, 255, 255, 0);  // line 10
  EXPECT_PIXEL(Pixel(2, 105), 0, 0, 0, 0);       // line 11 is not drawn
}

}  // namespace
