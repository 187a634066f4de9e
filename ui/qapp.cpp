// QApp: construction, procedure tables, the event loop and Exit.
#include "ui/qapp.h"

#include <cstdio>
#include <cstring>

#include "diag/qdebug.h"
#include "ui/qdialog.h"
#include "ui/qerror.h"
#include "ui/qplatform.h"
#include "ui/qwindow.h"
#include "ui/qwinmgr.h"

QApp *app = nullptr;

static QObject *deleteAtExit = nullptr;
void QSetDeleteAtExit(QObject *obj) { deleteAtExit = obj; }
QObject *QGetDeleteAtExit() { return deleteAtExit; }

// ---- QDisplay ---------------------------------------------------------------------

bool QDisplay::Open() {
  if (!open) open = qpOpenDisplay();
  return open;
}

void QDisplay::Close() {
  if (open) qpCloseDisplay();
  open = false;
}

// ---- Construction --------------------------------------------------------------------

QApp::QApp(int argc_, char **argv_, const char *appName) : argc(argc_), argv(argv_) {
  snprintf(name, sizeof(name), "%s", appName ? appName : "Tessel");
  app = this;
  winMgr = new QWindowManager();
  shell = new QDialogShell();
  display = new QDisplay();
  if (!display->Open()) {
    QERR_IN("QApp::QApp", "Can't open X11 display (%s)", name);
    QExit(0);
  }
  qpGetDisplaySize(&desktopWid, &desktopHgt);
  ownedRoot = new QWindow(nullptr, 0, 0, desktopWid, desktopHgt);
  ownedRoot->SetName("root");
  root = ownedRoot;
  QInstallMessageBox();
}

QApp::~QApp() {
  delete ownedRoot;
  delete winMgr;
  delete shell;
  delete display;
  if (app == this) {
    app = nullptr;
    qSetAppName(nullptr);
  }
}

void QApp::GetDesktopSize(int *wid, int *hgt) const {
  *wid = desktopWid;
  *hgt = desktopHgt;
}

void QApp::SetWindowManager(QEventSink *wm) {
  if (wm == winMgr) return;
  delete winMgr;
  winMgr = wm;
}

void QApp::SetFocusShell(QFocusShell *s) {
  if (s == shell) return;
  delete shell;
  shell = s;
}

void QApp::SetInfo(QInfo *i) {
  if (info) {
    QERR("QApp::SetInfo(); info is already open; call CloseInfo() first");
    return;
  }
  info = i;
}

// ---- Procedure tables ------------------------------------------------------------------
// Fixed tables: an overfull list refuses the newcomer and never overwrites.

bool QApp::AddCleanupProc(QAppProc proc) {
  if (cleanupCount >= MAX_CLEANUP_PROCS) {
    QERR(
         "QApp::AddCleanupProc(); out of space - memory leaks WILL occur!");
    return false;
  }
  cleanupProcs[cleanupCount++] = proc;
  return true;
}

bool QApp::AddCrashProc(QAppProc proc) {
  if (crashCount >= MAX_CRASH_PROCS) {
    QERR("QApp::AddCrashProc(); out of space");
    return false;
  }
  if (!proc) {
    QERR("QApp:AddCrashProc(); func=0");
    return false;
  }
  crashProcs[crashCount++] = proc;
  return true;
}

void QApp::RunCrashProcs() {
  for (int i = 0; i < crashCount; i++) crashProcs[i]();
}

bool QApp::AddKeyboardHandler(QEventProc handler) {
  for (QEventProc &slot : keyHandlers) {
    if (!slot) {
      slot = handler;
      return true;
    }
  }
  QWARN("QApp::AddKeyboardHandler(); out of handlers");
  return false;
}

bool QApp::RemoveKeyboardHandler(QEventProc handler) {
  for (QEventProc &slot : keyHandlers) {
    if (slot == handler && handler) {
      slot = nullptr;
      return true;
    }
  }
  QERR(
       "QApp::RemoveKeyboardHandler(); can't find handler (%p)", reinterpret_cast<void *>(handler));
  return false;
}

int QApp::AddTimer(int, QAppProc) {
  QERR("QApp:AddTimer() not supported on Win32/Linux");
  return 0;
}

int QApp::GetEventFD() {
  QERR("QApp:GetEventFD() not supported on this platform.");
  return 0;
}

int QApp::GetVTraceCount() {
  QERR("QApp:GetVTraceCount() no longer supported");
  return 0;
}

// ---- Event loop ------------------------------------------------------------------------

