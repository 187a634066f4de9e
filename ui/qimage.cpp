// QImage, its TGA reader and writer, and its upload as a texture.
//
// Sections: [image] [tga header] [tga decode] [tga read] [tga encode/write],
// then the upload as a GL texture.
#include "ui/qimage.h"

#include <GL/gl.h>

#include <cstdio>
#include <cstring>

#include "diag/qdebug.h"

// ---- [image] ------------------------------------------------------------------------

void QImage::Create(int w, int h) {
  wid = w > 0 ? w : 0;
  hgt = h > 0 ? h : 0;
  pixels.assign(size_t(wid) * size_t(hgt) * 4, 0);
}

void QImage::FlipVertical() {
  size_t row = size_t(wid) * 4;
  std::vector<uint8_t> tmp(row);
  for (int y = 0; y < hgt / 2; y++) {
    uint8_t *a = &pixels[size_t(y) * row], *b = &pixels[size_t(hgt - 1 - y) * row];
    memcpy(tmp.data(), a, row);
    memcpy(a, b, row);
    memcpy(b, tmp.data(), row);
  }
}

// ---- [tga header] -----------------------------------------------------------------------
// 18 bytes: id length, colour-map type, image type, colour-map fields (5),
// x/y origin, width, height (little-endian 16 bits), bits per pixel,
// descriptor (bit 5: top-left origin, bits 0-3: alpha bits).

enum { TGA_HEADER = 18, TGA_TRUECOLOR = 2, TGA_GREY = 3, TGA_RLE = 8 };

static int Le16(const uint8_t *p) { return p[0] | (p[1] << 8); }

struct TgaInfo {
  int type, wid, hgt, bpp;
  bool topDown;
  size_t dataOffset;
};

static bool ParseHeader(const uint8_t *d, size_t size, const char *name, TgaInfo &t) {
  if (size < TGA_HEADER) {
    QWARN_IN("QTgaDecode", "TGA '%s': file too short for a header (%zu bytes)", name, size);
    return false;
  }
  t.type = d[2];
  t.wid = Le16(d + 12);
  t.hgt = Le16(d + 14);
  t.bpp = d[16];
  t.topDown = (d[17] & 0x20) != 0;
  t.dataOffset = TGA_HEADER + d[0] + (d[1] ? size_t(Le16(d + 5)) * size_t((d[7] + 7) / 8) : 0);
  int base = t.type & ~TGA_RLE;
  bool okType = (base == TGA_TRUECOLOR && (t.bpp == 24 || t.bpp == 32)) || (base == TGA_GREY && t.bpp == 8);
  if (!okType || d[1] != 0) {
    QWARN_IN("QTgaDecode", "TGA '%s': unsupported image type %d with %d bits", name,
          t.type, t.bpp);
    return false;
  }
  if (t.wid <= 0 || t.hgt <= 0) {
    QWARN_IN("QTgaDecode", "TGA '%s': empty image (%dx%d)", name, t.wid, t.hgt);
    return false;
  }
  return true;
}

// ---- [tga decode] -----------------------------------------------------------------------

// One file pixel (BGR[A] or grey) to RGBA.
static void StorePixel(const uint8_t *src, int bytes, uint8_t *dst) {
  if (bytes == 1) {
    dst[0] = dst[1] = dst[2] = src[0];
    dst[3] = 255;
    return;
  }
  dst[0] = src[2];
  dst[1] = src[1];
  dst[2] = src[0];
  dst[3] = bytes == 4 ? src[3] : 255;
}

// Decodes `count` pixels into `out` (RGBA, file order); false when the data runs out.
static bool DecodePixels(const uint8_t *d, size_t size, size_t pos, const TgaInfo &t, uint8_t *out,
                         size_t count) {
  int bytes = t.bpp / 8;
  bool rle = (t.type & TGA_RLE) != 0;
  size_t n = 0;
  while (n < count) {
    if (!rle) {
      if (pos + size_t(bytes) > size) return false;
      StorePixel(d + pos, bytes, out + n * 4);
      pos += size_t(bytes);
      n++;
      continue;
    }
    if (pos >= size) return false;
    int packet = d[pos++];
    size_t run = size_t(packet & 0x7F) + 1;
    if (n + run > count) return false;  // a packet may not run past the image
    bool repeat = (packet & 0x80) != 0;
    for (size_t i = 0; i < run; i++) {
      if (pos + size_t(bytes) > size) return false;
      StorePixel(d + pos, bytes, out + (n + i) * 4);
      if (!repeat) pos += size_t(bytes);
    }
    if (repeat) pos += size_t(bytes);
    n += run;
  }
  return true;
}

