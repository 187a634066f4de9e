// QWindow: tree, flags, creation rules, background texture and the control
// event a window posts into the application's loop.
#include "ui/qwindow.h"

#include <GL/gl.h>

#include "diag/qdebug.h"
#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qimage.h"
#include "ui/qplatform.h"
#include "ui/qwinmgr.h"

QWindow::QWindow(QWindow *parent_, int x, int y, int wid, int hgt)
    : parent(parent_ == this ? nullptr : parent_), rect(x, y, wid, hgt) {}

QWindow::~QWindow() {
  if (QWindowManager *wm = QGetWindowManager()) wm->RemoveWindow(this);
  if (app) app->DropPostedEvents(this);
  if (texId) glDeleteTextures(1, &texId);
  if (ownsPlatformWindow && pwin) qpDestroyWindow(pwin);
}

// ---- Preferences before creation ------------------------------------------------------
// Each reports and refuses once the window exists: the platform window has
// been made with the old preferences.

static bool RefuseAfterCreate(const QWindow *w, const char *func) {
  if (!w->IsCreated()) return false;
  QWARN_IN(func, "QWindow:%s() called after window was created", func);
  return true;
}

static void SetBit(unsigned &flags, unsigned bit, bool on) { flags = on ? (flags | bit) : (flags & ~bit); }

bool QWindow::MakeRealX() {
  if (RefuseAfterCreate(this, "MakeRealX")) return false;
  flags |= QWF_REALX;
  return true;
}

bool QWindow::MakeSoftWindow() {
  if (RefuseAfterCreate(this, "MakeSoftWindow")) return false;
  flags &= ~QWF_REALX;
  return true;
}

bool QWindow::PrefFullScreen(bool on) {
  if (RefuseAfterCreate(this, "PrefFullScreen")) return false;
  SetBit(flags, QWF_FULLSCREEN, on);
  return true;
}

bool QWindow::PrefNoResize(bool on) {
  if (RefuseAfterCreate(this, "PrefNoResize")) return false;
  SetBit(flags, QWF_NORESIZE, on);
  return true;
}

bool QWindow::PrefWM(bool on) {
  if (RefuseAfterCreate(this, "PrefWM")) return false;
  SetBit(flags, QWF_PREFWM, on);
  return true;
}

// ---- Creation ------------------------------------------------------------------------------

bool QWindow::Create() {
  if (IsCreated()) return true;
  if (IsReal()) {
    if (!pwin) {
      unsigned pf = 0;
      if (flags & QWF_FULLSCREEN) pf |= QPW_FULLSCREEN;
      if (flags & QWF_NORESIZE) pf |= QPW_NORESIZE;
      if (flags & QWF_HIDDEN) pf |= QPW_HIDDEN;
      pwin = qpCreateWindow(name.empty() ? "Tessel" : name.c_str(), rect.x, rect.y, rect.wid, rect.hgt, pf);
      if (!pwin) {
        QERR("QWindow::Create(); can't open the window (%s)", qpLastError());
        return false;
      }
      ownsPlatformWindow = true;
    }
    flags |= QWF_CREATED;
    return true;
  }
  if (!parent || !parent->GetPlatformWindow()) {
    QERR("QWindow::Create() without a parent real X window");
    return false;
  }
  flags |= QWF_CREATED;
  if (QWindowManager *wm = QGetWindowManager()) {
    if (!wm->AddWindow(this)) return false;
  }
  return true;
}

// ---- Tree and geometry ------------------------------------------------------------------

QPWindow *QWindow::GetPlatformWindow() const {
  for (const QWindow *w = this; w; w = w->parent) {
    if (w->IsReal()) return w->pwin;
  }
  return nullptr;
}

QRect QWindow::GetAbsRect() const {
  QRect r(0, 0, rect.wid, rect.hgt);
  for (const QWindow *w = this; w && !w->IsReal(); w = w->parent) {
    r.x += w->rect.x;
    r.y += w->rect.y;
  }
  return r;
}

void QWindow::Move(int x, int y) {
  rect.x = x;
  rect.y = y;
  if (IsReal() && pwin && IsCreated()) qpSetWindowPos(pwin, x, y);
}

