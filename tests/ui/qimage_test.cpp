// TGA reader and writer: round trips in every format and damaged files that
// must fail cleanly.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "ui/qimage.h"

namespace {

std::string TempPath(const char *name) {
  return (std::filesystem::temp_directory_path() / (std::to_string(getpid()) + "_" + name)).string();
}

// Long runs, short runs and noise, so both RLE packet kinds occur.
QImage TestImage(int w, int h) {
  QImage img(w, h);
  std::mt19937 rng(7);
  for (int y = 0; y < h; y++)
    for (int x = 0; x < w; x++) {
      bool run = (y % 3) == 0 || x < w / 3;
      uint8_t *p = img.PixelAt(x, y), v = run ? uint8_t(y * 10) : uint8_t(rng());
      p[0] = v;
      p[1] = uint8_t(run ? 200 : rng());
      p[2] = uint8_t(x == w - 1 ? 255 : v / 2);
      p[3] = uint8_t(run ? 255 : rng());
    }
  return img;
}

TEST(QTga, RoundTripEveryFormatRawAndRle) {
  const int formats[] = {QTGA_RGBA, QTGA_RGB, QTGA_GREY};
  QImage src = TestImage(300, 7);  // rows longer than one 128-pixel packet
  std::string path = TempPath("round.tga");
  for (int format : formats)
    for (bool rle : {false, true}) {
      ASSERT_TRUE(QTgaWrite(path.c_str(), src, format, rle)) << format << rle;
      QImage back;
      ASSERT_TRUE(QTgaRead(path.c_str(), back)) << format << rle;
      ASSERT_EQ(back.GetWidth() * back.GetHeight(), 300 * 7);
      int mismatches = 0;
      for (int y = 0; y < 7; y++)
        for (int x = 0; x < 300; x++) {
          const uint8_t *a = src.PixelAt(x, y), *b = back.PixelAt(x, y);
          uint8_t expect[4] = {a[0], a[1], a[2], a[3]};
          if (format == QTGA_GREY) expect[1] = expect[2] = a[0];
          if (format != QTGA_RGBA) expect[3] = 255;
          mismatches += memcmp(expect, b, 4) != 0;
        }
      EXPECT_EQ(mismatches, 0) << format << rle;
    }
  ASSERT_TRUE(QTgaWrite(path.c_str(), QImage(64, 64), QTGA_RGBA, true));
  EXPECT_EQ(std::filesystem::file_size(path), 18u + 64u * 5u);  // one 64-pixel run per row
  std::filesystem::remove(path);
}

TEST(QTga, DamagedFilesFail) {
  QImage src = TestImage(20, 4);
  std::string path = TempPath("damaged.tga");
  ASSERT_TRUE(QTgaWrite(path.c_str(), src, QTGA_RGBA, true));
  std::ifstream in(path, std::ios::binary);
  std::vector<uint8_t> d((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::filesystem::remove(path);
  QImage img;
  EXPECT_FALSE(QTgaDecode(d.data(), d.size() - 5, "cut", img));  // truncated pixel data
  EXPECT_TRUE(img.IsEmpty());
  EXPECT_FALSE(QTgaDecode(d.data(), 10, "short", img));
  std::vector<uint8_t> over(d.begin(), d.begin() + 18);
  over[12] = 2;  // 2x1 image, then a run packet past its end
  over[14] = 1;
  over.insert(over.end(), {0x83, 1, 2, 3, 4});  // a run of 4 pixels
  EXPECT_FALSE(QTgaDecode(over.data(), over.size(), "overrun", img));
  std::vector<uint8_t> bad(d.begin(), d.end());
  bad[16] = 16;  // 16-bit and colour-mapped images are not supported
  EXPECT_FALSE(QTgaDecode(bad.data(), bad.size(), "16bit", img));
  bad[16] = 32;
  bad[2] = 1;
  EXPECT_FALSE(QTgaDecode(bad.data(), bad.size(), "mapped", img));
  EXPECT_FALSE(QTgaRead("/nonexistent/dir/x.tga", img));
  EXPECT_FALSE(QTgaWrite("/nonexistent/dir/x.tga", src));
}

}  // namespace
