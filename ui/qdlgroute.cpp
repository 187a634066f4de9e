#include "ui/qdlgroute.h"

#include "ui/qevent.h"
#include "ui/qwindow.h"
#include "ui/qwinmgr.h"

QWindow *QDialogRouter::ChildAt(const QWindow *dlg, int x, int y) {
  QWindowManager *wm = QGetWindowManager();
  if (wm == nullptr) return nullptr;
  QWindow *found = nullptr;
  for (int i = 0; i < wm->GetWindowCount(); i++) {
    QWindow *w = wm->GetWindow(i);
    if (w == dlg || !w->IsInside(dlg) || !w->IsVisible() || !w->IsEnabled()) continue;
    if (w->GetAbsRect().Contains(x, y)) found = w;
  }
  return found;
}

bool QDialogRouter::Route(QWindow *dlg, QEvent *ev) {
  switch (ev->type) {
    case QEVENT_BUTTONPRESS: {
      QWindow *w = ChildAt(dlg, ev->x, ev->y);
      if (w == nullptr) return false;
      if (ev->n != QMB_WHEELUP && ev->n != QMB_WHEELDOWN) {
        held = w;
        if (w->GetTabOrder() >= 0) w->Focus();
      }
      w->OnEvent(ev);
      return true;
    }
    case QEVENT_BUTTONRELEASE: {
      QWindow *w = held ? held : ChildAt(dlg, ev->x, ev->y);
      held = nullptr;
      if (w == nullptr) return false;
      w->OnEvent(ev);
      return true;
    }
    case QEVENT_MOTIONNOTIFY: {
      QWindow *w = held ? held : ChildAt(dlg, ev->x, ev->y);
      if (hover && hover != w) hover->OnEvent(ev);
      hover = w;
      if (w == nullptr) return false;
      w->OnEvent(ev);
      return true;
    }
    case QEVENT_LEAVE:
      if (hover) hover->OnEvent(ev);
      hover = nullptr;
      return false;
    default:
      return false;
  }
}
