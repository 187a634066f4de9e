// DTexFont: loading a texture font, its glyph ranges and painting text.
//
// Sections: [lifetime] [loading] [ranges and lookup] [painting]
#include "ui/dtexfont.h"

#include <GL/gl.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "base/qinfo.h"
#include "ui/diag/qdebug.h"

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

// ---- [loading] -------------------------------------------------------------------

// Reads one glyph's keys under `path` ("chars.char%d").
static DTexFontGlyph ReadGlyph(QInfo &info, const char *path, int version, bool outline) {
  char key[160];
  auto K = [&](const char *leaf) {
    snprintf(key, sizeof(key), "%s.%s", path, leaf);
    return key;
  };
  DTexFontGlyph g;
  g.x = info.GetInt(K("x"), -1);
  g.y = info.GetInt(K("y"), 0);
  g.wid = info.GetInt(K("wid"), 0);
  if (version >= 2) {
    g.advance = info.GetFloat(K("advance"), float(g.wid));
    g.bearingx = info.GetFloat(K("bearingx"), 0.0f);
  } else {
    g.advance = float(g.wid);
  }
  g.hgt = info.GetInt(K("hgt"), 0);
  if (outline) {
    g.ox = info.GetInt(K("outline.x"), -1);
    g.oy = info.GetInt(K("outline.y"), -1);
    g.owid = info.GetInt(K("outline.wid"), 0);
    g.ohgt = info.GetInt(K("outline.hgt"), 0);
  }
  return g;
}

bool DTexFont::Load(const char *fontName) {
  Reset();
  snprintf(name, sizeof(name), "%s", fontName);
  char path[300];
  snprintf(path, sizeof(path), "%s.dtf", fontName);
  FILE *probe = fopen(path, "rb");
  if (!probe) {
    qwarn("dtexfont", "DTexFont::Load", __LINE__, "DTexFont:Load(%s) failed", fontName);
    return false;
  }
  fclose(probe);
  QInfo *info = new QInfo(path);

  // Step 2: the general keys.
  minChar = info->GetInt("general.minchar", 0);
  maxChar = info->GetInt("general.maxchar", 0);
  version = info->GetInt("general.version", 2);
  outline = info->GetInt("general.outline", 0) != 0;

  // Step 3: the glyphs, by code; the index in messages counts from minchar.
  bool ok = true;
  for (int code = minChar; code <= maxChar && ok; code++) {
    char gpath[64];
    snprintf(gpath, sizeof(gpath), "chars.char%d", code);
    if (!info->FindNode(gpath)) continue;
    DTexFontGlyph g = ReadGlyph(*info, gpath, version, outline);
    g.code = code;
    if (g.x == -1) {
      qwarn("dtexfont", "DTexFont::Load", __LINE__, "No X defined for texfont %s, entry %d\n", fontName,
            code - minChar);
      continue;
    }
    ok = AddGlyph(g);  // step 4: ranges (fatal beyond the fifth)
  }
  delete info;
  if (!ok) return false;

  // Step 5: the images.
  snprintf(path, sizeof(path), "%s.tga", fontName);
  if (!QTgaRead(path, image)) {
    qwarn("dtexfont", "DTexFont::Load", __LINE__, "DTexFont:Load(%s) failed", fontName);
    return false;
  }
  if (outline) {
    snprintf(path, sizeof(path), "%s_outline.tga", fontName);
    if (!QTgaRead(path, outlineImage)) {
      qwarn("dtexfont", "DTexFont::Load", __LINE__, "DTexFont:Load(%s) failed", fontName);
      return false;
    }
  }
  ComputeTexCoords();
  return true;
}

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

static unsigned UploadImage(const QImage &img) {
  unsigned id = 0;
  glGenTextures(1, &id);
  glBindTexture(GL_TEXTURE_2D, id);
  // Nearest sampling: glyphs are drawn at their own size on whole pixels.
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, img.GetWidth(), img.GetHeight(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
               img.GetPixels());
  return id;
}

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
      qwarn("dtexfont", "DTexFont::Paint", __LINE__, "DTexFont: can't find char 0x%x", code);
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
