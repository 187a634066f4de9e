// DTexFont::Create: renders a system font with FreeType into a glyph image
// and writes the font's description (.dtf) and image (.tga).
//
// Lives apart from the UI library so that programs which only load fonts
// never need FreeType. Glyph cells are one line high (ascent + descent), so
// a glyph's image rectangle already holds its vertical placement; they are
// packed left to right, row by row, one pixel apart.
#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdio>
#include <cstring>
#include <string>

#include "diag/qdebug.h"
#include "ui/dtexfont.h"

namespace {

const char *DEJAVU_DIR = "/usr/share/fonts/truetype/dejavu/";

// A font file for a face name: a path is taken as it is; the names the
// program asks for map to the DejaVu family this platform ships.
std::string FontFileFor(const char *face) {
  if (strchr(face, '/')) return face;
  std::string f = face;
  bool bold = f.find("Bold") != std::string::npos;
  bool mono = f.find("Mono") != std::string::npos || f.find("Courier") != std::string::npos;
  bool condensed = f.find("Condensed") != std::string::npos || f.find("Narrow") != std::string::npos;
  std::string file = mono ? "DejaVuSansMono" : condensed ? "DejaVuSansCondensed" : "DejaVuSans";
  if (bold) file += "-Bold";
  return std::string(DEJAVU_DIR) + file + ".ttf";
}

struct Packer {
  int texWid, texHgt, lineHgt;
  int x = 0, y = 0;
  // Finds a place for a cell `wid` wide; false when the texture is full.
  bool Place(int wid, int *px, int *py) {
    if (x + wid > texWid) {
      x = 0;
      y += lineHgt + 1;
    }
    if (y + lineHgt > texHgt) return false;
    *px = x;
    *py = y;
    x += wid + 1;
    return true;
  }
};

// Copies a rendered 8-bit coverage bitmap as white with alpha into the image.
void Blit(const FT_Bitmap &bm, QImage &img, int dx, int dy) {
  for (unsigned r = 0; r < bm.rows; r++) {
    int y = dy + int(r);
    if (y < 0 || y >= img.GetHeight()) continue;
    for (unsigned c = 0; c < bm.width; c++) {
      int x = dx + int(c);
      if (x < 0 || x >= img.GetWidth()) continue;
      uint8_t *p = img.PixelAt(x, y);
      p[0] = p[1] = p[2] = 255;
      p[3] = bm.buffer[int(r) * bm.pitch + int(c)];
    }
  }
}

struct CreatedGlyph {
  int code, x, y, wid, hgt;
  float advance, bearingx;
};

bool WriteDescription(const char *path, int minChar, int maxChar, const std::vector<CreatedGlyph> &gl) {
  FILE *f = fopen(path, "wb");
  if (!f) {
    QERR_IN("DTexFont::Create", "DTexFont:Create(); can't write '%s'", path);
    return false;
  }
  fprintf(f, "; Texture font description\ngeneral\n{\n  minchar=%d\n  maxchar=%d\n  version=2\n  outline=0\n}\n",
          minChar, maxChar);
  fprintf(f, "chars\n{\n");
  for (const CreatedGlyph &g : gl) {
    fprintf(f, "  char%d\n  {\n    x=%d\n    y=%d\n    wid=%d\n    hgt=%d\n    advance=%g\n    bearingx=%g\n  }\n",
            g.code, g.x, g.y, g.wid, g.hgt, double(g.advance), double(g.bearingx));
  }
  fprintf(f, "}\n");
  return fclose(f) == 0;
}

}  // namespace

bool DTexFont::Create(const char *face, int size, int minChar, int maxChar, const char *outName, int texWid,
                      int texHgt) {
  std::string file = FontFileFor(face ? face : "Arial");
  FT_Library lib;
  if (FT_Init_FreeType(&lib)) {
    QERR("DTexFont:Create(); FreeType can't start");
    return false;
  }
  FT_Face ftFace;
  if (FT_New_Face(lib, file.c_str(), 0, &ftFace) || FT_Set_Pixel_Sizes(ftFace, 0, FT_UInt(size))) {
    QERR("DTexFont:Create(); can't load font '%s' (%s) at size %d",
         face, file.c_str(), size);
    FT_Done_FreeType(lib);
    return false;
  }
  int ascent = int((ftFace->size->metrics.ascender + 63) >> 6);
  int descent = int((-ftFace->size->metrics.descender + 63) >> 6);
  Packer pk{texWid, texHgt, ascent + descent};
  QImage img(texWid, texHgt);
  for (int i = 0; i < texWid * texHgt; i++) img.GetPixels()[i * 4 + 0] = img.GetPixels()[i * 4 + 1] =
      img.GetPixels()[i * 4 + 2] = 255;
  std::vector<CreatedGlyph> created;
  bool ok = true;
  for (int code = minChar; code <= maxChar && ok; code++) {
    // A code the face lacks (the C1 controls, say) gets an empty glyph rather
    // than the face's box, so that glyph i is always code minChar + i.
    bool has = FT_Get_Char_Index(ftFace, FT_ULong(code)) != 0 &&
               FT_Load_Char(ftFace, FT_ULong(code), FT_LOAD_RENDER) == 0;
    FT_GlyphSlot s = ftFace->glyph;
    CreatedGlyph g{code, 0, 0, has ? int(s->bitmap.width) : 0, pk.lineHgt, has ? float(s->advance.x) / 64.0f : 0.0f,
                   has ? float(s->bitmap_left) : 0.0f};
    if (!pk.Place(g.wid, &g.x, &g.y)) {
      QERR("DTexFont:Create(); texture Y overflow");
      ok = false;
      break;
    }
    if (has) Blit(s->bitmap, img, g.x, g.y + ascent - s->bitmap_top);
    created.push_back(g);
  }
  FT_Done_Face(ftFace);
  FT_Done_FreeType(lib);
  if (!ok) return false;

  const char *base = outName ? outName : (face ? face : "font");
  char path[600];
  snprintf(path, sizeof(path), "%s.dtf", base);
  if (!WriteDescription(path, minChar, maxChar, created)) return false;
  snprintf(path, sizeof(path), "%s.tga", base);
  return QTgaWrite(path, img, QTGA_RGBA, true);
}
