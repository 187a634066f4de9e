// QLabel: text on the background, one or more lines ('\n' ends a line),
// left-aligned; centred vertically when it fits, else from the top, with
// the lines that do not fit left out. It takes no input and no focus.
// A line wider than the label runs on past its right edge, unless the label
// elides: then the line's middle gives way to "..." (base/qelide.h).
#pragma once

#include <string>

#include "ui/qwindow.h"

class QLabel : public QWindow {
 public:
  QLabel(QWindow *parent, int x, int y, int wid, int hgt, const char *text);
  const char *ClassName() const override { return "QLabel"; }

  void SetText(const char *t) { text = t ? t : ""; }
  const char *GetText() const { return text.c_str(); }
  int GetLineCount() const;
  void SetElide(bool on) { elide = on; }
  bool GetElide() const { return elide; }

  void Paint(QCanvas *cv) override;

 private:
  std::string text;
  bool elide = false;
};