// Step 3: the input state, before anybody sees the event.
void QApp::UpdateInputState() {
  QEvent &e = event;
  switch (e.type) {
    case QEVENT_KEYPRESS:
      if (e.n == QK_SHIFT) modifiers |= QK_MOD_SHIFT;
      if (e.n == QK_CTRL) modifiers |= QK_MOD_CTRL;
      if (e.n == QK_ALT) modifiers |= QK_MOD_ALT;
      e.xn = e.n | modifiers;
      if (e.xn == QK_F11) SaveScreenshot(false);
      else if (e.xn == (int(QK_F11) | QK_MOD_CTRL | QK_MOD_ALT)) SaveScreenshot(true);
      break;
    case QEVENT_KEYRELEASE:
      if (e.n == QK_SHIFT) modifiers &= ~QK_MOD_SHIFT;
      if (e.n == QK_CTRL) modifiers &= ~QK_MOD_CTRL;
      if (e.n == QK_ALT) modifiers &= ~QK_MOD_ALT;
      e.xn = e.n | modifiers;
      break;
    case QEVENT_BUTTONPRESS: buttons |= 1u << (e.n % 32); break;
    case QEVENT_BUTTONRELEASE: buttons &= ~(1u << (e.n % 32)); break;
    case QEVENT_MOTIONNOTIFY:
      mouseX = e.x;
      mouseY = e.y;
      mouseInside = true;
      break;
    case QEVENT_LEAVE: mouseInside = false; break;
    case QEVENT_RESETMODIFIERS: modifiers &= ~QK_MOD_ALL; break;
    default: break;
  }
}

// Steps 4 and 5: true when some stage consumed the event.
bool QApp::Dispatch() {
  QEvent *e = &event;
  if (e->type == QEVENT_KEYPRESS || e->type == QEVENT_KEYRELEASE) {
    for (QEventProc h : keyHandlers) {
      if (h && h(e)) return true;
    }
  }
  if (winMgr && winMgr->ProcessEvent(e)) return true;
  if (eventProc && eventProc(e)) return true;
  if (shell && shell->ProcessEvent(e)) return true;
  return false;
}

// Step 7: an unconsumed close request of the main window ends the program.
void QApp::HandleClose(bool consumed) {
  if (consumed || event.type != QEVENT_CLOSE) return;
  closeWindow = event.win;
  bool isMain = (mainWindow && event.win == mainWindow) || (mainPW && event.pwin == mainPW);
  if (isMain || (!mainWindow && !mainPW)) Exit(0);
}

void QApp::PostEvent(const QEvent &ev) { posted.push_back(ev); }

void QApp::DropPostedEvents(const QWindow *w) {
  for (auto it = posted.begin(); it != posted.end();) {
    if (it->win == w)
      it = posted.erase(it);
    else
      ++it;
  }
}

int QApp::Run1() {
  if (posted.empty() && !qpEventPending()) {
    if (idleProc) idleProc();
    return 2;
  }
  event = QEvent();
  if (!posted.empty()) {
    event = posted.front();
    posted.pop_front();
  } else if (!qpNextEvent(&event)) {
    if (idleProc) idleProc();
    return 2;
  }
  if (!event.win && event.pwin && event.pwin == mainPW) event.win = mainWindow;
  UpdateInputState();
  bool consumed = Dispatch();
  int result = consumed ? 0 : 1;
  if (!consumed && event.type == QEVENT_CLOSE) result = 0;
  HandleClose(consumed);
  return result;
}

void QApp::Run(QWindow *modalWindow, int flag) {
  if (shell) {
    shell->SetFlag(flag);
    if (modalWindow) shell->SetModal(modalWindow);
  }
  for (;;) Run1();
}

void QApp::RunPending(QWindow *modalWindow, int flag) {
  if (shell) {
    shell->SetFlag(flag);
    if (modalWindow) shell->SetModal(modalWindow);
  }
  while (!posted.empty() || qpEventPending()) Run1();
}

// ---- Exit ------------------------------------------------------------------------------

void QApp::Exit(int code) {
  if (exitProc) exitProc();
  for (int i = 0; i < cleanupCount; i++) {
    QDBG("QApp: calling cleanup proc %d...\n", i);
    cleanupProcs[i]();
    QDBG("  cleanup %d returned.\n", i);
  }
  if (state & STATE_EXIT_RETURNS) {
    state &= ~STATE_EXIT_RETURNS;
    return;
  }
  if (deleteAtExit) {
    QObject *obj = deleteAtExit;
    deleteAtExit = nullptr;
    delete obj;
  }
  (void)code;  // the process always ends with 0, as it always has
  QExit(0);
}
