// QCanvas: the 2-D drawing surface of every window and control, over OpenGL.
//
// Coordinates are integer pixels, origin at the top left of the canvas, y
// down. The canvas carries an origin offset that is added to every point; a
// point (x, y) goes to OpenGL as (x + offX, H - (y + offY) - 1), where H is
// the height of the window the canvas draws into (SetTargetSize). The
// current colour, font and blend mode apply to every primitive that follows.
#pragma once

#include "render/qcolor.h"
#include "ui/qobject.h"
#include "render/qrect.h"
#include "render/qrenderer.h"

class QFont;
class QWindow;

// Palette codes for SetColor(code, alpha).
enum : unsigned {
  QCANVAS_PX_WHITE = 0,
  QCANVAS_PX_BLACK = 1,
  QCANVAS_PX_LTGRAY = 2,
  QCANVAS_PX_WARMGRAY = 3,
  QCANVAS_PX_MIDGRAY = 4,
  QCANVAS_PX_RED = 5,
  QCANVAS_PX_DARKTEAL = 6,
  QCANVAS_PX_TEAL_ALPHA = 7,
  QCANVAS_PX_TEAL = 8,
  QCANVAS_PX_LTTEAL = 9,
  QCANVAS_PX_PALEBLUE = 10,
  QCANVAS_PX_WHITE_ALPHA = 11,
  QCANVAS_PX_COUNT = 12,
};

// Blend modes (0..4), applied before each primitive.
enum : int {
  QCANVAS_BLEND_OFF = 0,
  QCANVAS_BLEND_ALPHA = 1,     // src*a + dst*(1-a)
  QCANVAS_BLEND_ADD = 2,       // src*a + dst
  QCANVAS_BLEND_MULTIPLY = 3,  // src*dst
  QCANVAS_BLEND_INVERT = 4,    // dst*(1-src): darkens by the colour's complement
};

// Mode word bits.
enum : unsigned {
  QCANVAS_MODE_X = 0x1,        // the alternative (non-OpenGL) drawing mode
  QCANVAS_MODE_PALETTE = 0x10, // palette codes go to the alternative palette routine
};

// Text style bits (Text/Text3D); no style is supported on this platform.
enum : unsigned { QCANVAS_TEXT_BOLD = 0x1, QCANVAS_TEXT_ITALIC = 0x2 };

class QCanvas : public QObject, public QRenderer {
 public:
  static constexpr int MAX_TEXTML_LINES = 10;
  static constexpr int TEXTML_BUFFER = 1024;

  explicit QCanvas(QWindow *win = nullptr);
  ~QCanvas() override;
  const char *ClassName() const override { return "QCanvas"; }

  // ---- Target and coordinates ----------------------------------------------------
  QWindow *GetWindow() const { return window; }
  void SetWindow(QWindow *w) { window = w; }
  // Size of the real window the canvas draws into (H of the coordinate rule).
  void SetTargetSize(int wid, int hgt);
  int GetTargetWidth() const { return targetWid; }
  int GetTargetHeight() const { return targetHgt; }
  // Sets up OpenGL for 2-D drawing into the target (viewport, projection).
  void Select();
  void SetOffset(int x, int y) { offX = x; offY = y; }
  int GetOffsetX() const { return offX; }
  int GetOffsetY() const { return offY; }
  // The OpenGL position of canvas point (x, y).
  int MapX(int x) const { return x + offX; }
  int MapY(int y) const { return targetHgt - (y + offY) - 1; }
  unsigned GetMode() const { return mode; }
  void SetMode(unsigned m) { mode = m; }
  // Optional clip rectangle in canvas coordinates (scissor); NoClip ends it.
  void Clip(const QRect &r);
  void NoClip();

  // ---- State ---------------------------------------------------------------------
  void SetColor(unsigned code, int alpha = -1);
  void SetColor(int r, int g, int b, int a = 255);
  void SetColor(QColor c);
  QColor GetColor() const { return color; }
  void SetBlending(int blendMode) { blend = blendMode; }
  int GetBlending() const { return blend; }
  void SetFont(QFont *f) { font = f; }
  QFont *GetFont() const { return font; }
  void SetLineWidth(float w) { lineWidth = w; }

  // ---- Primitives ------------------------------------------------------------------
  void Clear();
  void Point(int x, int y);
  // One segment in the current colour; a given end colour replaces it at
  // that end, so the line shades from one to the other.
  void Line(int x1, int y1, int x2, int y2, const QColor *c1 = nullptr, const QColor *c2 = nullptr);
  void Rectfill(int x, int y, int wid, int hgt);
  void Rectfill(const QRect &r) { Rectfill(r.x, r.y, r.wid, r.hgt); }
  void Rectline(int x, int y, int wid, int hgt);
  void Rectline(const QRect &r) { Rectline(r.x, r.y, r.wid, r.hgt); }
  // A filled triangle (control symbols).
  void Triangle(int x1, int y1, int x2, int y2, int x3, int y3);
  // Both draw the rectangle's frame in palette code 10, which stays current.
  void Outline(const QRect &r);
  void Inline(const QRect &r);
  // Draws RGBA pixels (top row first) with their top-left at (x, y).
  void DrawPixels(const unsigned char *rgba, int wid, int hgt, int x, int y);
  // Copies a rectangle of the target to (dx, dy).
  void Blit(int sx, int sy, int wid, int hgt, int dx, int dy);
  void Shade(const QRect &r);

  // ---- Text --------------------------------------------------------------------------
  // Draws text with its top-left at (x, y) in the selected font; len -1 = all.
  void Text(const char *text, int x, int y, int len = -1, unsigned style = 0);
  void Text3D(const char *text, float x, float y, float z, unsigned style = 0);
  // Text split at line ends into at most 10 lines, one font height apart.
  void TextML(const char *text, int x, int y);
  int GetTextWidth(const char *text, int len = -1) const;
  int GetTextHeight() const;
  // Called for every text drawn, with its box in window pixels (width by
  // advance, height of the font): lets a layout check see where texts land.
  // Null (the default) calls nothing. Returns the observer it replaces.
  typedef void (*TextObserver)(const char *text, const QRect &box);
  static TextObserver SetTextObserver(TextObserver observer);

  // Sets the OpenGL blend state of the current mode (called before primitives).
  void ApplyBlending() const;

  // ---- QRenderer (ui/qcanvas_renderer.cpp) ---------------------------------------------
  // BeginPicture selects the canvas (Select) and clears colour and depth.
  void BeginPicture(QColor background) override;
  void ClipRect(const QRect &r) override { Clip(r); }
  void ClipNone() override { NoClip(); }
  void Polyline(const QPointF *points, int n, const QStroke &stroke, int ox, int oy) override;
  void Segments(const QSegment *segments, int n, QColor c) override;
  void FillRect(const QRect &r, QColor c) override;
  void DrawText(const char *text, int x, int y, QColor c) override;
  int MeasureText(const char *text) const override { return GetTextWidth(text); }
  bool HasFont() const override { return font != nullptr; }
  int TextHeight() const override { return GetTextHeight(); }
  QRect Bounds() const override { return QRect(0, 0, targetWid, targetHgt); }
  void DrawImage(const uint8_t *rgba, int wid, int hgt, int x, int y) override;

 private:
  void SendColor(QColor c) const;

  QWindow *window = nullptr;
  int targetWid = 640, targetHgt = 480;
  int offX = 0, offY = 0;
  unsigned mode = 0;
  QColor color = QColor(255, 255, 255, 255);
  int blend = QCANVAS_BLEND_OFF;
  QFont *font = nullptr;
  float lineWidth = 1.0f;
};
