// QTitleBar: the strip with the program's title at the top of the main
// window. Its text is also the caption of the real window it lives in.
#pragma once

#include <string>

#include "ui/qwindow.h"

class QTitleBar : public QWindow {
 public:
  QTitleBar(QWindow *parent, int x, int y, int wid, int hgt, const char *text);
  const char *ClassName() const override { return "QTitleBar"; }

  // Sets the text and the real window's caption.
  void SetText(const char *t);
  const char *GetText() const { return text.c_str(); }

  // Also gives the real window the caption.
  bool Create() override;
  void Paint(QCanvas *cv) override;

 private:
  void ApplyCaption();
  std::string text;
};
