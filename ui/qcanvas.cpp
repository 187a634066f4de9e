// QCanvas: colours, the coordinate rule and the primitives over OpenGL.
//
// Sections: [palette and colour] [target and state] [primitives] [text]
#include "ui/qcanvas.h"

#include <GL/gl.h>

#include <cstring>
#include <string>

#include "diag/qdebug.h"
#include "ui/dtexfont.h"
#include "ui/qerror.h"
#include "ui/qfont.h"

// ---- [palette and colour] ----------------------------------------------------------

namespace {
struct PaletteEntry {
  int r, g, b, a;
  int defAlpha;  // -1: the alpha argument is ignored
  bool blends;   // the code turns blending on
};

const PaletteEntry PALETTE[QCANVAS_PX_COUNT] = {
    {255, 255, 255, 255, -1, false},  // 0 white
    {0, 0, 0, 255, -1, false},        // 1 black
    {224, 224, 224, 255, -1, false},  // 2 light grey
    {212, 208, 200, 255, -1, false},  // 3 warm grey
    {128, 128, 128, 255, -1, false},  // 4 mid grey
    {255, 0, 0, 255, -1, false},      // 5 red
    {39, 73, 78, 255, 255, false},    // 6 dark teal, alpha given
    {68, 126, 142, 128, 128, true},   // 7 teal, translucent
    {83, 153, 165, 255, -1, false},   // 8 teal
    {110, 208, 221, 255, -1, false},  // 9 light teal
    {139, 201, 219, 255, -1, false},  // 10 pale blue
    {255, 255, 255, 255, 255, true},  // 11 white with alpha
};
}  // namespace

void QCanvas::SetColor(unsigned code, int alpha) {
  if (code >= QCANVAS_PX_COUNT) {
    QWARN("QCanvas::SetColor(%d) unknown PX_xxx", int(code));
    // Pure green makes the mistake visible on screen.
    color = QColor(0, 255, 0, 255);
    return;
  }
  const PaletteEntry &p = PALETTE[code];
  int a = p.a;
  if (p.defAlpha >= 0) a = alpha == -1 ? p.defAlpha : alpha;
  color = QColor(p.r, p.g, p.b, a);
  // The alternative mode keeps its own blending rules; only the colour is taken.
  if (p.blends && !(mode & QCANVAS_MODE_PALETTE)) blend = QCANVAS_BLEND_ALPHA;
}

void QCanvas::SetColor(int r, int g, int b, int a) { color = QColor(r, g, b, a); }

void QCanvas::SetColor(QColor c) { color = c; }

void QCanvas::SendColor(QColor c) const {
  glColor4f(float(c.GetR()) / 255.0f, float(c.GetG()) / 255.0f, float(c.GetB()) / 255.0f,
            float(c.GetA()) / 255.0f);
}

void QCanvas::ApplyBlending() const {
  if (blend == QCANVAS_BLEND_OFF) {
    glDisable(GL_BLEND);
    return;
  }
  glEnable(GL_BLEND);
  switch (blend) {
    case QCANVAS_BLEND_ADD: glBlendFunc(GL_SRC_ALPHA, GL_ONE); break;
    case QCANVAS_BLEND_MULTIPLY: glBlendFunc(GL_DST_COLOR, GL_ZERO); break;
    case QCANVAS_BLEND_INVERT: glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_COLOR); break;
    default: glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA); break;
  }
}

// ---- [target and state] --------------------------------------------------------------

QCanvas::QCanvas(QWindow *win) : window(win) {}

QCanvas::~QCanvas() = default;

void QCanvas::SetTargetSize(int wid, int hgt) {
  targetWid = wid;
  targetHgt = hgt;
}

