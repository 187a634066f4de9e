// QApp: the one application object of a program.
//
// It opens the display, keeps the input state (modifier keys, mouse buttons,
// mouse position), runs the event loop that hands each event to keyboard
// handlers, the window manager, the program's event procedure and the focus
// shell, saves screenshots on F11 / Control+Alt+F11, and ends the process
// through an ordered list of cleanup procedures.
//
// Dispatch of one event (Run1, and each pass of Run):
//   1. no pending event: idle procedure, result 2;
//   2. fetch it; 3. update the input state (and screenshot keys);
//   4. key press/release: keyboard handlers in slot order;
//   5. window manager, event procedure, focus shell; first true consumes;
//   6. unconsumed and not a close request: result 1 (consumed: 0);
//   7. unconsumed close request of the main window: Exit(0).
//
// The window manager and the focus shell belong to the window layer; they
// join the loop as QEventSink objects handed to SetWindowManager and
// SetFocusShell (QApp owns them from then on).
#pragma once

#include <deque>

#include "ui/qevent.h"
#include "ui/qobject.h"

class QInfo;
class QWindow;
class QCanvas;
struct QPWindow;

// A stage of event dispatch: returns true when it consumed the event.
class QEventSink : public QObject {
 public:
  virtual bool ProcessEvent(QEvent *ev) = 0;
};

// The shell that keeps modal windows modal. The default one consumes nothing.
class QFocusShell : public QEventSink {
 public:
  const char *ClassName() const override { return "QFocusShell"; }
  bool ProcessEvent(QEvent *) override { return false; }
  // The flag given to QApp::Run.
  virtual void SetFlag(int flag) { this->flag = flag; }
  int GetFlag() const { return flag; }
  // Registers the modal window and brings it up; null ends modality.
  virtual void SetModal(QWindow *w) { modal = w; }
  QWindow *GetModal() const { return modal; }

 protected:
  int flag = 0;
  QWindow *modal = nullptr;
};

// Display settings with their defaults.
struct QDisplayMode {
  int wid = 640, hgt = 480;
  int colorBits = 32, depthBits = 24;
  int stencilBits = 8, alphaBits = 8;
  int rate = 60;
  float factor = 1.0f;
};

// The connection to the window system.
class QDisplay : public QObject {
 public:
  const char *ClassName() const override { return "QDisplay"; }
  bool Open();
  void Close();
  bool IsOpen() const { return open; }
  ~QDisplay() override { Close(); }

 private:
  bool open = false;
};

typedef void (*QAppProc)();
typedef bool (*QEventProc)(QEvent *ev);

class QApp : public QObject {
 public:
  static constexpr int MAX_KEYBOARD_HANDLERS = 5;
  static constexpr int MAX_CLEANUP_PROCS = 100;
  static constexpr int MAX_CRASH_PROCS = 10;

  // State word bits.
  enum : unsigned {
    STATE_EXIT_RETURNS = 0x1,  // the next Exit runs its procedures and returns
  };

  // Opens the display; when it cannot, reports and ends the process.
  QApp(int argc = 0, char **argv = nullptr, const char *appName = nullptr);
  ~QApp() override;
  QApp(const QApp &) = delete;
  QApp &operator=(const QApp &) = delete;
  const char *ClassName() const override { return "QApp"; }

  const char *GetName() const { return name; }
  int GetArgc() const { return argc; }
  char **GetArgv() const { return argv; }

  // ---- Procedures ---------------------------------------------------------------
  bool AddCleanupProc(QAppProc proc);
  int GetCleanupProcCount() const { return cleanupCount; }
  bool AddCrashProc(QAppProc proc);
  int GetCrashProcCount() const { return crashCount; }
  void RunCrashProcs();
  bool AddKeyboardHandler(QEventProc handler);
  bool RemoveKeyboardHandler(QEventProc handler);
  void SetIdleProc(QAppProc proc) { idleProc = proc; }
  bool HasIdleProc() const { return idleProc != nullptr; }
  void SetEventProc(QEventProc proc) { eventProc = proc; }
  void SetExitProc(QAppProc proc) { exitProc = proc; }
  // Kept for callers of the old interface; all report that they are unsupported.
  int AddTimer(int ms, QAppProc proc);
  int GetEventFD();
  int GetVTraceCount();

  // ---- Settings ------------------------------------------------------------------
  // Attaches the settings tree (not owned).
  void SetInfo(QInfo *info);
  QInfo *GetInfo() const { return info; }
  // Forgets the settings tree (does not delete it).
  void CloseInfo() { info = nullptr; }
  QDisplayMode &GetDisplayMode() { return mode; }
  void GetDesktopSize(int *wid, int *hgt) const;

