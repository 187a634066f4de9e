// QCanvas as a QRenderer: the picture calls over the canvas's own OpenGL
// primitives, so a picture drawn through the interface lands on the same
// pixels as one drawn with the canvas directly.
#include <GL/gl.h>

#include "ui/qcanvas.h"

void QCanvas::BeginPicture(QColor background) {
  Select();
  glClearColor(float(background.GetR()) / 255.0f, float(background.GetG()) / 255.0f,
               float(background.GetB()) / 255.0f, float(background.GetA()) / 255.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

// The points stay at sub-pixel precision (OpenGL's y grows upwards): a
// smoothed line then does not show the pixel steps.
void QCanvas::Polyline(const QPointF *points, int n, const QStroke &stroke, int ox, int oy) {
  if (n < 2) return;
  glLineWidth(stroke.width);
  if (stroke.smooth) {
    glEnable(GL_LINE_SMOOTH);
    glHint(GL_LINE_SMOOTH_HINT, GL_NICEST);
  }
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  QColor c = stroke.color;
  glColor4f(float(c.GetR()) / 255.0f, float(c.GetG()) / 255.0f, float(c.GetB()) / 255.0f,
            float(c.GetA()) / 255.0f * stroke.alpha);
  float x0 = float(MapX(ox)) + 0.5f, y0 = float(MapY(oy)) + 0.5f;
  glBegin(GL_LINE_STRIP);
  for (int i = 0; i < n; i++) glVertex2f(x0 + points[i].x, y0 - points[i].y);
  glEnd();
  glLineWidth(1.0f);
  glDisable(GL_LINE_SMOOTH);
  glDisable(GL_BLEND);
}

void QCanvas::Segments(const QSegment *segments, int n, QColor c) {
  SetColor(c);
  for (int i = 0; i < n; i++) Line(segments[i].x1, segments[i].y1, segments[i].x2, segments[i].y2);
}

void QCanvas::FillRect(const QRect &r, QColor c) {
  SetColor(c);
  Rectfill(r);
}

void QCanvas::DrawText(const char *text, int x, int y, QColor c) {
  SetColor(c);
  Text(text, x, y);
}

void QCanvas::DrawImage(const uint8_t *rgba, int wid, int hgt, int x, int y) { DrawPixels(rgba, wid, hgt, x, y); }
