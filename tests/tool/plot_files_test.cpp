// Pictures through Cairo: the PNG of the curves against the window's own
// frame read back at the same state, one SVG path per curve, a PDF that
// pdftoppm opens. The files' errors are in tests/cli/plot.sh.
#include <cairo.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/cairo/qcairo.h"
#include "tool/windowframe.h"
#include "chart/plot.h"
#include "tool/settings.h"
#include "toolwindow.h"

namespace {

// Forwards everything but text, so curve pixels are compared without the
// two fonts' glyphs among them.
class NoText : public QRenderer {
 public:
  explicit NoText(QRenderer *to) : r(to) {}
  void BeginPicture(QColor c) override { r->BeginPicture(c); }
  void ClipRect(const QRect &c) override { r->ClipRect(c); }
  void ClipNone() override { r->ClipNone(); }
  void Polyline(const QPointF *p, int n, const QStroke &s, int ox, int oy) override { r->Polyline(p, n, s, ox, oy); }
  void Segments(const QSegment *s, int n, QColor c) override { r->Segments(s, n, c); }
  void FillRect(const QRect &rect, QColor c) override { r->FillRect(rect, c); }
  void DrawText(const char *, int, int, QColor) override {}
  int MeasureText(const char *) const override { return 0; }
  bool HasFont() const override { return false; }
  int TextHeight() const override { return 0; }
  QRect Bounds() const override { return r->Bounds(); }
  void DrawImage(const uint8_t *p, int w, int h, int x, int y) override { r->DrawImage(p, w, h, x, y); }

 private:
  QRenderer *r;
};

// An RGB picture, top row first.
struct Picture {
  int wid = 0, hgt = 0;
  std::vector<uint8_t> rgb;
  const uint8_t *At(int x, int y) const { return &rgb[(size_t(y) * size_t(wid) + size_t(x)) * 3]; }
};

Picture ReadPng(const std::string &path) {
  Picture p;
  cairo_surface_t *s = cairo_image_surface_create_from_png(path.c_str());
  if (cairo_surface_status(s) == CAIRO_STATUS_SUCCESS) {
    p.wid = cairo_image_surface_get_width(s), p.hgt = cairo_image_surface_get_height(s);
    int stride = cairo_image_surface_get_stride(s);
    const unsigned char *d = cairo_image_surface_get_data(s);
    for (int y = 0; y < p.hgt; y++)
      for (int x = 0; x < p.wid; x++) {
        uint32_t w = *reinterpret_cast<const uint32_t *>(d + size_t(y) * size_t(stride) + size_t(x) * 4);
        p.rgb.push_back(uint8_t(w >> 16)), p.rgb.push_back(uint8_t(w >> 8)), p.rgb.push_back(uint8_t(w));
      }
  }
  cairo_surface_destroy(s);
  return p;
}

// A curve's pixels by colour: `strong` for the line's core, `weak` for any
// trace of it (anti-aliased edges).
bool Is(const uint8_t *p, int graph, bool strong) {
  int r = p[0], g = p[1], b = p[2];
  switch (graph) {
    case CURVE_FX: return strong ? r < 90 && g < 90 && b < 90 : r < 200 && std::abs(r - g) < 40 && std::abs(r - b) < 40 && r != 128;
    case CURVE_FY: return strong ? r > 180 && g < 90 && b < 90 : r - g > 50 && r - b > 50;
    default: return strong ? g > 80 && r < 60 && b < 60 : g - r > 40 && g - b > 40;
  }
}

// Core pixels of `a` with no trace of the same curve within one pixel in `b`.
int Strays(const Picture &a, const Picture &b, int graph, int *cores) {
  int strays = 0;
  *cores = 0;
  for (int y = 1; y + 1 < a.hgt; y++)
    for (int x = 1; x + 1 < a.wid; x++) {
      if (!Is(a.At(x, y), graph, true)) continue;
      ++*cores;
      bool near = false;
      for (int dy = -1; dy <= 1 && !near; dy++)
        for (int dx = -1; dx <= 1 && !near; dx++) near = Is(b.At(x + dx, y + dy), graph, false);
      strays += !near;
    }
  return strays;
}

using PlotFiles = ToolWindowTest;

std::string Scratch(const char *name) { return std::string("/tmp/tyro_plot_test_") + name; }

}  // namespace

