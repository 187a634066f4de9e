// QWindowManager: window list, hit test, tab focus, active group and the
// routing of mouse and key events to windows.
#include "ui/qwinmgr.h"

#include <algorithm>
#include <cstddef>

#include "diag/qdebug.h"
#include "ui/qwindow.h"

int QFocusNext(const std::vector<bool> &can_focus, int current, int step) {
  int n = static_cast<int>(can_focus.size());
  if (n == 0) return -1;
  step = step < 0 ? -1 : 1;
  // From no focus, forward starts at the first control and back at the last.
  int at = (current < 0 || current >= n) ? (step > 0 ? n - 1 : 0) : current;
  for (int i = 0; i < n; i++) {
    at = (at + step + n) % n;
    if (can_focus[static_cast<std::size_t>(at)]) return at;
  }
  return -1;
}

QWindowManager *QGetWindowManager() {
  return app ? dynamic_cast<QWindowManager *>(app->GetWindowManager()) : nullptr;
}

// ---- The list ------------------------------------------------------------------------

bool QWindowManager::InActiveGroup(const QWindow *w) const { return !activeGroup || w->IsInside(activeGroup); }

bool QWindowManager::AddWindow(QWindow *w) {
  // The window joins the list before the group test and stays there when
  // refused; outside the active group it takes no input anyway.
  windows.push_back(w);
  if (!InActiveGroup(w)) {
    QWARN(
          "QWindowManager:AddWindow(); not part of activegroup, refusing to add window");
    return false;
  }
  if (addCb) addCb(w, addUser);
  return true;
}

void QWindowManager::RemoveWindow(QWindow *w) {
  windows.erase(std::remove(windows.begin(), windows.end(), w), windows.end());
  if (focus == w) focus = nullptr;
  if (capture == w) capture = nullptr;
  if (hover == w) hover = nullptr;
  if (activeGroup == w) activeGroup = nullptr;
}

// ---- Hit test --------------------------------------------------------------------------

bool QWindowManager::TakesInput(const QWindow *w) const {
  return w->IsEnabled() && w->IsVisible() && InActiveGroup(w);
}

QWindow *QWindowManager::WindowAt(QPWindow *pw, int x, int y) const {
  for (QWindow *w : windows) {
    if (pw && w->GetPlatformWindow() != pw) continue;
    if (!TakesInput(w)) continue;
    if (w->GetAbsRect().Contains(x, y)) return w;
  }
  return nullptr;
}

// ---- Focus -------------------------------------------------------------------------------
// Over the windows that can take input; ties keep the earliest in the list.

QWindow *QWindowManager::FocusFirst() {
  QWindow *best = nullptr;
  int bestTab = 999999999;
  for (QWindow *w : windows) {
    if (!TakesInput(w) || w->GetTabOrder() < 0) continue;
    if (w->GetTabOrder() < bestTab) {
      best = w;
      bestTab = w->GetTabOrder();
    }
  }
  focus = best;
  return focus;
}

QWindow *QWindowManager::FocusLast() {
  QWindow *best = nullptr;
  int bestTab = -1;
  for (QWindow *w : windows) {
    if (!TakesInput(w)) continue;
    if (w->GetTabOrder() > bestTab) {
      best = w;
      bestTab = w->GetTabOrder();
    }
  }
  focus = best;
  return focus;
}

QWindow *QWindowManager::FocusNext() {
  int from = focus ? focus->GetTabOrder() : -1;
  QWindow *best = nullptr;
  for (QWindow *w : windows) {
    if (!TakesInput(w)) continue;
    int t = w->GetTabOrder();
    if (t > from && (!best || t < best->GetTabOrder())) best = w;
  }
  if (!best) return FocusFirst();
  focus = best;
  return focus;
}

QWindow *QWindowManager::FocusPrev() {
  int from = focus ? focus->GetTabOrder() : -1;
  QWindow *best = nullptr;
  for (QWindow *w : windows) {
    if (!TakesInput(w)) continue;
    int t = w->GetTabOrder();
    if (t >= 0 && t < from && (!best || t > best->GetTabOrder())) best = w;
  }
  if (!best) return FocusLast();
  focus = best;
  return focus;
}

// ---- Routing ------------------------------------------------------------------------------

// Motion also reaches the window the mouse just left, so that it can drop
// its hover state.
void QWindowManager::TrackHover(QWindow *now, QEvent *ev) {
  if (hover && hover != now) hover->OnEvent(ev);
  hover = now;
}

bool QWindowManager::ProcessEvent(QEvent *ev) {
  switch (ev->type) {
    case QEVENT_BUTTONPRESS: {
      QWindow *w = WindowAt(ev->pwin, ev->x, ev->y);
      if (!w) return false;
      bool wheel = ev->n == QMB_WHEELUP || ev->n == QMB_WHEELDOWN;
      if (!wheel) {
        capture = w;
        if (w->GetTabOrder() >= 0) focus = w;
      }
      return w->OnEvent(ev);
    }
    case QEVENT_BUTTONRELEASE: {
      QWindow *w = capture ? capture : WindowAt(ev->pwin, ev->x, ev->y);
      capture = nullptr;
      return w ? w->OnEvent(ev) : false;
    }
    case QEVENT_MOTIONNOTIFY: {
      QWindow *w = capture ? capture : WindowAt(ev->pwin, ev->x, ev->y);
      TrackHover(w, ev);
      return w ? w->OnEvent(ev) : false;
    }
    case QEVENT_LEAVE:
      if (hover) hover->OnEvent(ev);
      hover = nullptr;
      return false;
    case QEVENT_KEYPRESS: {
      // Shortcuts act wherever the focus is, and the key goes on.
      for (size_t i = 0; i < windows.size(); i++) {
        QWindow *w = windows[i];
        if (w->GetShortcut() && w->GetShortcut() == ev->n && TakesInput(w)) {
          w->OnShortcut();
          break;
        }
      }
      if (ev->n == QK_TAB) {
        if (ev->xn & QK_MOD_SHIFT)
          FocusPrev();
        else
          FocusNext();
        return true;
      }
      return SendToFocus(ev);
    }
    case QEVENT_KEYRELEASE:
    case QEVENT_CHAR: return SendToFocus(ev);
    default: return false;
  }
}

bool QWindowManager::SendToFocus(QEvent *ev) {
  if (!focus || !TakesInput(focus)) return false;
  return focus->OnEvent(ev);
}

// ---- Painting -------------------------------------------------------------------------------

void QWindowManager::Paint(QCanvas *cv, QPWindow *pw) {
  for (size_t i = 0; i < windows.size(); i++) {
    QWindow *w = windows[i];
    if (!w->IsVisible()) continue;
    if (pw && w->GetPlatformWindow() != pw) continue;
    w->Paint(cv);
  }
}
