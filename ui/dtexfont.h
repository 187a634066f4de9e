// DTexFont: a texture font. Text is drawn from a pre-rendered glyph image
// ("<name>.tga", and "<name>_outline.tga" for outlined fonts) described by
// an info file "<name>.dtf":
//   general { minchar maxchar version outline }
//   chars { char65 { x y wid hgt advance bearingx [outline { x y wid hgt }] } ... }
// Glyphs are kept in at most 5 ranges of consecutive character codes.
// Create (in the font generator library, platform/fontgen) renders a system
// font into such an image and writes the description.
#pragma once

#include <vector>

#include "ui/qimage.h"
#include "ui/qobject.h"

struct DTexFontGlyph {
  int code = 0;
  int x = -1, y = 0, wid = 0, hgt = 0;  // rectangle in the image
  float advance = 0, bearingx = 0;     // pen advance and offset from the pen
  int ox = -1, oy = -1, owid = 0, ohgt = 0;  // outline rectangle
  float u0 = 0, v0 = 0, u1 = 0, v1 = 0;      // texture coordinates
  float ou0 = 0, ov0 = 0, ou1 = 0, ov1 = 0;  // outline texture coordinates
  bool present = false;                      // false: no glyph for this code
};

struct DTexFontRange {
  int first = 0, last = -1;  // character codes, inclusive
  int index = 0;             // index of `first`'s glyph in the glyph table
};

class DTexFont : public QObject {
 public:
  static constexpr int MAX_RANGES = 5;

  DTexFont();
  ~DTexFont() override;
  const char *ClassName() const override { return "DTexFont"; }

  // Reads "<name>.dtf" and its images. False (reported) on failure.
  bool Load(const char *name);
  // Renders the system font `face` (a font name such as "Arial" or a font
  // file path) at pixel size `size` for the codes minChar..maxChar into a
  // texture of texWid x texHgt, and writes "<outName>.dtf" and
  // "<outName>.tga". Implemented in platform/fontgen (needs FreeType).
  bool Create(const char *face = "Arial", int size = 11, int minChar = 32, int maxChar = 126,
              const char *outName = nullptr, int texWid = 256, int texHgt = 256);

  // A synthetic fixed-width font for layout tests and programs without font
  // files: every code in minChar..maxChar is a solid box charWid-1 wide and
  // lineHgt high, advancing charWid. No files are read.
  void CreateFixed(int charWid, int lineHgt, int minChar = 32, int maxChar = 126);

  // Draws text with the pen starting at (x, y), y being the top of the line
  // in OpenGL window coordinates of a canvas (y up: the line extends below).
  void Paint(const char *text, float x, float y, int len = -1);
  // Width of text in pixels (sum of advances).
  float GetWidth(const char *text, int len = -1) const;
  int GetHeight() const { return lineHeight; }
  const char *GetName() const { return name; }

  int GetMinChar() const { return minChar; }
  int GetMaxChar() const { return maxChar; }
  int GetVersion() const { return version; }
  bool HasOutline() const { return outline; }
  int GetRangeCount() const { return int(ranges.size()); }
  const DTexFontRange &GetRange(int i) const { return ranges[size_t(i)]; }
  // The glyph of `code`, or null when the font has none.
  const DTexFontGlyph *FindGlyph(int code) const;
  const QImage &GetImage() const { return image; }
  const QImage &GetOutlineImage() const { return outlineImage; }
  // Uploads the image(s) as textures on first use (needs a current context).
  bool Upload();

 private:
  bool AddGlyph(const DTexFontGlyph &g);
  void ComputeTexCoords();
  void Reset();

  char name[256] = {};
  int minChar = 0, maxChar = 0, version = 2;
  bool outline = false;
  int lineHeight = 0;
  std::vector<DTexFontGlyph> glyphs;  // grouped by range, in code order
  std::vector<DTexFontRange> ranges;
  QImage image, outlineImage;
  unsigned texture = 0, outlineTexture = 0;
};
