// QImage: an RGBA8 picture in memory (top row first) and its TGA files.
//
// TGA support covers what fonts and screenshots need: true-colour (types 2
// and 10, 24 or 32 bits) and grey (types 3 and 11, 8 bits), uncompressed
// and run-length encoded, either row order. Reading always gives RGBA.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class QImage {
 public:
  QImage() = default;
  QImage(int wid, int hgt) { Create(wid, hgt); }
  void Create(int wid, int hgt);
  int GetWidth() const { return wid; }
  int GetHeight() const { return hgt; }
  bool IsEmpty() const { return wid <= 0 || hgt <= 0; }
  uint8_t *GetPixels() { return pixels.data(); }
  const uint8_t *GetPixels() const { return pixels.data(); }
  uint8_t *PixelAt(int x, int y) { return &pixels[(size_t(y) * size_t(wid) + size_t(x)) * 4]; }
  const uint8_t *PixelAt(int x, int y) const {
    return &pixels[(size_t(y) * size_t(wid) + size_t(x)) * 4];
  }
  // Mirrors the rows (OpenGL reads bottom row first).
  void FlipVertical();

 private:
  int wid = 0, hgt = 0;
  std::vector<uint8_t> pixels;
};

// TGA output formats.
enum : int {
  QTGA_RGBA = 0,  // 32 bits, with alpha
  QTGA_RGB = 1,   // 24 bits
  QTGA_GREY = 2,  // 8 bits, the red channel
};

// Reads a TGA file; reports and returns false for a missing or malformed file.
bool QTgaRead(const char *path, QImage &img);
// Reads TGA data from memory; `name` is used in messages.
bool QTgaDecode(const uint8_t *data, size_t size, const char *name, QImage &img);
// Writes a TGA file (top-left origin), run-length encoded when `rle`.
bool QTgaWrite(const char *path, const QImage &img, int format = QTGA_RGBA, bool rle = false);

// Uploads `img` as a new RGBA texture of the current GL context and returns
// its name. Smooth: linear sampling and repeating edges (backgrounds);
// otherwise nearest sampling and clamped edges (glyphs on whole pixels).
// The texture stays bound.
unsigned QImageToTexture(const QImage &img, bool smooth);
