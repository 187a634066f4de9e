// QFont: a font a canvas draws text with. On this platform every font is a
// texture font (DTexFont) loaded from "<name>.dtf" and "<name>.tga".
#pragma once

#include "ui/dtexfont.h"
#include "ui/qobject.h"

class QFont : public QObject {
 public:
  // `name` is the texture font's path without extension, e.g.
  // "data/fonts/eurostile11". Nothing is loaded until Create.
  explicit QFont(const char *name, int size = 0, unsigned style = 0);
  // Inline on purpose: with no out-of-line virtual member, code that only
  // draws with a font (QCanvas) does not drag in font loading at link time.
  ~QFont() override { delete texFont; }
  const char *ClassName() const override { return "QFont"; }

  // Creates the font's texture font; a second creation is an error and does
  // nothing. False when the font files cannot be read.
  bool Create();
  bool IsCreated() const { return texFont != nullptr; }
  // Creates a synthetic fixed-width font instead (DTexFont::CreateFixed);
  // the same once-only rule applies.
  bool CreateFixed(int charWid, int lineHgt);
  const char *GetName() const { return name; }
  int GetSize() const { return size; }
  unsigned GetStyle() const { return style; }
  DTexFont *GetTexFont() const { return texFont; }
  // Height of a line and width of text in pixels (0 before Create).
  int GetHeight() const;
  int GetWidth(const char *text, int len = -1) const;

 private:
  char name[256] = {};
  int size = 0;
  unsigned style = 0;
  DTexFont *texFont = nullptr;
};
