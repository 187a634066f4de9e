// QCairoRenderer and the picture files.
//
// Sections: [renderer] [files]
#include "platform/cairo/qcairo.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cctype>
#include <vector>

#include "platform/cairo/qpngwrite.h"

// ---- [renderer] ----------------------------------------------------------------------------

namespace {

void Source(cairo_t *cr, QColor c, double alpha = 1.0) {
  cairo_set_source_rgba(cr, c.GetR() / 255.0, c.GetG() / 255.0, c.GetB() / 255.0, c.GetA() / 255.0 * alpha);
}

// The pictures' texts are Latin-1 (the window font's code page); Cairo wants UTF-8.
std::string Utf8(const char *latin1) {
  std::string out;
  for (const unsigned char *p = reinterpret_cast<const unsigned char *>(latin1); *p; p++) {
    if (*p < 0x80) {
      out += char(*p);
    } else {
      out += char(0xC0 | (*p >> 6));
      out += char(0x80 | (*p & 0x3F));
    }
  }
  return out;
}

}  // namespace

QCairoRenderer::QCairoRenderer(cairo_t *c) : cr(c) {
  cairo_reference(cr);
  cairo_select_font_face(cr, "DejaVu Sans Condensed", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(cr, 12.0);
  cairo_font_extents_t fe;
  cairo_font_extents(cr, &fe);
  ascent = fe.ascent;
  lineHeight = int(fe.height + 0.5);
}

QRect QCairoRenderer::Bounds() const {
  // Without a clip the clip extents are the surface's, in user space.
  double x1, y1, x2, y2;
  cairo_save(cr);
  cairo_reset_clip(cr);
  cairo_clip_extents(cr, &x1, &y1, &x2, &y2);
  cairo_restore(cr);
  return QRect(int(x1), int(y1), int(x2 - x1 + 0.5), int(y2 - y1 + 0.5));
}

QCairoRenderer::~QCairoRenderer() {
  ClipNone();
  cairo_destroy(cr);
}

void QCairoRenderer::BeginPicture(QColor background) {
  ClipNone();
  cairo_save(cr);
  cairo_identity_matrix(cr);
  Source(cr, background);
  cairo_paint(cr);
  cairo_restore(cr);
}

void QCairoRenderer::ClipRect(const QRect &r) {
  ClipNone();
  cairo_save(cr);
  cairo_rectangle(cr, r.x, r.y, r.wid, r.hgt);
  cairo_clip(cr);
  clipped = true;
}

void QCairoRenderer::ClipNone() {
  if (!clipped) return;
  cairo_restore(cr);
  clipped = false;
}

void QCairoRenderer::Polyline(const QPointF *points, int n, const QStroke &stroke, int ox, int oy) {
  if (n < 2) return;
  double x0 = ox + 0.5, y0 = oy + 0.5;
  cairo_new_path(cr);
  cairo_move_to(cr, x0 + points[0].x, y0 + points[0].y);
  for (int i = 1; i < n; i++) cairo_line_to(cr, x0 + points[i].x, y0 + points[i].y);
  cairo_set_antialias(cr, stroke.smooth ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
  cairo_set_line_width(cr, stroke.width);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
  Source(cr, stroke.color, stroke.alpha);
  cairo_stroke(cr);
  cairo_set_antialias(cr, CAIRO_ANTIALIAS_DEFAULT);
}

// Through the pixel centres with square caps: each segment covers exactly
// its pixels, both ends included, as on the window's canvas.
void QCairoRenderer::Segments(const QSegment *segments, int n, QColor color) {
  if (n < 1) return;
  cairo_new_path(cr);
  for (int i = 0; i < n; i++) {
    cairo_move_to(cr, segments[i].x1 + 0.5, segments[i].y1 + 0.5);
    cairo_line_to(cr, segments[i].x2 + 0.5, segments[i].y2 + 0.5);
  }
  cairo_set_line_width(cr, 1.0);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_SQUARE);
  Source(cr, color);
  cairo_stroke(cr);
}

void QCairoRenderer::FillRect(const QRect &r, QColor color) {
  if (r.wid <= 0 || r.hgt <= 0) return;
  cairo_rectangle(cr, r.x, r.y, r.wid, r.hgt);
  Source(cr, color);
  cairo_fill(cr);
}

void QCairoRenderer::DrawText(const char *text, int x, int y, QColor color) {
  std::string s = Utf8(text);
  Source(cr, color);
  cairo_move_to(cr, x, y + ascent);
  cairo_show_text(cr, s.c_str());
  cairo_new_path(cr);
}

int QCairoRenderer::MeasureText(const char *text) const {
  std::string s = Utf8(text);
  cairo_text_extents_t te;
  cairo_text_extents(cr, s.c_str(), &te);
  return int(te.x_advance + 0.5);
}

void QCairoRenderer::DrawImage(const uint8_t *rgba, int wid, int hgt, int x, int y) {
  if (!rgba || wid <= 0 || hgt <= 0) return;
  cairo_surface_t *img = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, wid, hgt);
  unsigned char *dst = cairo_image_surface_get_data(img);
  int stride = cairo_image_surface_get_stride(img);
  cairo_surface_flush(img);
  // Cairo keeps native-endian words with premultiplied alpha.
  for (int j = 0; j < hgt; j++)
    for (int i = 0; i < wid; i++) {
      const uint8_t *p = rgba + (size_t(j) * size_t(wid) + size_t(i)) * 4;
      uint32_t a = p[3];
      uint32_t word = (a << 24) | ((p[0] * a / 255) << 16) | ((p[1] * a / 255) << 8) | (p[2] * a / 255);
      *reinterpret_cast<uint32_t *>(dst + size_t(j) * size_t(stride) + size_t(i) * 4) = word;
    }
  cairo_surface_mark_dirty(img);
  cairo_set_source_surface(cr, img, x, y);
  cairo_paint(cr);
  cairo_surface_destroy(img);
}