// The window's frame and the PNG at the same states: each graph's curve
// pixels lie within one pixel of each other, both ways.
TEST_F(PlotFiles, PngAgreesWithTheWindowFrame) {
  for (int focus : {0, 2}) {
    PanelFocus(focus);
    const QRect view(GRAPH_LEFT_MARGIN, GRAPH_TOP_MARGIN, VIEW_W, VIEW_H);
    NoText gl(cv);
    gl.BeginPicture(QColor(255, 255, 255, 255));
    FramePaint(&gl, FrameStateFromSession(), view);
    glFinish();
    glReadBuffer(GL_BACK);
    std::vector<uint8_t> rgba(size_t(WIN_W * WIN_H * 4));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, WIN_W, WIN_H, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    Picture window{VIEW_W, VIEW_H, {}};
    for (int y = 0; y < VIEW_H; y++)
      for (int x = 0; x < VIEW_W; x++)
        for (int c = 0; c < 3; c++)
          window.rgb.push_back(rgba[(size_t(WIN_H - 1 - (y + GRAPH_TOP_MARGIN)) * WIN_W + size_t(x + GRAPH_LEFT_MARGIN)) * 4 + size_t(c)]);

    std::string png = Scratch("agree.png"), error;
    ASSERT_TRUE(QCairoWriteFile(png, PLOT_WIDTH, PLOT_HEIGHT, PLOT_WIDTH, PLOT_HEIGHT, [&](QRenderer *r) {
      NoText cairo(r);
      FramePaint(&cairo, FrameStateFromSession(), QRect(0, 0, PLOT_WIDTH, PLOT_HEIGHT));
    }, &error)) << error;
    Picture file = ReadPng(png);
    remove(png.c_str());
    ASSERT_EQ(file.wid, VIEW_W);
    for (int g = 0; g < CURVE_COUNT; g++) {
      int coresA = 0, coresB = 0;
      EXPECT_EQ(Strays(window, file, g, &coresA), 0) << "focus " << focus << " graph " << g << ": window pixels";
      EXPECT_EQ(Strays(file, window, g, &coresB), 0) << "focus " << focus << " graph " << g << ": PNG pixels";
      // A dimmed curve (alpha 0.1) has no core to compare.
      if (focus && focus != g + 1) continue;
      EXPECT_GT(coresA, 200) << g;
      EXPECT_GT(coresB, 200) << g;
    }
  }
}

// SVG: one path per curve (main curves and ghosts); PDF: a file pdftoppm renders.
TEST_F(PlotFiles, SvgPathsAndPdf) {
  PanelFocus(2);
  FrameState st = FrameStateFromSession();
  auto draw = [&](QRenderer *r) { PlotPaint(r, PLOT_CURVES, st, QRect(0, 0, PLOT_WIDTH, PLOT_HEIGHT), nullptr); };
  std::string svg = Scratch("curves.svg"), pdf = Scratch("curves.pdf"), error;
  ASSERT_TRUE(QCairoWriteFile(svg, PLOT_WIDTH, PLOT_HEIGHT, PLOT_WIDTH, PLOT_HEIGHT, draw, &error)) << error;
  std::string text = ReadFileBytes(svg);
  int curves = 0, fromLeftEdge = 0;
  for (size_t at = text.find("<path"); at != std::string::npos; at = text.find("<path", at + 1)) {
    std::string path = text.substr(at, text.find("/>", at) - at);
    if (path.find("stroke-width:1.5") == std::string::npos) continue;
    curves++;
    fromLeftEdge += path.find("d=\"M 60.5 ") != std::string::npos;
  }
  EXPECT_EQ(curves, 3 + 5);  // three graphs, five load ghosts of Fy
  EXPECT_EQ(fromLeftEdge, curves);  // each path starts at the plot's left edge
  ASSERT_TRUE(QCairoWriteFile(pdf, 400, 300, PLOT_WIDTH, PLOT_HEIGHT, draw, &error)) << error;
  std::string out = Scratch("pdfpage");
  ASSERT_EQ(system(("pdftoppm -png -r 72 -singlefile '" + pdf + "' '" + out + "'").c_str()), 0);
  Picture page = ReadPng(out + ".png");
  EXPECT_TRUE(page.wid == 400 && page.hgt == 300) << page.wid << "x" << page.hgt;
  int red = 0;
  for (int y = 0; y < page.hgt; y++)
    for (int x = 0; x < page.wid; x++) red += Is(page.At(x, y), CURVE_FY, true);
  EXPECT_GT(red, 100);
  for (const std::string &f : {svg, pdf, out + ".png"}) remove(f.c_str());
}
