// QApp's screenshots: F11 saves the back-buffer canvas, Control+Alt+F11 the
// main window, as TGA files named "c:/t/%s%05d.tga".
//
// "c:/t/" is where the program has always put them; the library's path
// mapping (QMapPath) turns that folder into the system's temporary folder
// (TMPDIR, else /tmp) on this platform.
#include <GL/gl.h>

#include <cstdio>
#include <cstring>

#include "base/qfile.h"
#include "diag/qdebug.h"
#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qimage.h"
#include "ui/qplatform.h"

#undef QDIAG_TAG
#define QDIAG_TAG "qapp"

static const int MAX_SHOT_NUMBER = 99999;

const char *QApp::GetScreenshotDir() {
  static char dir[512];
  return QMapPath("c:/t/", dir, sizeof(dir));
}

static bool FileExists(const char *path) {
  FILE *f = fopen(path, "rb");
  if (!f) return false;
  fclose(f);
  return true;
}

bool QApp::MakeScreenshotName(const char *kind, char *out, int outSize) {
  char name[512];
  for (int i = 1; i <= MAX_SHOT_NUMBER; i++) {
    snprintf(name, sizeof(name), "c:/t/%s%05d.tga", kind, i);
    const char *mapped = QMapPath(name, out, size_t(outSize));
    if (mapped != out) snprintf(out, size_t(outSize), "%s", mapped);
    if (!FileExists(out)) return true;
  }
  return false;
}

// Reads a w x h rectangle at the bottom left of the given buffer.
static bool ReadBuffer(unsigned buffer, int wid, int hgt, QImage &img) {
  if (wid <= 0 || hgt <= 0) return false;
  img.Create(wid, hgt);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadBuffer(buffer);
  glReadPixels(0, 0, wid, hgt, GL_RGBA, GL_UNSIGNED_BYTE, img.GetPixels());
  img.FlipVertical();
  return true;
}

bool QApp::SaveScreenshot(bool ui) {
  const char *label = ui ? "UI" : "BC";
  bool present = ui ? (mainWindow != nullptr || mainPW != nullptr) : (backCanvas != nullptr);
  if (!present) {
    QDBG("> No %s present.\n", label);
    return false;
  }
  char path[600];
  if (!MakeScreenshotName(ui ? "ui" : "bc", path, sizeof(path))) return false;
  QDBG("> Saving screenshot of %s in '%s'\n", label, path);
  int wid = 0, hgt = 0;
  if (ui) {
    qpGetWindowSize(mainPW ? mainPW : qpGetMainWindow(), &wid, &hgt);
  } else {
    wid = backCanvas->GetTargetWidth();
    hgt = backCanvas->GetTargetHeight();
  }
  QImage img;
  if (!ReadBuffer(ui ? GL_FRONT : GL_BACK, wid, hgt, img)) return false;
  return QTgaWrite(path, img, QTGA_RGB, false);
}
