// QTitleBar: caption of the real window and a dark strip with the text.
#include "ui/qtitlebar.h"

#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qplatform.h"

namespace {
constexpr QColor STRIP(30, 70, 84);
constexpr QColor STRIP_LINE(83, 153, 165);
constexpr int PAD = 8;
}  // namespace

QTitleBar::QTitleBar(QWindow *parent, int x, int y, int wid, int hgt, const char *t)
    : QWindow(parent, x, y, wid, hgt), text(t ? t : "") {
  ApplyCaption();
}

void QTitleBar::ApplyCaption() {
  if (QPWindow *pw = GetPlatformWindow()) qpSetWindowTitle(pw, text.c_str());
}

void QTitleBar::SetText(const char *t) {
  text = t ? t : "";
  ApplyCaption();
}

bool QTitleBar::Create() {
  bool ok = QWindow::Create();
  ApplyCaption();
  return ok;
}

void QTitleBar::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  if (r.wid <= 0 || r.hgt <= 0) return;
  cv->SetBlending(0);
  cv->SetColor(STRIP);
  cv->Rectfill(r);
  cv->SetColor(STRIP_LINE);
  cv->Rectfill(r.x, r.y + r.hgt - 1, r.wid, 1);
  cv->SetColor(qlook::INK_ON_DARK);
  QControlText(cv, text.c_str(), r.x + PAD, QControlTextTop(cv, r), QRect(r.x + PAD, r.y, r.wid - 2 * PAD, r.hgt));
}