// ---- [files] -------------------------------------------------------------------------------

bool QCairoFormatOf(const std::string &path, QCairoFormat *format) {
  size_t dot = path.rfind('.');
  if (dot == std::string::npos) return false;
  std::string ext = path.substr(dot + 1);
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  if (ext == "png") *format = QCAIRO_PNG;
  else if (ext == "svg") *format = QCAIRO_SVG;
  else if (ext == "pdf") *format = QCAIRO_PDF;
  else return false;
  return true;
}

namespace {

cairo_status_t Fail(cairo_status_t st, std::string *error, const std::string &path) {
  if (st != CAIRO_STATUS_SUCCESS && error) {
    *error = st == CAIRO_STATUS_WRITE_ERROR || st == CAIRO_STATUS_FILE_NOT_FOUND
                 ? path + ": can't open output file for writing"
                 : path + ": " + cairo_status_to_string(st);
  }
  return st;
}

}  // namespace

bool QCairoWriteFile(const std::string &path, int wid, int hgt, int baseWid, int baseHgt,
                     const std::function<void(QRenderer *)> &draw, std::string *error) {
  QCairoFormat format;
  if (!QCairoFormatOf(path, &format)) {
    if (error) *error = path + ": unsupported extension (.png, .svg or .pdf)";
    return false;
  }
  if (wid < 1 || hgt < 1 || baseWid < 1 || baseHgt < 1) {
    if (error) *error = path + ": empty picture size";
    return false;
  }
  cairo_surface_t *surface = format == QCAIRO_PNG   ? cairo_image_surface_create(CAIRO_FORMAT_RGB24, wid, hgt)
                             : format == QCAIRO_SVG ? cairo_svg_surface_create(path.c_str(), wid, hgt)
                                                    : cairo_pdf_surface_create(path.c_str(), wid, hgt);
  if (Fail(cairo_surface_status(surface), error, path)) {
    cairo_surface_destroy(surface);
    return false;
  }
  cairo_t *cr = cairo_create(surface);
  // Scale to fit, centred; at the base size this is the identity.
  double s = std::min(double(wid) / baseWid, double(hgt) / baseHgt);
  cairo_translate(cr, (wid - baseWid * s) / 2.0, (hgt - baseHgt * s) / 2.0);
  cairo_scale(cr, s, s);
  {
    QCairoRenderer r(cr);
    r.BeginPicture(QColor(255, 255, 255, 255));
    draw(&r);
  }
  cairo_status_t st = cairo_status(cr);
  cairo_destroy(cr);
  if (st == CAIRO_STATUS_SUCCESS && format == QCAIRO_PNG) {
    cairo_surface_flush(surface);
    if (!QPngWriteRgb24(path, cairo_image_surface_get_data(surface), wid, hgt, cairo_image_surface_get_stride(surface)))
      st = CAIRO_STATUS_WRITE_ERROR;
  }
  cairo_surface_finish(surface);
  if (st == CAIRO_STATUS_SUCCESS) st = cairo_surface_status(surface);
  cairo_surface_destroy(surface);
  return !Fail(st, error, path);
}

bool QCairoWritePdfPages(const std::string &path, int wid, int hgt, int pages, const std::string &title,
                         const std::function<void(QRenderer *, int page)> &draw, std::string *error) {
  if (wid < 1 || hgt < 1 || pages < 1) {
    if (error) *error = path + ": empty document";
    return false;
  }
  cairo_surface_t *surface = cairo_pdf_surface_create(path.c_str(), wid, hgt);
  if (Fail(cairo_surface_status(surface), error, path)) {
    cairo_surface_destroy(surface);
    return false;
  }
  if (!title.empty()) cairo_pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_TITLE, title.c_str());
  cairo_t *cr = cairo_create(surface);
  cairo_status_t st = CAIRO_STATUS_SUCCESS;
  for (int page = 0; page < pages && st == CAIRO_STATUS_SUCCESS; page++) {
    {
      QCairoRenderer r(cr);
      r.BeginPicture(QColor(255, 255, 255, 255));
      draw(&r, page);
    }
    cairo_show_page(cr);
    st = cairo_status(cr);
  }
  cairo_destroy(cr);
  cairo_surface_finish(surface);
  if (st == CAIRO_STATUS_SUCCESS) st = cairo_surface_status(surface);
  cairo_surface_destroy(surface);
  return !Fail(st, error, path);
}

void QCairoReleaseCaches() {
  cairo_debug_reset_static_data();
  FcFini();
}
