// QButton input: mouse clicks through the push logic, Space and Enter with
// the focus, and the shortcut key.
#include "ui/qbutton.h"

#include "ui/qcontrol.h"
#include "ui/qevent.h"
#include "ui/qwinmgr.h"

namespace {

// True when a window that takes input has `key` as its shortcut: the window
// manager has already clicked that one, and the key is not for the focus.
bool ShortcutTaken(int key) {
  QWindowManager *wm = QGetWindowManager();
  if (!wm) return false;
  for (int i = 0; i < wm->GetWindowCount(); i++) {
    QWindow *w = wm->GetWindow(i);
    if (w->GetShortcut() == key && w->IsEnabled() && w->IsVisible() && wm->InActiveGroup(w)) return true;
  }
  return false;
}

}  // namespace

QButton::QButton(QWindow *parent, int x, int y, int wid, int hgt, const char *t)
    : QWindow(parent, x, y, wid, hgt), text(t ? t : "") {
  SetTabOrder(QControlNextTab());
}

bool QButton::OnEvent(QEvent *ev) {
  if (!IsEnabled()) {
    push.Reset();
    return false;
  }
  bool clicked = false, consumed = false;
  if (QControlPushMouse(this, push, *ev, &clicked, &consumed)) {
    if (clicked) PostControlEvent(QEVENT_CLICK);
    return consumed;
  }
  if (ev->type != QEVENT_KEYPRESS || (ev->n != QK_SPACE && ev->n != QK_ENTER)) return false;
  if (!ShortcutTaken(ev->n)) PostControlEvent(QEVENT_CLICK);
  return true;
}

void QButton::OnShortcut() {
  if (IsEnabled() && IsVisible()) PostControlEvent(QEVENT_CLICK);
}
