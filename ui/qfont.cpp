// QFont: a named texture font for canvases.
#include "ui/qfont.h"

#include <cmath>
#include <cstdio>

#include "diag/qdebug.h"
#include "ui/dtexfont.h"

QFont::QFont(const char *name_, int size_, unsigned style_) : size(size_), style(style_) {
  snprintf(name, sizeof(name), "%s", name_ ? name_ : "");
}

bool QFont::Create() {
  if (texFont) {
    QERR("QFont::Create(); font '%s' already created", name);
    return false;
  }
  DTexFont *tf = new DTexFont();
  if (!tf->Load(name)) {
    delete tf;
    return false;
  }
  texFont = tf;
  return true;
}

bool QFont::CreateFixed(int charWid, int lineHgt) {
  if (texFont) {
    QERR("QFont::Create(); font '%s' already created", name);
    return false;
  }
  texFont = new DTexFont();
  texFont->CreateFixed(charWid, lineHgt);
  return true;
}

int QFont::GetHeight() const { return texFont ? texFont->GetHeight() : 0; }

int QFont::GetWidth(const char *text, int len) const {
  return texFont ? int(std::lround(texFont->GetWidth(text, len))) : 0;
}
