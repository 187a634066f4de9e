// The event record of the user interface and the codes it carries.
//
// The platform layer (ui/qplatform.h) translates window-system events into
// these records; QApp updates its input state from them and hands them to the
// keyboard handlers, the window manager, the program's event procedure and
// the focus shell. Key codes are the framework's own (the Win32 virtual-key
// numbers: Shift 16, Control 17, Alt 18, Enter 13, Escape 27, F11 122,
// 'A'..'Z' 65..90, '0'..'9' 48..57), whatever the window system beneath.
#pragma once

class QWindow;
struct QPWindow;

// Event types. The numbers are what the rest of the framework relies on.
enum : int {
  QEVENT_NONE = 0,
  QEVENT_KEYPRESS = 2,
  QEVENT_KEYRELEASE = 3,
  QEVENT_BUTTONPRESS = 4,
  QEVENT_BUTTONRELEASE = 5,
  QEVENT_MOTIONNOTIFY = 6,
  QEVENT_ENTER = 7,            // the mouse entered the real window
  QEVENT_LEAVE = 8,            // the mouse left it
  QEVENT_EXPOSE = 12,          // the real window needs repainting
  QEVENT_RESIZE = 22,          // the real window changed size: x, y = new width, height
  QEVENT_RESETMODIFIERS = 31,  // forget Shift, Control and Alt (focus went elsewhere)
  QEVENT_CHAR = 40,            // a typed character: n = its code (Latin-1), no key up
  QEVENT_CLICK = 100,          // a button control was pressed (win = the button)
  QEVENT_CLOSE = 105,          // the user asked to close a real window
};

// Key codes.
enum : int {
  QK_BACKSPACE = 8,
  QK_TAB = 9,
  QK_ENTER = 13,
  QK_SHIFT = 16,
  QK_CTRL = 17,
  QK_ALT = 18,
  QK_PAUSE = 19,
  QK_ESC = 27,
  QK_SPACE = 32,
  QK_PAGEUP = 33,
  QK_PAGEDOWN = 34,
  QK_END = 35,
  QK_HOME = 36,
  QK_LEFT = 37,
  QK_UP = 38,
  QK_RIGHT = 39,
  QK_DOWN = 40,
  QK_INSERT = 45,
  QK_DELETE = 46,
  QK_F1 = 112,
  QK_F10 = 121,
  QK_F11 = 122,
  QK_F12 = 123,
};

// Modifier bits of QApp's modifier word, ORed into the combined key code.
enum : int {
  QK_MOD_SHIFT = 0x10000,
  QK_MOD_CTRL = 0x40000,
  QK_MOD_ALT = 0x80000,
  QK_MOD_ALL = 0xD0000,
};

// Mouse buttons (the event's n for button press/release).
enum : int {
  QMB_LEFT = 1,
  QMB_MIDDLE = 2,
  QMB_RIGHT = 3,
  QMB_WHEELUP = 4,
  QMB_WHEELDOWN = 5,
};

struct QEvent {
  int type = QEVENT_NONE;
  int n = 0;   // key code, button number or character (16 bits significant)
  int xn = 0;  // combined key code: n | modifier word (set by QApp for keys)
  int x = 0;   // mouse position in the real window, top-left origin, y down
  int y = 0;
  QWindow *win = nullptr;    // the framework window the event concerns, if known
  QPWindow *pwin = nullptr;  // the platform window it came from, if any
};
