// An integer rectangle: left, top, width and height in pixels.
#pragma once

struct QRect {
  int x = 0, y = 0, wid = 0, hgt = 0;
  QRect() = default;
  QRect(int x_, int y_, int w_, int h_) : x(x_), y(y_), wid(w_), hgt(h_) {}
  bool Contains(int px, int py) const { return px >= x && py >= y && px < x + wid && py < y + hgt; }
};
