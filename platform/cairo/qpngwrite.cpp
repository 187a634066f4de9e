// PNG: signature, IHDR, one IDAT per deflate buffer, IEND; every chunk with
// its CRC.
#include "platform/cairo/qpngwrite.h"

#include <zlib.h>

#include <cstdio>
#include <vector>

namespace {

void Be32(uint8_t *p, uint32_t v) {
  p[0] = uint8_t(v >> 24), p[1] = uint8_t(v >> 16), p[2] = uint8_t(v >> 8), p[3] = uint8_t(v);
}

bool Chunk(FILE *f, const char *type, const uint8_t *data, size_t size) {
  uint8_t head[8];
  Be32(head, uint32_t(size));
  for (int i = 0; i < 4; i++) head[4 + i] = uint8_t(type[i]);
  uLong crc = crc32(0L, head + 4, 4);
  if (size) crc = crc32(crc, data, uInt(size));
  uint8_t tail[4];
  Be32(tail, uint32_t(crc));
  return fwrite(head, 1, 8, f) == 8 && (size == 0 || fwrite(data, 1, size, f) == size) && fwrite(tail, 1, 4, f) == 4;
}

}  // namespace

bool QPngWriteRgb24(const std::string &path, const uint8_t *data, int wid, int hgt, int stride) {
  FILE *f = fopen(path.c_str(), "wb");
  if (!f) return false;
  static const uint8_t SIGNATURE[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  uint8_t ihdr[13];
  Be32(ihdr, uint32_t(wid));
  Be32(ihdr + 4, uint32_t(hgt));
  ihdr[8] = 8, ihdr[9] = 2, ihdr[10] = 0, ihdr[11] = 0, ihdr[12] = 0;  // 8-bit RGB, no interlace
  bool ok = fwrite(SIGNATURE, 1, 8, f) == 8 && Chunk(f, "IHDR", ihdr, sizeof ihdr);

  z_stream z{};
  ok = ok && deflateInit(&z, 2) == Z_OK;
  std::vector<uint8_t> row(size_t(wid) * 3 + 1), prev(size_t(wid) * 3, 0), out(1 << 16);
  for (int y = 0; ok && y <= hgt; y++) {
    bool last = y == hgt;
    if (!last) {
      // Filter type 2 (Up): each byte minus the one above it; white areas
      // and horizontal runs become zeros, which deflate packs at once.
      const uint32_t *words = reinterpret_cast<const uint32_t *>(data + size_t(y) * size_t(stride));
      row[0] = 2;
      for (int x = 0; x < wid; x++) {
        uint8_t rgb[3] = {uint8_t(words[x] >> 16), uint8_t(words[x] >> 8), uint8_t(words[x])};
        for (int c = 0; c < 3; c++) {
          size_t i = size_t(x) * 3 + size_t(c);
          row[i + 1] = uint8_t(rgb[c] - prev[i]);
          prev[i] = rgb[c];
        }
      }
      z.next_in = row.data();
      z.avail_in = uInt(row.size());
    }
    int st = Z_OK;
    do {
      z.next_out = out.data();
      z.avail_out = uInt(out.size());
      st = deflate(&z, last ? Z_FINISH : Z_NO_FLUSH);
      size_t n = out.size() - z.avail_out;
      if (st == Z_STREAM_ERROR || (n && !Chunk(f, "IDAT", out.data(), n))) ok = false;
    } while (ok && (z.avail_out == 0 || (last && st != Z_STREAM_END)));
  }
  deflateEnd(&z);
  ok = ok && Chunk(f, "IEND", nullptr, 0);
  return fclose(f) == 0 && ok;
}
