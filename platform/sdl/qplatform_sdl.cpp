// The SDL2 backend's event source and message box.
//
// SDL events are translated into QEvent records with the framework's key
// codes. SDL picks the video driver; SDL_VIDEODRIVER=offscreen runs a
// program without any display, invisibly (frame-time measurements).
#include <cstdio>
#include <cstdlib>

#include "platform/common/qpsdl.h"

// Without a display the program must say so rather than run unseen.
const char *qpsdlVideoDriver() { return nullptr; }

bool qpsdlKeepDisplay() { return false; }

// ---- Key codes ------------------------------------------------------------------------

static int TranslateKey(SDL_Keycode k) {
  if (k >= SDLK_a && k <= SDLK_z) return 'A' + (k - SDLK_a);
  if (k >= SDLK_0 && k <= SDLK_9) return '0' + (k - SDLK_0);
  if (k >= SDLK_F1 && k <= SDLK_F12) return QK_F1 + (k - SDLK_F1);
  switch (k) {
    case SDLK_LSHIFT: case SDLK_RSHIFT: return QK_SHIFT;
    case SDLK_LCTRL: case SDLK_RCTRL: return QK_CTRL;
    case SDLK_LALT: case SDLK_RALT: return QK_ALT;
    case SDLK_RETURN: case SDLK_KP_ENTER: return QK_ENTER;
    case SDLK_ESCAPE: return QK_ESC;
    case SDLK_BACKSPACE: return QK_BACKSPACE;
    case SDLK_TAB: return QK_TAB;
    case SDLK_SPACE: return QK_SPACE;
    case SDLK_PAUSE: return QK_PAUSE;
    case SDLK_PAGEUP: return QK_PAGEUP;
    case SDLK_PAGEDOWN: return QK_PAGEDOWN;
    case SDLK_END: return QK_END;
    case SDLK_HOME: return QK_HOME;
    case SDLK_LEFT: return QK_LEFT;
    case SDLK_UP: return QK_UP;
    case SDLK_RIGHT: return QK_RIGHT;
    case SDLK_DOWN: return QK_DOWN;
    case SDLK_INSERT: return QK_INSERT;
    case SDLK_DELETE: return QK_DELETE;
    default: break;
  }
  // Other printable keys keep their character code; the rest are dropped.
  if (k > 32 && k < 127) return int(k);
  return 0;
}

// ---- Event queue -----------------------------------------------------------------------
// One SDL event can give several records (a wheel step is a press and a
// release; typed text several characters), so translated records queue here.

static const int QUEUE_SIZE = 64;
static QEvent queue[QUEUE_SIZE];
static int qHead = 0, qCount = 0;
static int mouseX = 0, mouseY = 0;

static void Push(int type, int n, int x, int y, QPWindow *w) {
  if (qCount == QUEUE_SIZE) return;  // a flood of typed text; the rest is dropped
  QEvent &e = queue[(qHead + qCount++) % QUEUE_SIZE];
  e = QEvent();
  e.type = type;
  e.n = n;
  e.x = x;
  e.y = y;
  e.pwin = w;
}

// Decodes UTF-8 text into Latin-1 characters (others are dropped).
static void PushText(const char *s, QPWindow *w) {
  const unsigned char *p = reinterpret_cast<const unsigned char *>(s);
  while (*p) {
    int c = *p++;
    if (c >= 0xC0 && c < 0xE0 && (*p & 0xC0) == 0x80) c = ((c & 0x1F) << 6) | (*p++ & 0x3F);
    else if (c >= 0x80) {
      while ((*p & 0xC0) == 0x80) p++;
      continue;
    }
    if (c < 256) Push(QEVENT_CHAR, c, mouseX, mouseY, w);
  }
}

static void TranslateWindowEvent(const SDL_WindowEvent &we, QPWindow *w) {
  switch (we.event) {
    case SDL_WINDOWEVENT_ENTER: Push(QEVENT_ENTER, 0, mouseX, mouseY, w); break;
    case SDL_WINDOWEVENT_LEAVE: Push(QEVENT_LEAVE, 0, mouseX, mouseY, w); break;
    case SDL_WINDOWEVENT_FOCUS_LOST: Push(QEVENT_RESETMODIFIERS, 0, mouseX, mouseY, w); break;
    case SDL_WINDOWEVENT_EXPOSED: Push(QEVENT_EXPOSE, 0, 0, 0, w); break;
    case SDL_WINDOWEVENT_SIZE_CHANGED: Push(QEVENT_RESIZE, 0, we.data1, we.data2, w); break;
    case SDL_WINDOWEVENT_CLOSE: Push(QEVENT_CLOSE, 0, mouseX, mouseY, w); break;
    default: break;
  }
}

