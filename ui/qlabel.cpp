// QLabel drawing: line by line in the ink of the background it stands on.
#include "ui/qlabel.h"

#include <algorithm>

#include "base/qelide.h"
#include "ui/qcanvas.h"
#include "ui/qcontrol.h"

QLabel::QLabel(QWindow *parent, int x, int y, int wid, int hgt, const char *t)
    : QWindow(parent, x, y, wid, hgt), text(t ? t : "") {}

int QLabel::GetLineCount() const {
  if (text.empty()) return 0;
  return int(std::count(text.begin(), text.end(), '\n')) + 1;
}

void QLabel::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  if (text.empty() || !cv->GetFont() || r.wid <= 0 || r.hgt <= 0) return;
  int lh = std::max(1, cv->GetTextHeight());
  int lines = GetLineCount();
  // Lines overhang by a pixel or two below; only whole lines are shown.
  int fit = std::max(1, std::min(lines, (r.hgt + lh / 4) / lh));
  int y = fit == lines ? r.y + (r.hgt - lines * lh) / 2 : r.y;
  cv->SetBlending(0);
  cv->SetColor(QControlInk(this));
  size_t at = 0;
  for (int i = 0; i < fit; i++) {
    size_t end = text.find('\n', at);
    std::string line = text.substr(at, end == std::string::npos ? std::string::npos : end - at);
    if (elide) line = QElideMiddle(line, r.wid, [cv](const std::string &t) { return cv->GetTextWidth(t.c_str()); });
    QControlText(cv, line.c_str(), r.x, y + i * lh, r, QCONTROL_TEXT_OVERFLOW);
    if (end == std::string::npos) break;
    at = end + 1;
  }
}
