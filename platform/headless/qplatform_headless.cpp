// The headless backend: events come from a script (qpscript.h), the GL
// context from SDL's offscreen driver, message boxes answer from the script.
#include <cstdio>
#include <cstring>
#include <deque>

#include "platform/common/qpsdl.h"
#include "platform/headless/qpscript.h"

const char *qpsdlVideoDriver() { return "offscreen"; }

// Tests open and close the display many times: SDL and the GL driver stay
// loaded for the whole process instead of being reloaded each time (which
// is slow, and leaves the driver's allocations behind unloaded code).
bool qpsdlKeepDisplay() { return true; }

static std::deque<QEvent> script;
static int mouseX = 0, mouseY = 0;
static unsigned buttonWord = 0;
static int boxAnswer = QPMB_IDOK;
static int boxCount = 0;
static char boxTitle[256], boxText[4096];

// ---- Script ------------------------------------------------------------------------------

void qpsPushEvent(const QEvent &ev) { script.push_back(ev); }

static void Push(int type, int n, int x, int y) {
  QEvent e;
  e.type = type;
  e.n = n;
  e.x = x;
  e.y = y;
  script.push_back(e);
}

void qpsKeyPress(int code) { Push(QEVENT_KEYPRESS, code, mouseX, mouseY); }
void qpsKeyRelease(int code) { Push(QEVENT_KEYRELEASE, code, mouseX, mouseY); }
void qpsKeyTap(int code) {
  qpsKeyPress(code);
  qpsKeyRelease(code);
}
void qpsType(const char *text) {
  for (const unsigned char *p = reinterpret_cast<const unsigned char *>(text); *p; p++)
    Push(QEVENT_CHAR, *p, mouseX, mouseY);
}
void qpsMouseMove(int x, int y) { Push(QEVENT_MOTIONNOTIFY, 0, x, y); }
void qpsButtonPress(int x, int y, int button) { Push(QEVENT_BUTTONPRESS, button, x, y); }
void qpsButtonRelease(int x, int y, int button) { Push(QEVENT_BUTTONRELEASE, button, x, y); }
void qpsClick(int x, int y, int button) {
  qpsMouseMove(x, y);
  qpsButtonPress(x, y, button);
  qpsButtonRelease(x, y, button);
}
void qpsClose() { Push(QEVENT_CLOSE, 0, mouseX, mouseY); }
int qpsPendingCount() { return int(script.size()); }
void qpsClear() { script.clear(); }

void qpsSetMessageBoxAnswer(int answer) { boxAnswer = answer; }
int qpsMessageBoxCount() { return boxCount; }
const char *qpsLastMessageBoxTitle() { return boxTitle; }
const char *qpsLastMessageBoxText() { return boxText; }

// ---- Platform events --------------------------------------------------------------------

bool qpEventPending() { return !script.empty(); }

// The mouse follows the script as the events are fetched, as a real one would.
bool qpNextEvent(QEvent *ev) {
  if (script.empty()) return false;
  *ev = script.front();
  script.pop_front();
  if (!ev->pwin) ev->pwin = qpGetMainWindow();
  if (ev->type == QEVENT_MOTIONNOTIFY || ev->type == QEVENT_BUTTONPRESS || ev->type == QEVENT_BUTTONRELEASE) {
    mouseX = ev->x;
    mouseY = ev->y;
  }
  if (ev->type == QEVENT_BUTTONPRESS) buttonWord |= 1u << (ev->n % 32);
  if (ev->type == QEVENT_BUTTONRELEASE) buttonWord &= ~(1u << (ev->n % 32));
  return true;
}

void qpGetMouse(int *x, int *y, unsigned *buttons) {
  *x = mouseX;
  *y = mouseY;
  *buttons = buttonWord;
}

int qpMessageBox(QPWindow *, const char *title, const char *text, unsigned) {
  boxCount++;
  snprintf(boxTitle, sizeof(boxTitle), "%s", title ? title : "");
  snprintf(boxText, sizeof(boxText), "%s", text ? text : "");
  return boxAnswer;
}
