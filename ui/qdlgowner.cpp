#include "ui/qdlgowner.h"

#include <algorithm>

#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qfont.h"
#include "ui/qwindow.h"
#include "ui/qwinmgr.h"

QWindow *QDialogOwner() {
  if (app == nullptr || app->GetDisplay() == nullptr || !app->GetDisplay()->IsOpen()) return nullptr;
  QWindow *mw = app->GetMainWindow();
  if (mw == nullptr || !mw->IsCreated()) return nullptr;
  QWindowManager *wm = QGetWindowManager();
  QWindow *group = wm ? wm->GetActiveGroup() : nullptr;
  if (group != nullptr && group->IsCreated() && group->IsInside(mw)) return group;
  return mw;
}

QRect QDialogPlace(const QWindow *owner, const QRect &r) {
  if (owner == nullptr || owner->IsReal()) return r;
  QRect at = owner->GetAbsRect();
  return QRect(r.x - at.x, r.y - at.y, r.wid, r.hgt);
}

QRect QDialogCentred(int wid, int hgt) {
  int mw = 640, mh = 480;
  if (app && app->GetMainWindow()) {
    mw = app->GetMainWindow()->GetWidth();
    mh = app->GetMainWindow()->GetHeight();
  }
  wid = std::min(wid, mw);
  hgt = std::min(hgt, mh);
  return QRect((mw - wid) / 2, (mh - hgt) / 2, wid, hgt);
}

int QDialogLineHeight() {
  QCanvas *cv = app ? app->GetBC() : nullptr;
  QFont *font = cv ? cv->GetFont() : nullptr;
  if (font == nullptr || !font->IsCreated() || font->GetHeight() <= 0) return 16;
  return font->GetHeight();
}
