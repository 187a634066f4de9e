// DTexFont::Load: reading a texture font's description and images.
#include <cstdio>

#include "base/qinfo.h"
#include "diag/qdebug.h"
#include "ui/dtexfont.h"

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
    QWARN("DTexFont:Load(%s) failed", fontName);
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
      QWARN("No X defined for texfont %s, entry %d\n", fontName,
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
    QWARN("DTexFont:Load(%s) failed", fontName);
    return false;
  }
  if (outline) {
    snprintf(path, sizeof(path), "%s_outline.tga", fontName);
    if (!QTgaRead(path, outlineImage)) {
      QWARN("DTexFont:Load(%s) failed", fontName);
      return false;
    }
  }
  ComputeTexCoords();
  return true;
}