void QCanvas::Select() {
  glViewport(0, 0, targetWid, targetHgt);
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  glOrtho(0, targetWid, 0, targetHgt, -1, 1);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  // Integer vertices then fall inside the pixel they name (the classic
  // 3/8 shift), so lines and points land on the same pixels as fills.
  glTranslatef(0.375f, 0.375f, 0.0f);
  glDisable(GL_DEPTH_TEST);
  glDisable(GL_LIGHTING);
  glDisable(GL_CULL_FACE);
  glDisable(GL_TEXTURE_2D);
}

void QCanvas::Clip(const QRect &r) {
  glEnable(GL_SCISSOR_TEST);
  glScissor(MapX(r.x), MapY(r.y + r.hgt - 1), r.wid, r.hgt);
}

void QCanvas::NoClip() { glDisable(GL_SCISSOR_TEST); }

// ---- [primitives] ----------------------------------------------------------------------

// With dev.opengl_checks on, each primitive reports the OpenGL errors it left.
static void AfterDraw(const char *where) {
  if (qGetDevFlags() & QDEV_OPENGL_CHECKS) QShowGLErrors(where);
}

void QCanvas::Clear() {
  glClearColor(float(color.GetR()) / 255.0f, float(color.GetG()) / 255.0f, float(color.GetB()) / 255.0f,
               float(color.GetA()) / 255.0f);
  glClear(GL_COLOR_BUFFER_BIT);
}

void QCanvas::Point(int x, int y) {
  ApplyBlending();
  SendColor(color);
  glBegin(GL_POINTS);
  glVertex2i(MapX(x), MapY(y));
  glEnd();
}

void QCanvas::Line(int x1, int y1, int x2, int y2, const QColor *c1, const QColor *c2) {
  if (mode & QCANVAS_MODE_X) {
    QWARN("Canvas:Line not supported for X");
    return;
  }
  ApplyBlending();
  glLineWidth(lineWidth);
  glBegin(GL_LINES);
  SendColor(c1 ? *c1 : color);
  glVertex2i(MapX(x1), MapY(y1));
  SendColor(c2 ? *c2 : color);
  glVertex2i(MapX(x2), MapY(y2));
  glEnd();
  // OpenGL leaves out a line's last pixel; paint it so lines end where asked.
  glBegin(GL_POINTS);
  glVertex2i(MapX(x2), MapY(y2));
  glEnd();
  AfterDraw("QCanvas::Line");
}

void QCanvas::Rectfill(int x, int y, int wid, int hgt) {
  if (wid <= 0 || hgt <= 0) return;
  ApplyBlending();
  SendColor(color);
  // Edges lie between pixels: the top edge of canvas row y is GL row MapY(y)+1.
  int left = MapX(x), top = MapY(y) + 1;
  glBegin(GL_QUADS);
  glVertex2i(left, top);
  glVertex2i(left + wid, top);
  glVertex2i(left + wid, top - hgt);
  glVertex2i(left, top - hgt);
  glEnd();
  AfterDraw("QCanvas::Rectfill");
}

void QCanvas::Rectline(int x, int y, int wid, int hgt) {
  if (wid <= 0 || hgt <= 0) return;
  Rectfill(x, y, wid, 1);
  Rectfill(x, y + hgt - 1, wid, 1);
  Rectfill(x, y + 1, 1, hgt - 2);
  Rectfill(x + wid - 1, y + 1, 1, hgt - 2);
}

void QCanvas::Triangle(int x1, int y1, int x2, int y2, int x3, int y3) {
  ApplyBlending();
  SendColor(color);
  glBegin(GL_TRIANGLES);
  glVertex2i(MapX(x1), MapY(y1));
  glVertex2i(MapX(x2), MapY(y2));
  glVertex2i(MapX(x3), MapY(y3));
  glEnd();
  AfterDraw("QCanvas::Triangle");
}

void QCanvas::Outline(const QRect &r) {
  SetColor(QCANVAS_PX_PALEBLUE);
  if (mode & QCANVAS_MODE_X) {
    QWARN("QCanvas:Outline not support for ISX");
    return;
  }
  Rectline(r);
}

void QCanvas::Inline(const QRect &r) { Outline(r); }