bool QTgaDecode(const uint8_t *data, size_t size, const char *name, QImage &img) {
  TgaInfo t;
  if (!ParseHeader(data, size, name, t)) return false;
  img.Create(t.wid, t.hgt);
  if (!DecodePixels(data, size, t.dataOffset, t, img.GetPixels(), size_t(t.wid) * size_t(t.hgt))) {
    QWARN("TGA '%s': pixel data is truncated or corrupt", name);
    img.Create(0, 0);
    return false;
  }
  if (!t.topDown) img.FlipVertical();
  return true;
}

// ---- [tga read] ------------------------------------------------------------------------

bool QTgaRead(const char *path, QImage &img) {
  FILE *f = fopen(path, "rb");
  if (!f) {
    QWARN("QTgaRead(%s); file not found", path);
    return false;
  }
  std::vector<uint8_t> buf;
  uint8_t chunk[65536];
  size_t got;
  while ((got = fread(chunk, 1, sizeof(chunk), f)) > 0) buf.insert(buf.end(), chunk, chunk + got);
  fclose(f);
  return QTgaDecode(buf.data(), buf.size(), path, img);
}

// ---- [tga encode/write] ------------------------------------------------------------------

static int FormatBytes(int format) { return format == QTGA_GREY ? 1 : format == QTGA_RGB ? 3 : 4; }

// RGBA to the file's pixel layout (BGR[A] or grey).
static void FilePixel(const uint8_t *rgba, int bytes, uint8_t *out) {
  if (bytes == 1) {
    out[0] = rgba[0];
    return;
  }
  out[0] = rgba[2];
  out[1] = rgba[1];
  out[2] = rgba[0];
  if (bytes == 4) out[3] = rgba[3];
}

// Run-length encodes one row: runs of 2+ equal pixels become repeat packets,
// the rest raw packets, each at most 128 pixels.
static void EncodeRowRle(const uint8_t *row, int wid, int bytes, std::vector<uint8_t> &out) {
  auto same = [&](int a, int b) { return memcmp(row + a * bytes, row + b * bytes, size_t(bytes)) == 0; };
  int x = 0;
  while (x < wid) {
    int run = 1;
    while (x + run < wid && run < 128 && same(x, x + run)) run++;
    if (run >= 2) {
      out.push_back(uint8_t(0x80 | (run - 1)));
      out.insert(out.end(), row + x * bytes, row + (x + 1) * bytes);
      x += run;
      continue;
    }
    int raw = 1;
    while (x + raw < wid && raw < 128 && !(x + raw + 1 < wid && same(x + raw, x + raw + 1))) raw++;
    out.push_back(uint8_t(raw - 1));
    out.insert(out.end(), row + x * bytes, row + (x + raw) * bytes);
    x += raw;
  }
}

bool QTgaWrite(const char *path, const QImage &img, int format, bool rle) {
  int bytes = FormatBytes(format);
  int wid = img.GetWidth(), hgt = img.GetHeight();
  if (img.IsEmpty() || wid > 65535 || hgt > 65535) {
    QWARN("QTgaWrite(%s); image size %dx%d can't be stored", path, wid, hgt);
    return false;
  }
  uint8_t h[TGA_HEADER] = {};
  h[2] = uint8_t((bytes == 1 ? TGA_GREY : TGA_TRUECOLOR) | (rle ? TGA_RLE : 0));
  h[12] = uint8_t(wid & 255);
  h[13] = uint8_t(wid >> 8);
  h[14] = uint8_t(hgt & 255);
  h[15] = uint8_t(hgt >> 8);
  h[16] = uint8_t(bytes * 8);
  h[17] = uint8_t(0x20 | (bytes == 4 ? 8 : 0));
  std::vector<uint8_t> out(h, h + TGA_HEADER);
  std::vector<uint8_t> row(size_t(wid) * size_t(bytes));
  for (int y = 0; y < hgt; y++) {
    for (int x = 0; x < wid; x++) FilePixel(img.PixelAt(x, y), bytes, &row[size_t(x) * size_t(bytes)]);
    if (rle) EncodeRowRle(row.data(), wid, bytes, out);
    else out.insert(out.end(), row.begin(), row.end());
  }
  FILE *f = fopen(path, "wb");
  if (!f) {
    QWARN("QTgaWrite(%s); can't open file for writing", path);
    return false;
  }
  bool ok = fwrite(out.data(), 1, out.size(), f) == out.size();
  ok = (fclose(f) == 0) && ok;
  if (!ok) QWARN("QTgaWrite(%s); write failed", path);
  return ok;
}

unsigned QImageToTexture(const QImage &img, bool smooth) {
  GLuint id = 0;
  glGenTextures(1, &id);
  glBindTexture(GL_TEXTURE_2D, id);
  GLint filter = smooth ? GL_LINEAR : GL_NEAREST, wrap = smooth ? GL_REPEAT : GL_CLAMP;
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, img.GetWidth(), img.GetHeight(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
               img.GetPixels());
  return id;
}
