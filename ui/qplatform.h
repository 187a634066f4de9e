// The one interface between the framework and the window system.
//
// Everything the user interface needs from the platform goes through these
// functions: the display, one real top-level window with an OpenGL 1.x
// (compatibility) context, buffer swaps, events translated into QEvent
// records (ui/qevent.h), the mouse, a modal message box, time and the
// process id. Two backends implement them; a program links exactly one:
//   platform/sdl       the real window (SDL2); under SDL's "offscreen" video
//                      driver it runs with no X server at all;
//   platform/headless  a scripted event source for tests (the GL context
//                      comes from SDL's offscreen driver); tests feed events
//                      through platform/headless/qpscript.h.
// No code above platform/ includes a window-system header.
#pragma once

#include <cstdint>

#include "ui/qevent.h"

struct QPWindow;  // a real top-level window; opaque above platform/

// Window flags for qpCreateWindow.
enum : unsigned {
  QPW_FULLSCREEN = 0x1,  // cover the display
  QPW_NORESIZE = 0x2,    // the user cannot resize it
  QPW_HIDDEN = 0x4,      // create it hidden
  QPW_NOBORDER = 0x8,    // no window-manager decoration
};

// Message box buttons (flags) and answers.
enum : unsigned {
  QPMB_OK = 0x0,
  QPMB_OKCANCEL = 0x1,
  QPMB_YESNO = 0x4,
  QPMB_ICONEXCLAMATION = 0x30,
};
enum : int {
  QPMB_IDOK = 1,
  QPMB_IDCANCEL = 2,
  QPMB_IDYES = 6,
  QPMB_IDNO = 7,
};

// ---- Display -----------------------------------------------------------------
// Opens the connection to the window system. False (with the reason in
// qpLastError) when there is none.
bool qpOpenDisplay();
void qpCloseDisplay();
bool qpIsDisplayOpen();
// Size of the desktop; false when unknown.
bool qpGetDisplaySize(int *wid, int *hgt);
// The platform's text for the last failure ("" when none).
const char *qpLastError();

// ---- The real window and its OpenGL context -------------------------------------
// Creates a top-level window of the client size given, with an OpenGL
// compatibility context made current. Null on failure (reported by caller).
QPWindow *qpCreateWindow(const char *title, int x, int y, int wid, int hgt, unsigned flags);
void qpDestroyWindow(QPWindow *w);
void qpSetWindowTitle(QPWindow *w, const char *title);
void qpSetWindowPos(QPWindow *w, int x, int y);
void qpSetWindowSize(QPWindow *w, int wid, int hgt);
// The client (drawable) size.
void qpGetWindowSize(QPWindow *w, int *wid, int *hgt);
bool qpSetFullScreen(QPWindow *w, bool on);
bool qpIsFullScreen(QPWindow *w);
// Shows or hides the window; false when the window system refused.
bool qpShowWindow(QPWindow *w, bool show);
bool qpIsWindowShown(QPWindow *w);
bool qpMakeCurrent(QPWindow *w);
// Shows the back buffer (after finishing the frame's drawing).
void qpSwapBuffers(QPWindow *w);
// The window the framework draws into by default (the first one created).
QPWindow *qpGetMainWindow();
// The current OpenGL context (for diagnostics) and extension entry points.
void *qpGetCurrentContext();
void *qpGetProcAddress(const char *name);

// ---- Events --------------------------------------------------------------------
// True when an event can be fetched without waiting.
bool qpEventPending();
// Fetches the next event into `ev` (type, n, x, y, pwin); false when none.
bool qpNextEvent(QEvent *ev);
// Current mouse position in the main window and the button word (bit n set
// while button n is down).
void qpGetMouse(int *x, int *y, unsigned *buttons);

// ---- Message box -----------------------------------------------------------------
// A modal box with the buttons of `flags`; returns one of QPMB_ID*.
int qpMessageBox(QPWindow *owner, const char *title, const char *text, unsigned flags);

// ---- Time and process --------------------------------------------------------------
// Milliseconds since an arbitrary start, monotonic.
uint64_t qpTimeMs();
void qpSleep(int ms);
int qpProcessId();