  // ---- Event loop ----------------------------------------------------------------
  // Handles at most one event: 2 = none (idle procedure called), 0 =
  // consumed, 1 = nobody consumed it.
  int Run1();
  // Passes `flag` to the focus shell, registers `modalWindow` with it if
  // given, then loops for ever (modal dialogs leave through their own end).
  void Run(QWindow *modalWindow = nullptr, int flag = 0);
  // The same set-up, then handles the pending events and returns.
  void RunPending(QWindow *modalWindow = nullptr, int flag = 0);
  // Queues an event (a control's click or change) that the loop dispatches
  // before the next platform event; the queue keeps the order of posting.
  void PostEvent(const QEvent &ev);
  // Forgets the queued events of a window that goes away.
  void DropPostedEvents(const QWindow *w);
  // Runs the exit procedure and the cleanup procedures; then returns if
  // STATE_EXIT_RETURNS was set (clearing it), else ends the process.
  void Exit(int code);
  unsigned GetState() const { return state; }
  void SetState(unsigned s) { state = s; }

  // ---- Input state ---------------------------------------------------------------
  QEvent *GetCurrentEvent() { return &event; }
  int GetModifiers() const { return modifiers; }
  bool IsShift() const { return (modifiers & QK_MOD_SHIFT) != 0; }
  bool IsControl() const { return (modifiers & QK_MOD_CTRL) != 0; }
  bool IsAlt() const { return (modifiers & QK_MOD_ALT) != 0; }
  // Clears Shift, Control and Alt (after a platform dialog had the keyboard).
  void ResetModifiers() { modifiers &= ~QK_MOD_ALL; }
  unsigned GetMouseButtons() const { return buttons; }
  bool IsButtonDown(int n) const { return (buttons >> (n % 32)) & 1; }
  int GetMouseX() const { return mouseX; }
  int GetMouseY() const { return mouseY; }
  bool IsMouseInside() const { return mouseInside; }
  // The window of the last close request.
  QWindow *GetCloseWindow() const { return closeWindow; }

  // ---- Owned and known objects -------------------------------------------------------
  QDisplay *GetDisplay() const { return display; }
  void SetWindowManager(QEventSink *wm);
  QEventSink *GetWindowManager() const { return winMgr; }
  void SetFocusShell(QFocusShell *shell);
  QFocusShell *GetFocusShell() const { return shell; }
  // The root window ("root") and the main (user-interface) window; not owned.
  void SetRoot(QWindow *w) { root = w; }
  QWindow *GetRoot() const { return root; }
  void SetMainWindow(QWindow *w, QPWindow *pw) { mainWindow = w; mainPW = pw; }
  QWindow *GetMainWindow() const { return mainWindow; }
  QPWindow *GetMainPlatformWindow() const { return mainPW; }
  // The back-buffer canvas; not owned.
  void SetBC(QCanvas *bc) { backCanvas = bc; }
  QCanvas *GetBC() const { return backCanvas; }

  // ---- Screenshots ---------------------------------------------------------------
  // The folder of screenshot names ("c:/t/") as it is on this platform.
  static const char *GetScreenshotDir();
  // Builds "c:/t/%s%05d.tga" (mapped) for the first number from 1 whose file
  // does not exist. False when no free number is left.
  static bool MakeScreenshotName(const char *kind, char *out, int outSize);
  // Saves the back-buffer canvas (ui = false) or the main window (ui = true).
  bool SaveScreenshot(bool ui);

 private:
  void UpdateInputState();
  bool Dispatch();
  void HandleClose(bool consumed);

  char name[64] = {};
  int argc = 0;
  char **argv = nullptr;
  unsigned state = 0;
  QDisplayMode mode;
  int desktopWid = 1280, desktopHgt = 1024;

  QAppProc idleProc = nullptr;
  QEventProc eventProc = nullptr;
  QAppProc exitProc = nullptr;
  QEventProc keyHandlers[MAX_KEYBOARD_HANDLERS] = {};
  QAppProc cleanupProcs[MAX_CLEANUP_PROCS] = {};
  int cleanupCount = 0;
  QAppProc crashProcs[MAX_CRASH_PROCS] = {};
  int crashCount = 0;

  QEvent event;
  std::deque<QEvent> posted;
  int modifiers = 0;
  unsigned buttons = 0;
  int mouseX = 0, mouseY = 0;
  bool mouseInside = false;
  QWindow *closeWindow = nullptr;

  QInfo *info = nullptr;
  QDisplay *display = nullptr;
  QEventSink *winMgr = nullptr;
  QFocusShell *shell = nullptr;
  QWindow *root = nullptr;
  QWindow *ownedRoot = nullptr;  // the "root" window made by the constructor
  QWindow *mainWindow = nullptr;
  QPWindow *mainPW = nullptr;
  QCanvas *backCanvas = nullptr;
};

// The current application object (null before the first QApp and after it
// is destroyed).
extern QApp *app;