void QCanvas::DrawPixels(const unsigned char *rgba, int wid, int hgt, int x, int y) {
  if (!rgba || wid <= 0 || hgt <= 0) return;
  ApplyBlending();
  // Rows go downwards from the top-left corner: raster position at the top
  // edge, negative vertical zoom.
  glRasterPos2i(MapX(x), MapY(y) + 1);
  glPixelZoom(1.0f, -1.0f);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glDrawPixels(wid, hgt, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
  glPixelZoom(1.0f, 1.0f);
  AfterDraw("QCanvas::DrawPixels");
}

void QCanvas::Blit(int sx, int sy, int wid, int hgt, int dx, int dy) {
  if (mode & QCANVAS_MODE_X) {
    QWARN("QCanvas::Blit() not implemented for USEX");
    return;
  }
  glDisable(GL_BLEND);
  glRasterPos2i(MapX(dx), MapY(dy + hgt - 1));
  glCopyPixels(MapX(sx), MapY(sy + hgt - 1), wid, hgt, GL_COLOR);
  AfterDraw("QCanvas::Blit");
}

void QCanvas::Shade(const QRect &) { QWARN("QCanvas::Shade obsolete call"); }

// ---- [text] --------------------------------------------------------------------------

static QCanvas::TextObserver g_textObserver;

QCanvas::TextObserver QCanvas::SetTextObserver(TextObserver observer) {
  TextObserver old = g_textObserver;
  g_textObserver = observer;
  return old;
}

void QCanvas::Text(const char *text, int x, int y, int len, unsigned style) {
  if (!font || !font->GetTexFont()) {
    QWARN("QCanvas:Text(); no font selected");
    return;
  }
  if (style) {
    QWARN("QCanvas:Text(); can't handle styles nyi/win32");
  }
  DTexFont *tf = font->GetTexFont();
  // Text always blends: the glyph image's alpha is the coverage.
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  SendColor(color);
  tf->Paint(text, float(MapX(x)), float(MapY(y) + 1), len);
  ApplyBlending();
  AfterDraw("QCanvas::Text");
  if (g_textObserver) {
    std::string shown(text, len < 0 ? strlen(text) : size_t(len));
    g_textObserver(shown.c_str(), QRect(x + offX, y + offY, GetTextWidth(text, len), GetTextHeight()));
  }
}

void QCanvas::Text3D(const char *, float, float, float, unsigned style) {
  if (!font) {
    QWARN("QCanvas:Text3D(); no font selected");
    return;
  }
  if (style) QWARN("QCanvas:Text3D(); can't handle styles nyi");
  // Every font on this platform is a texture font.
  QWARN("QCanvas:Text3D does not support texfonts");
}

void QCanvas::TextML(const char *text, int x, int y) {
  char buf[TEXTML_BUFFER];
  if (strlen(text) >= sizeof(buf)) {
    QWARN("QCanvas::TextML(); text>temp buffer");
    return;
  }
  strcpy(buf, text);
  const char *lines[MAX_TEXTML_LINES];
  int count = 0;
  char *p = buf;
  for (;;) {
    if (count == MAX_TEXTML_LINES) {
      QWARN("QCanvas::TextML() max #lines reached (10)");
      break;
    }
    lines[count++] = p;
    char *nl = strchr(p, '\n');
    if (!nl) break;
    *nl = 0;
    p = nl + 1;
  }
  int step = GetTextHeight();
  for (int i = 0; i < count; i++) Text(lines[i], x, y + i * step);
}

// Through the texture font directly, so that drawing does not pull in font loading.
int QCanvas::GetTextWidth(const char *text, int len) const {
  DTexFont *tf = font ? font->GetTexFont() : nullptr;
  return tf ? int(tf->GetWidth(text, len) + 0.5f) : 0;
}

int QCanvas::GetTextHeight() const {
  DTexFont *tf = font ? font->GetTexFont() : nullptr;
  return tf ? tf->GetHeight() : 0;
}
