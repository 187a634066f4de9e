// QCairoRenderer: QRenderer over Cairo, for pictures without a window: PNG
// (image surface), SVG and PDF (vector surfaces) from the same calls. Text is
// DejaVu Sans Condensed at 12 pixels, about as wide as the window's font.
// Needs no display, no OpenGL and no SDL.
#pragma once

#include <functional>
#include <string>

#include "render/qrenderer.h"

typedef struct _cairo cairo_t;

class QCairoRenderer : public QRenderer {
 public:
  // Draws in cr's user space, whatever scale it has.
  explicit QCairoRenderer(cairo_t *cr);
  ~QCairoRenderer() override;
  QCairoRenderer(const QCairoRenderer &) = delete;
  QCairoRenderer &operator=(const QCairoRenderer &) = delete;

  void BeginPicture(QColor background) override;
  void ClipRect(const QRect &r) override;
  void ClipNone() override;
  void Polyline(const QPointF *points, int n, const QStroke &stroke, int ox, int oy) override;
  void Segments(const QSegment *segments, int n, QColor color) override;
  void FillRect(const QRect &r, QColor color) override;
  void DrawText(const char *text, int x, int y, QColor color) override;
  int MeasureText(const char *text) const override;
  bool HasFont() const override { return true; }
  int TextHeight() const override { return lineHeight; }
  QRect Bounds() const override;
  void DrawImage(const uint8_t *rgba, int wid, int hgt, int x, int y) override;

 private:
  cairo_t *cr;
  bool clipped = false;
  double ascent = 0.0;
  int lineHeight = 0;
};

enum QCairoFormat { QCAIRO_PNG, QCAIRO_SVG, QCAIRO_PDF };

// The format a path's extension names (.png, .svg, .pdf, any case).
bool QCairoFormatOf(const std::string &path, QCairoFormat *format);

// Writes a picture drawn at baseWid x baseHgt into `path`, wid x hgt pixels
// (points for SVG and PDF), scaled to fit and centred, on white. False with
// the reason in `error` (unknown extension, file not writable, Cairo error).
bool QCairoWriteFile(const std::string &path, int wid, int hgt, int baseWid, int baseHgt,
                     const std::function<void(QRenderer *)> &draw, std::string *error);

// Writes a PDF file of `pages` pages, each wid x hgt points on white and
// drawn by draw(renderer, page) for page 0 ... pages-1; `title` goes into
// the document's properties. False with the reason in `error` (file not
// writable, Cairo error).
bool QCairoWritePdfPages(const std::string &path, int wid, int hgt, int pages, const std::string &title,
                         const std::function<void(QRenderer *, int page)> &draw, std::string *error);

// Frees what Cairo and the font configuration keep for the life of the
// process (font caches), so a command-line tool ends with nothing allocated.
// Only when no Cairo object is left; a later picture builds them again.
void QCairoReleaseCaches();
