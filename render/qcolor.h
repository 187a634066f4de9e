// QColor: one 32-bit colour word, red in the top byte, then green, blue and
// alpha in the low byte.
#pragma once

#include <cstdint>

class QColor {
 public:
  constexpr QColor() = default;
  constexpr explicit QColor(uint32_t packed) : v(packed) {}
  constexpr QColor(int r, int g, int b, int a = 255)
      : v((uint32_t(r & 255) << 24) | (uint32_t(g & 255) << 16) | (uint32_t(b & 255) << 8) |
          uint32_t(a & 255)) {}
  constexpr int GetR() const { return int(v >> 24); }
  constexpr int GetG() const { return int((v >> 16) & 255); }
  constexpr int GetB() const { return int((v >> 8) & 255); }
  constexpr int GetA() const { return int(v & 255); }
  constexpr uint32_t GetPacked() const { return v; }
  constexpr bool operator==(const QColor &o) const { return v == o.v; }

 private:
  uint32_t v = 0x000000FF;
};
