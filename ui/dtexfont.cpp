// DTexFont: loading a texture font, its glyph ranges and painting text.
//
// Sections: [lifetime] [texture coordinates] [ranges and lookup] [painting]
// (Reading the .dtf description is in dtexfont_load.cpp.)
#include "ui/dtexfont.h"

#include <GL/gl.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "diag/qdebug.h"

// ---- [lifetime] -----------------------------------------------------------------

DTexFont::DTexFont() = default;

DTexFont::~DTexFont() {
  if (texture) glDeleteTextures(1, &texture);
  if (outlineTexture) glDeleteTextures(1, &outlineTexture);
}

void DTexFont::Reset() {
  glyphs.clear();
  ranges.clear();
  minChar = maxChar = 0;
  version = 2;
  outline = false;
  lineHeight = 0;
}

void DTexFont::CreateFixed(int charWid, int lineHgt, int first, int last) {
  Reset();
  snprintf(name, sizeof(name), "fixed%dx%d", charWid, lineHgt);
  minChar = first;
  maxChar = last;
  image.Create(charWid, lineHgt);
  for (int i = 0; i < charWid * lineHgt * 4; i++) image.GetPixels()[i] = 255;
  for (int code = first; code <= last; code++) {
    DTexFontGlyph g;
    g.code = code;
    g.x = 0;
    g.y = 0;
    g.wid = charWid > 1 ? charWid - 1 : 1;
    g.hgt = lineHgt;
    g.advance = float(charWid);
    AddGlyph(g);
  }
  ComputeTexCoords();
}

// ---- [texture coordinates] ------------------------------------------------------------

void DTexFont::ComputeTexCoords() {
  float w = float(image.GetWidth()), h = float(image.GetHeight());
  float ow = float(outlineImage.GetWidth()), oh = float(outlineImage.GetHeight());
  lineHeight = 0;
  for (DTexFontGlyph &g : glyphs) {
    if (!g.present) continue;
    if (g.hgt > lineHeight) lineHeight = g.hgt;
    if (w > 0 && h > 0) {
      g.u0 = float(g.x) / w;
      g.v0 = float(g.y) / h;
      g.u1 = float(g.x + g.wid) / w;
      g.v1 = float(g.y + g.hgt) / h;
    }
    if (ow > 0 && oh > 0 && g.ox >= 0) {
      g.ou0 = float(g.ox) / ow;
      g.ov0 = float(g.oy) / oh;
      g.ou1 = float(g.ox + g.owid) / ow;
      g.ov1 = float(g.oy + g.ohgt) / oh;
    }
  }
}

// ---- [ranges and lookup] ------------------------------------------------------------

// Glyphs arrive in increasing code order; a gap starts a new range, and
// codes missing inside a range would also start one.
bool DTexFont::AddGlyph(const DTexFontGlyph &gIn) {
  DTexFontGlyph g = gIn;
  g.present = true;
  if (ranges.empty() || g.code != ranges.back().last + 1) {
    if (int(ranges.size()) == MAX_RANGES) qfatal("DTexFont (%s) has too many ranges", name);
    DTexFontRange r;
    r.first = r.last = g.code;
    r.index = int(glyphs.size());
    ranges.push_back(r);
  } else {
    ranges.back().last = g.code;
  }
  glyphs.push_back(g);
  return true;
}

const DTexFontGlyph *DTexFont::FindGlyph(int code) const {
  for (const DTexFontRange &r : ranges) {
    if (code >= r.first && code <= r.last) return &glyphs[size_t(r.index + (code - r.first))];
  }
  return nullptr;
}

float DTexFont::GetWidth(const char *text, int len) const {
  if (!text) return 0;
  if (len < 0) len = int(strlen(text));
  float w = 0;
  for (int i = 0; i < len; i++) {
    const DTexFontGlyph *g = FindGlyph((unsigned char)text[i]);
    if (g) w += g->advance;
  }
  return w;
}

// ---- [painting] ---------------------------------------------------------------------

// Nearest sampling: glyphs are drawn at their own size on whole pixels.
static unsigned UploadImage(const QImage &img) { return QImageToTexture(img, false); }

bool DTexFont::Upload() {
  if (texture) return true;
  if (image.IsEmpty()) return false;
  texture = UploadImage(image);
  if (outline && !outlineImage.IsEmpty()) outlineTexture = UploadImage(outlineImage);
  return texture != 0;
}

void DTexFont::Paint(const char *text, float x, float y, int len) {
  if (!text || !Upload()) return;
  if (len < 0) len = int(strlen(text));
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, texture);
  glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
  float pen = x;
  glBegin(GL_QUADS);
  for (int i = 0; i < len; i++) {
    int code = (unsigned char)text[i];
    const DTexFontGlyph *g = FindGlyph(code);
    if (!g) {
      QWARN("DTexFont: can't find char 0x%x", code);
      continue;
    }
    float left = std::floor(pen + g->bearingx + 0.5f), right = left + float(g->wid);
    float top = y, bottom = y - float(g->hgt);
    glTexCoord2f(g->u0, g->v0);
    glVertex2f(left, top);
    glTexCoord2f(g->u1, g->v0);
    glVertex2f(right, top);
    glTexCoord2f(g->u1, g->v1);
    glVertex2f(right, bottom);
    glTexCoord2f(g->u0, g->v1);
    glVertex2f(left, bottom);
    pen += g->advance;
  }
  glEnd();
  glDisable(GL_TEXTURE_2D);
}
