// QRenderer: the few drawing calls a picture needs, whatever draws it.
//
// The window's canvas draws them with OpenGL (ui/qcanvas_renderer.cpp), the
// Cairo backend into PNG, SVG and PDF files (platform/cairo/), and QRecorder
// (render/qrecorder.h) only writes them down, so tests can check what a picture
// draws without a window. Coordinates are canvas pixels: origin at the top
// left, y down; pixel (x, y) covers x..x+1, y..y+1, so its centre is
// (x + 0.5, y + 0.5).
#pragma once

#include <cstdint>

#include "render/qcolor.h"
#include "render/qrect.h"

struct QPointF {
  float x, y;
};

// A pixel-exact segment: both end pixels are drawn.
struct QSegment {
  int x1, y1, x2, y2;
};

// How a polyline is stroked; the colour's alpha is multiplied by `alpha`.
struct QStroke {
  QColor color;
  float alpha = 1.0f;
  float width = 1.0f;
  bool smooth = false;  // anti-aliased
};

class QRenderer {
 public:
  virtual ~QRenderer() = default;
  // Starts a picture: the whole target filled with `background`.
  virtual void BeginPicture(QColor background) = 0;
  // Drawing after ClipRect stays inside r until ClipNone.
  virtual void ClipRect(const QRect &r) = 0;
  virtual void ClipNone() = 0;
  // A connected line through n points, given as offsets from the centre of
  // pixel (ox, oy) (so a curve keeps its sub-pixel values exactly).
  virtual void Polyline(const QPointF *points, int n, const QStroke &stroke, int ox, int oy) = 0;
  // n separate one-pixel segments in one colour.
  virtual void Segments(const QSegment *segments, int n, QColor color) = 0;
  virtual void FillRect(const QRect &r, QColor color) = 0;
  // Text with its top-left at (x, y); Latin-1 bytes (0xB5 is the micro sign).
  virtual void DrawText(const char *text, int x, int y, QColor color) = 0;
  // Width in pixels the text would take; 0 without a font.
  virtual int MeasureText(const char *text) const = 0;
  // False when no font can draw text (texts are then left out).
  virtual bool HasFont() const = 0;
  // Height of a line of text in pixels; 0 without a font.
  virtual int TextHeight() const = 0;
  // The whole target: (0, 0) and its size in pixels.
  virtual QRect Bounds() const = 0;
  // RGBA pixels, top row first, with their top-left at (x, y).
  virtual void DrawImage(const uint8_t *rgba, int wid, int hgt, int x, int y) = 0;
};
