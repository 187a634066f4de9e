// QWindow: one rectangle of the user interface.
//
// The screen is a tree of windows under the application's root window. Most
// are soft windows: rectangles drawn with a QCanvas inside one real platform
// window. A real window (MakeRealX before Create) owns a platform window, or
// adopts one the program opened itself. Positions are relative to the parent;
// absolute rectangles are relative to the real window a window lives in.
//
// The window manager (ui/qwinmgr.h) hands mouse events to the window under
// the mouse and keys to the focus window through OnEvent, and paints every
// visible window in the order they were added through Paint.
#pragma once

#include <string>

#include "ui/qobject.h"
#include "render/qrect.h"

class QCanvas;
struct QEvent;
struct QPWindow;

// Window flags. NORESIZE, PREFWM, REALX and FULLSCREEN may only change while
// CREATED is clear.
enum : unsigned {
  QWF_DISABLED = 0x1,
  QWF_HIDDEN = 0x2,
  QWF_REALX = 0x4,
  QWF_CREATED = 0x8,
  QWF_NORESIZE = 0x10,
  QWF_PREFWM = 0x20,
  QWF_FULLSCREEN = 0x100,
};

// A control's "value changed by the user" event (sliders, radios, check boxes);
// QEVENT_CLICK (100) is a push button's click.
enum : int { QEVENT_CHANGE = 104 };

class QWindow : public QObject {
 public:
  // A window at (x, y) of `parent`, `wid` x `hgt` pixels. A null parent (or
  // the window itself) makes a top window.
  QWindow(QWindow *parent, int x, int y, int wid, int hgt);
  // Leaves the window manager and drops the focus if it had it. Children are
  // not deleted: their owners delete them.
  ~QWindow() override;
  QWindow(const QWindow &) = delete;
  QWindow &operator=(const QWindow &) = delete;
  const char *ClassName() const override { return "QWindow"; }

  // ---- Preferences before creation ------------------------------------------
  bool MakeRealX();
  bool MakeSoftWindow();
  bool PrefFullScreen(bool on = true);
  bool PrefNoResize(bool on = true);
  bool PrefWM(bool on = true);
  // A real window takes this platform window instead of opening its own.
  void AdoptPlatformWindow(QPWindow *pw) { pwin = pw; }

  // Soft window: needs a parent inside a real window ("QWindow::Create()
  // without a parent real X window" otherwise); joins the window manager.
  // Real window: opens (or adopts) its platform window. Sets CREATED.
  virtual bool Create();
  bool IsCreated() const { return (flags & QWF_CREATED) != 0; }

  // ---- Tree and geometry ----------------------------------------------------
  QWindow *GetParent() const { return parent; }
  // The platform window this window is drawn in: its own when real, else
  // the nearest real ancestor's (null when none).
  QPWindow *GetPlatformWindow() const;
  bool IsReal() const { return (flags & QWF_REALX) != 0; }
  int GetX() const { return rect.x; }
  int GetY() const { return rect.y; }
  int GetWidth() const { return rect.wid; }
  int GetHeight() const { return rect.hgt; }
  const QRect &GetRect() const { return rect; }
  // The rectangle in the coordinates of the real window it lives in (a real
  // window's own is at 0, 0).
  QRect GetAbsRect() const;
  void Move(int x, int y);
  void Size(int wid, int hgt);

  // ---- State -------------------------------------------------------------------
  unsigned GetFlags() const { return flags; }
  // Neither it nor any ancestor is hidden.
  bool IsVisible() const;
  bool IsEnabled() const { return (flags & QWF_DISABLED) == 0; }
  void Show();
  // False (with "Can't hide X QWindow") when a real window cannot be hidden.
  bool Hide();
  void Enable(bool on = true);
  void Disable() { Enable(false); }
  // Tab order; negative: never takes the focus through Tab.
  int GetTabOrder() const { return tabOrder; }
  void SetTabOrder(int n) { tabOrder = n; }
  bool HasFocus() const;
  // Makes this window the focus window of the window manager.
  void Focus();
  const char *GetName() const { return name.c_str(); }
  void SetName(const char *n) { name = n ? n : ""; }
  // True when `ancestor` is this window or one of its ancestors.
  bool IsInside(const QWindow *ancestor) const;

  // ---- Background texture -----------------------------------------------------------
  // Loads an image (TGA) as the background; tiles of `tileWid` x `tileHgt`.
  bool SetTexture(const char *tgaFile, int tileWid, int tileHgt);
  void PaintTexture(QCanvas *cv);
  void PaintTextureStretched(QCanvas *cv);

  // ---- Drawing and input ----------------------------------------------------------------
  // Draws the window in absolute coordinates (GetAbsRect). The base draws
  // the background texture, if any.
  virtual void Paint(QCanvas *cv);
  // An event routed to this window; true when consumed. Mouse coordinates
  // are those of the real window. The base consumes nothing.
  virtual bool OnEvent(QEvent *ev);
  // A key that acts on this window wherever the focus is (0: none), e.g.
  // Enter for an OK button. The window manager calls OnShortcut for it.
  int GetShortcut() const { return shortcut; }
  void SetShortcut(int key) { shortcut = key; }
  virtual void OnShortcut() {}
  // Queues a control event {type, n, win = this} into the application's
  // event loop, where the program's event procedure and dialogs see it.
  void PostControlEvent(int type, int n = 0);

 protected:
  QWindow *parent = nullptr;
  QPWindow *pwin = nullptr;  // real windows only
  QRect rect;
  unsigned flags = 0;
  int tabOrder = -1;
  int shortcut = 0;
  std::string name;
  // Background texture (OpenGL name), its size and tile size.
  unsigned texId = 0;
  int texWid = 0, texHgt = 0;
  int tileWid = 0, tileHgt = 0;
  bool ownsPlatformWindow = false;
};
