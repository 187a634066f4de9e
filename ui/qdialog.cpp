// QDialog: modal run through the application's loop, the focus shell that
// hands events to the modal dialog, and the dialog's frame.
#include "ui/qdialog.h"

#include "ui/qcanvas.h"
#include "ui/qplatform.h"
#include "ui/qwinmgr.h"

QDialog::QDialog(QWindow *parent_, int x, int y, int wid, int hgt, const char *title_)
    : QWindow(parent_ ? parent_ : (app ? app->GetMainWindow() : nullptr), x, y, wid, hgt), title(title_ ? title_ : "") {
  SetName(title.c_str());
}

QDialog::~QDialog() {
  if (app && app->GetFocusShell() && app->GetFocusShell()->GetModal() == this) app->GetFocusShell()->SetModal(nullptr);
}

int QDialog::Execute() {
  if (!app) return result;
  if (!IsCreated() && !Create()) return result;
  QWindowManager *wm = QGetWindowManager();
  QFocusShell *shell = app->GetFocusShell();
  QWindow *oldGroup = wm ? wm->GetActiveGroup() : nullptr;
  QWindow *oldFocus = wm ? wm->GetFocus() : nullptr;
  QWindow *oldModal = shell ? shell->GetModal() : nullptr;
  if (wm) {
    wm->SetActiveGroup(this);
    // Keep a focus that a subclass gave one of its own windows.
    if (!wm->GetFocus() || !wm->GetFocus()->IsInside(this)) wm->FocusFirst();
  }
  if (shell) shell->SetModal(this);
  Show();
  result = 0;
  while (result == 0) {
    // Without an idle procedure nothing paints or waits between events.
    if (app->Run1() == 2 && !app->HasIdleProc()) qpSleep(1);
  }
  if (shell && shell->GetModal() == this) shell->SetModal(oldModal);
  if (wm) {
    if (wm->GetActiveGroup() == this) wm->SetActiveGroup(oldGroup);
    // The earlier focus comes back only if it still exists in the list.
    wm->SetFocus(nullptr);
    for (int i = 0; i < wm->GetWindowCount(); i++) {
      if (wm->GetWindow(i) == oldFocus) wm->SetFocus(oldFocus);
    }
  }
  Hide();
  return result;
}

void QDialog::Filter(QEvent *) {}

void QDialog::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  // Drop shadow, body, title strip, frame.
  cv->SetBlending(QCANVAS_BLEND_ALPHA);
  cv->SetColor(0, 0, 0, 110);
  cv->Rectfill(r.x + 5, r.y + 5, r.wid, r.hgt);
  cv->SetBlending(QCANVAS_BLEND_OFF);
  cv->SetColor(44, 48, 54);
  cv->Rectfill(r);
  cv->SetColor(30, 70, 84);
  cv->Rectfill(r.x, r.y, r.wid, TITLE_HEIGHT);
  cv->SetColor(QCANVAS_PX_LTGRAY);
  cv->Rectline(r);
  if (!title.empty() && cv->GetFont()) {
    cv->SetColor(QCANVAS_PX_WHITE);
    cv->Text(title.c_str(), r.x + 8, r.y + (TITLE_HEIGHT - cv->GetTextHeight()) / 2);
  }
}

bool QDialog::OnEvent(QEvent *ev) {
  if (router.Route(this, ev)) return true;
  return ev->type == QEVENT_BUTTONPRESS || ev->type == QEVENT_BUTTONRELEASE || ev->type == QEVENT_MOTIONNOTIFY;
}

bool QDialogShell::ProcessEvent(QEvent *ev) {
  if (QDialog *d = dynamic_cast<QDialog *>(modal)) d->Filter(ev);
  return false;
}