void QWindow::Size(int wid, int hgt) {
  rect.wid = wid;
  rect.hgt = hgt;
  if (IsReal() && pwin && IsCreated()) qpSetWindowSize(pwin, wid, hgt);
}

bool QWindow::IsInside(const QWindow *ancestor) const {
  for (const QWindow *w = this; w; w = w->parent) {
    if (w == ancestor) return true;
  }
  return false;
}

// ---- State ------------------------------------------------------------------------------------

bool QWindow::IsVisible() const {
  for (const QWindow *w = this; w; w = w->parent) {
    if (w->flags & QWF_HIDDEN) return false;
  }
  return true;
}

void QWindow::Show() {
  flags &= ~QWF_HIDDEN;
  if (IsReal() && pwin) qpShowWindow(pwin, true);
}

bool QWindow::Hide() {
  if (IsReal() && pwin && !qpShowWindow(pwin, false)) {
    QWARN("Can't hide X QWindow");
    return false;
  }
  flags |= QWF_HIDDEN;
  return true;
}

void QWindow::Enable(bool on) { SetBit(flags, QWF_DISABLED, !on); }

bool QWindow::HasFocus() const {
  QWindowManager *wm = QGetWindowManager();
  return wm && wm->GetFocus() == this;
}

void QWindow::Focus() {
  if (QWindowManager *wm = QGetWindowManager()) wm->SetFocus(this);
}

// ---- Background texture ------------------------------------------------------------------------

bool QWindow::SetTexture(const char *tgaFile, int tileW, int tileH) {
  QImage img;
  if (!QTgaRead(tgaFile, img)) return false;
  if (texId) glDeleteTextures(1, &texId);
  texId = QImageToTexture(img, true);
  texWid = img.GetWidth();
  texHgt = img.GetHeight();
  tileWid = tileW;
  tileHgt = tileH;
  return true;
}

// Draws the texture over `r` with texture coordinates (u1, v1) at the far corner.
static void TexturedQuad(const QCanvas *cv, unsigned tex, const QRect &r, float u1, float v1) {
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, tex);
  glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
  glColor4ub(255, 255, 255, 255);
  float l = float(cv->MapX(r.x)), rt = float(cv->MapX(r.x + r.wid));
  float t = float(cv->MapY(r.y)) + 1.0f, b = float(cv->MapY(r.y + r.hgt)) + 1.0f;
  glBegin(GL_QUADS);
  glTexCoord2f(0, 0);
  glVertex2f(l, t);
  glTexCoord2f(u1, 0);
  glVertex2f(rt, t);
  glTexCoord2f(u1, v1);
  glVertex2f(rt, b);
  glTexCoord2f(0, v1);
  glVertex2f(l, b);
  glEnd();
  glDisable(GL_TEXTURE_2D);
}

void QWindow::PaintTexture(QCanvas *cv) {
  if (!texId) {
    QWARN("QWindow:PaintTexture(); no texture");
    return;
  }
  if (tileWid == 0) {
    QWARN("QWindow:PaintTexture(); texGrid.wid=0");
    return;
  }
  int th = tileHgt > 0 ? tileHgt : texHgt;
  QRect r = GetAbsRect();
  TexturedQuad(cv, texId, r, float(r.wid) / float(tileWid), float(r.hgt) / float(th));
}

void QWindow::PaintTextureStretched(QCanvas *cv) {
  if (!texId) {
    QWARN("QWindow:PaintTexture(); no texture");
    return;
  }
  TexturedQuad(cv, texId, GetAbsRect(), 1.0f, 1.0f);
}

// ---- Drawing and input ----------------------------------------------------------------------------

void QWindow::Paint(QCanvas *cv) {
  if (texId) PaintTexture(cv);
}

bool QWindow::OnEvent(QEvent *) { return false; }

void QWindow::PostControlEvent(int type, int n) {
  if (!app) return;
  QEvent ev;
  ev.type = type;
  ev.n = n;
  ev.win = this;
  ev.pwin = GetPlatformWindow();
  QRect r = GetAbsRect();
  ev.x = r.x;
  ev.y = r.y;
  app->PostEvent(ev);
}
