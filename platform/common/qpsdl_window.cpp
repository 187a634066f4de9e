// The display, the real window and its OpenGL context over SDL2, plus time
// and process services; the event source lives in each backend.
#include <unistd.h>

#include <cstdio>

#include "platform/common/qpsdl.h"

static bool displayOpen = false;
static bool offscreen = false;
static char lastError[512];
static const int MAX_WINDOWS = 8;
static QPWindow *windows[MAX_WINDOWS];

static void SetError(const char *what) { snprintf(lastError, sizeof(lastError), "%s: %s", what, SDL_GetError()); }

const char *qpLastError() { return lastError; }

bool qpsdlIsOffscreen() { return offscreen; }

QPWindow *qpsdlFindWindow(Uint32 id) {
  for (QPWindow *w : windows)
    if (w && SDL_GetWindowID(w->win) == id) return w;
  return nullptr;
}

// ---- Display ------------------------------------------------------------------------

bool qpOpenDisplay() {
  if (displayOpen) return true;
  const char *driver = qpsdlVideoDriver();
  if (driver) SDL_SetHint(SDL_HINT_VIDEODRIVER, driver);
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_TIMER) != 0) {
    SetError("SDL_Init");
    return false;
  }
  const char *cur = SDL_GetCurrentVideoDriver();
  offscreen = cur && SDL_strcmp(cur, "offscreen") == 0;
  // SDL falls back to its offscreen driver when it finds no display; a
  // window nobody can see is only wanted when asked for.
  if (offscreen && !driver && !SDL_getenv("SDL_VIDEODRIVER")) {
    SDL_Quit();
    return false;
  }
  SDL_StartTextInput();
  displayOpen = true;
  return true;
}

void qpCloseDisplay() {
  if (!displayOpen) return;
  for (QPWindow *&w : windows) {
    if (w) qpDestroyWindow(w);
  }
  if (qpsdlKeepDisplay()) return;
  SDL_Quit();
  displayOpen = false;
}

bool qpIsDisplayOpen() { return displayOpen; }

bool qpGetDisplaySize(int *wid, int *hgt) {
  SDL_DisplayMode m;
  if (!displayOpen || SDL_GetDesktopDisplayMode(0, &m) != 0) return false;
  *wid = m.w;
  *hgt = m.h;
  return true;
}

// ---- Windows ------------------------------------------------------------------------

QPWindow *qpCreateWindow(const char *title, int x, int y, int wid, int hgt, unsigned flags) {
  if (!displayOpen) return nullptr;
  int slot = 0;
  while (slot < MAX_WINDOWS && windows[slot]) slot++;
  if (slot == MAX_WINDOWS) {
    snprintf(lastError, sizeof(lastError), "too many windows (%d)", MAX_WINDOWS);
    return nullptr;
  }
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_COMPATIBILITY);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 2);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 1);
  SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
  SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
  SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 8);
  Uint32 f = SDL_WINDOW_OPENGL;
  if (flags & QPW_FULLSCREEN) f |= SDL_WINDOW_FULLSCREEN_DESKTOP;
  if (!(flags & QPW_NORESIZE)) f |= SDL_WINDOW_RESIZABLE;
  if (flags & QPW_HIDDEN) f |= SDL_WINDOW_HIDDEN;
  if (flags & QPW_NOBORDER) f |= SDL_WINDOW_BORDERLESS;
  SDL_Window *sw = SDL_CreateWindow(title ? title : "", x, y, wid, hgt, f);
  if (!sw) {
    SetError("SDL_CreateWindow");
    return nullptr;
  }
  SDL_GLContext ctx = SDL_GL_CreateContext(sw);
  if (!ctx) {
    SetError("SDL_GL_CreateContext");
    SDL_DestroyWindow(sw);
    return nullptr;
  }
  SDL_GL_SetSwapInterval(0);
  QPWindow *w = new QPWindow;
  w->win = sw;
  w->ctx = ctx;
  w->fullScreen = (flags & QPW_FULLSCREEN) != 0;
  w->shown = !(flags & QPW_HIDDEN);
  windows[slot] = w;
  return w;
}

void qpDestroyWindow(QPWindow *w) {
  if (!w) return;
  for (QPWindow *&slot : windows)
    if (slot == w) slot = nullptr;
  SDL_GL_DeleteContext(w->ctx);
  SDL_DestroyWindow(w->win);
  delete w;
}

QPWindow *qpGetMainWindow() {
  for (QPWindow *w : windows)
    if (w) return w;
  return nullptr;
}

void qpSetWindowTitle(QPWindow *w, const char *title) {
  if (w) SDL_SetWindowTitle(w->win, title);
}

void qpSetWindowPos(QPWindow *w, int x, int y) {
  if (w) SDL_SetWindowPosition(w->win, x, y);
}

void qpSetWindowSize(QPWindow *w, int wid, int hgt) {
  if (w) SDL_SetWindowSize(w->win, wid, hgt);
}

void qpGetWindowSize(QPWindow *w, int *wid, int *hgt) {
  *wid = *hgt = 0;
  if (w) SDL_GL_GetDrawableSize(w->win, wid, hgt);
}

bool qpSetFullScreen(QPWindow *w, bool on) {
  if (!w) return false;
  if (SDL_SetWindowFullscreen(w->win, on ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0) != 0) {
    SetError("SDL_SetWindowFullscreen");
    return false;
  }
  w->fullScreen = on;
  return true;
}

bool qpIsFullScreen(QPWindow *w) { return w && w->fullScreen; }

bool qpShowWindow(QPWindow *w, bool show) {
  if (!w) return false;
  if (show) SDL_ShowWindow(w->win);
  else SDL_HideWindow(w->win);
  w->shown = show;
  return true;
}

bool qpIsWindowShown(QPWindow *w) { return w && w->shown; }

bool qpMakeCurrent(QPWindow *w) {
  if (!w) return false;
  if (SDL_GL_MakeCurrent(w->win, w->ctx) != 0) {
    SetError("SDL_GL_MakeCurrent");
    return false;
  }
  return true;
}

void qpSwapBuffers(QPWindow *w) {
  if (!w) return;
  // Offscreen rendering has no display to pace it: finishing each frame keeps
  // the driver's command queue (and memory) from growing without bound.
  if (offscreen) {
    typedef void (*FinishFn)();
    static FinishFn finish = reinterpret_cast<FinishFn>(SDL_GL_GetProcAddress("glFinish"));
    if (finish) finish();
  }
  SDL_GL_SwapWindow(w->win);
}

void *qpGetCurrentContext() { return SDL_GL_GetCurrentContext(); }

void *qpGetProcAddress(const char *name) {
  if (!displayOpen || !SDL_GL_ExtensionSupported("GL_ARB_debug_output")) {
    if (SDL_strcmp(name, "glDebugMessageCallbackARB") == 0) return nullptr;
  }
  return SDL_GL_GetProcAddress(name);
}

// ---- Time and process ------------------------------------------------------------------

uint64_t qpTimeMs() { return SDL_GetTicks64(); }

void qpSleep(int ms) {
  if (ms > 0) SDL_Delay(Uint32(ms));
}

int qpProcessId() { return int(getpid()); }