static void Translate(const SDL_Event &ev) {
  switch (ev.type) {
    case SDL_KEYDOWN:
    case SDL_KEYUP: {
      int code = TranslateKey(ev.key.keysym.sym);
      if (code)
        Push(ev.type == SDL_KEYDOWN ? QEVENT_KEYPRESS : QEVENT_KEYRELEASE, code, mouseX, mouseY,
             qpsdlFindWindow(ev.key.windowID));
      break;
    }
    case SDL_TEXTINPUT: PushText(ev.text.text, qpsdlFindWindow(ev.text.windowID)); break;
    case SDL_MOUSEMOTION:
      mouseX = ev.motion.x;
      mouseY = ev.motion.y;
      Push(QEVENT_MOTIONNOTIFY, 0, mouseX, mouseY, qpsdlFindWindow(ev.motion.windowID));
      break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
      mouseX = ev.button.x;
      mouseY = ev.button.y;
      Push(ev.type == SDL_MOUSEBUTTONDOWN ? QEVENT_BUTTONPRESS : QEVENT_BUTTONRELEASE, ev.button.button, mouseX,
           mouseY, qpsdlFindWindow(ev.button.windowID));
      break;
    case SDL_MOUSEWHEEL: {
      if (ev.wheel.y == 0) break;
      int b = ev.wheel.y > 0 ? QMB_WHEELUP : QMB_WHEELDOWN;
      QPWindow *w = qpsdlFindWindow(ev.wheel.windowID);
      Push(QEVENT_BUTTONPRESS, b, mouseX, mouseY, w);
      Push(QEVENT_BUTTONRELEASE, b, mouseX, mouseY, w);
      break;
    }
    case SDL_WINDOWEVENT: TranslateWindowEvent(ev.window, qpsdlFindWindow(ev.window.windowID)); break;
    case SDL_QUIT: Push(QEVENT_CLOSE, 0, mouseX, mouseY, qpGetMainWindow()); break;
    default: break;
  }
}

bool qpEventPending() {
  SDL_Event ev;
  while (qCount == 0 && SDL_PollEvent(&ev)) Translate(ev);
  return qCount > 0;
}

bool qpNextEvent(QEvent *ev) {
  if (!qpEventPending()) return false;
  *ev = queue[qHead];
  qHead = (qHead + 1) % QUEUE_SIZE;
  qCount--;
  return true;
}

void qpGetMouse(int *x, int *y, unsigned *buttons) {
  int mx = 0, my = 0;
  Uint32 b = SDL_GetMouseState(&mx, &my);
  *x = mx;
  *y = my;
  // SDL's mask has bit (n-1) for button n; the framework's word has bit n.
  *buttons = unsigned(b) << 1;
}

// ---- Message box -----------------------------------------------------------------------

int qpMessageBox(QPWindow *owner, const char *title, const char *text, unsigned flags) {
  SDL_MessageBoxButtonData buttons[2];
  int count = 1;
  int answers[2] = {QPMB_IDOK, QPMB_IDCANCEL};
  if (flags & QPMB_YESNO) {
    answers[0] = QPMB_IDYES;
    answers[1] = QPMB_IDNO;
    buttons[0] = {SDL_MESSAGEBOX_BUTTON_RETURNKEY_DEFAULT, 0, "Yes"};
    buttons[1] = {SDL_MESSAGEBOX_BUTTON_ESCAPEKEY_DEFAULT, 1, "No"};
    count = 2;
  } else if (flags & QPMB_OKCANCEL) {
    buttons[0] = {SDL_MESSAGEBOX_BUTTON_RETURNKEY_DEFAULT, 0, "OK"};
    buttons[1] = {SDL_MESSAGEBOX_BUTTON_ESCAPEKEY_DEFAULT, 1, "Cancel"};
    count = 2;
  } else {
    buttons[0] = {SDL_MESSAGEBOX_BUTTON_RETURNKEY_DEFAULT | SDL_MESSAGEBOX_BUTTON_ESCAPEKEY_DEFAULT, 0, "OK"};
  }
  SDL_MessageBoxData data = {};
  data.flags = (flags & QPMB_ICONEXCLAMATION) ? SDL_MESSAGEBOX_WARNING : SDL_MESSAGEBOX_INFORMATION;
  data.window = owner ? owner->win : nullptr;
  data.title = title;
  data.message = text;
  data.numbuttons = count;
  data.buttons = buttons;
  int hit = -1;
  if (qpsdlIsOffscreen() || SDL_ShowMessageBox(&data, &hit) != 0) {
    // Nobody can see a box: the text goes to standard error, the answer is the default.
    fprintf(stderr, "[%s] %s\n", title ? title : "", text ? text : "");
    return answers[0];
  }
  if (hit < 0) return answers[count - 1];  // closed without a button: the cancel answer
  return answers[hit];
}
