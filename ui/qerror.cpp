// OpenGL error helpers and the platform error report.
#include "ui/qerror.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <cerrno>
#include <cstring>

#include "diag/qdebug.h"
#include "ui/qplatform.h"

// ---- Pending errors ------------------------------------------------------------------

int QShowGLErrors(const char *where) {
  int count = 0;
  // A context without a current drawable keeps returning an error; 32 ends that.
  for (GLenum e = glGetError(); e != GL_NO_ERROR && count < 32; e = glGetError(), count++) {
    const GLubyte *text = gluErrorString(e);
    QERR("%s: OpenGL error (%d): %s", where, int(e),
         text ? reinterpret_cast<const char *>(text) : "?");
  }
  return count;
}

void QWindowsError(const char *where) {
  int e = errno;
  QERR("Windows error [%s / 0x%x]: %s\n", where, unsigned(e), strerror(e));
}

// ---- Live debug messages -------------------------------------------------------------

enum : unsigned {
  DBG_SOURCE_API = 0x8246,
  DBG_SOURCE_WINDOW_SYSTEM = 0x8247,
  DBG_SOURCE_SHADER_COMPILER = 0x8248,
  DBG_SOURCE_THIRD_PARTY = 0x8249,
  DBG_SOURCE_APPLICATION = 0x824A,
  DBG_SOURCE_OTHER = 0x824B,
  DBG_TYPE_ERROR = 0x824C,
  DBG_TYPE_DEPRECATED = 0x824D,
  DBG_TYPE_UNDEFINED = 0x824E,
  DBG_TYPE_PORTABILITY = 0x824F,
  DBG_TYPE_PERFORMANCE = 0x8250,
  DBG_SEVERITY_HIGH = 0x9146,
  DBG_SEVERITY_MEDIUM = 0x9147,
  DBG_OUTPUT_SYNCHRONOUS = 0x8242,
  DBG_OUTPUT = 0x92E0,
};

// The driver's API source has no name of its own in these messages ("Unknown").
const char *QGLSourceName(unsigned s) {
  switch (s) {
    case DBG_SOURCE_WINDOW_SYSTEM: return "Window System";
    case DBG_SOURCE_SHADER_COMPILER: return "Shader Compiler";
    case DBG_SOURCE_THIRD_PARTY: return "Third Party";
    case DBG_SOURCE_APPLICATION: return "Application";
    case DBG_SOURCE_OTHER: return "Other";
    default: return "Unknown";
  }
}

const char *QGLTypeName(unsigned t) {
  switch (t) {
    case DBG_TYPE_ERROR: return "Error";
    case DBG_TYPE_DEPRECATED: return "Deprecated Behavior";
    case DBG_TYPE_UNDEFINED: return "Undefined Behavior";
    case DBG_TYPE_PORTABILITY: return "Portability";
    case DBG_TYPE_PERFORMANCE: return "Performance";
    default: return "Other";
  }
}

const char *QGLSeverityName(unsigned s) {
  switch (s) {
    case DBG_SEVERITY_HIGH: return "High";
    case DBG_SEVERITY_MEDIUM: return "Medium";
    default: return "Notification";
  }
}

// Message 131218 is a driver's recurring shader-recompile performance note:
// it is noted once and then ignored.
static const unsigned IGNORED_ID = 131218;
static bool ignoredSeen = false;

void QGLErrorCallback(unsigned source, unsigned type, unsigned id, unsigned severity, int,
                      const char *message, const void *) {
  if (id == IGNORED_ID) {
    if (!ignoredSeen) QDBG("OpenGL message 131218 seen - ignored\n");
    ignoredSeen = true;
    return;
  }
  QDBG("OpenGL message: %s, [source %s, type %s, severity %s]\n",
       message ? message : "", QGLSourceName(source), QGLTypeName(type), QGLSeverityName(severity));
}

typedef void (*GLDebugProc)(unsigned, unsigned, unsigned, unsigned, int, const char *, const void *);
typedef void (*GLDebugCallbackSetter)(GLDebugProc, const void *);

bool QCatchGLErrors() {
  auto setter = reinterpret_cast<GLDebugCallbackSetter>(qpGetProcAddress("glDebugMessageCallbackARB"));
  if (!setter) {
    QWARN("No glDebugMessageCallbackARB function found for live error reporting");
    return false;
  }
  // Synchronous, so a message arrives inside the call that caused it; some
  // drivers only send messages at all with debug output switched on.
  glEnable(DBG_OUTPUT_SYNCHRONOUS);
  glEnable(DBG_OUTPUT);
  glGetError();  // the second enable is unknown to older drivers
  setter(QGLErrorCallback, nullptr);
  return true;
}

// ---- State dump -------------------------------------------------------------------------

static const char *OnOff(GLenum cap) { return glIsEnabled(cap) ? "on" : "off"; }

void QGLState::DbgPrint(const char *title) {
  const char *FN = "QGLState::DbgPrint";
  QDBG_IN(FN, "OpenGL state: (context %p) (%s)\n", qpGetCurrentContext(), title ? title : "");
  GLfloat rp[4] = {};
  GLint rpValid = 0;
  glGetFloatv(GL_CURRENT_RASTER_POSITION, rp);
  glGetIntegerv(GL_CURRENT_RASTER_POSITION_VALID, &rpValid);
  QDBG_IN(FN, "  Raster position: (%.2f, %.2f, %.2f, %.2f) valid=%d\n", double(rp[0]), double(rp[1]),
       double(rp[2]), double(rp[3]), rpValid);
  QDBG_IN(FN, "  Enabled: blend=%s texture2d=%s lighting=%s cullface=%s fog=%s\n", OnOff(GL_BLEND),
       OnOff(GL_TEXTURE_2D), OnOff(GL_LIGHTING), OnOff(GL_CULL_FACE), OnOff(GL_FOG));
  QDBG_IN(FN, "  Tests: depth=%s alpha=%s stencil=%s scissor=%s\n", OnOff(GL_DEPTH_TEST),
       OnOff(GL_ALPHA_TEST), OnOff(GL_STENCIL_TEST), OnOff(GL_SCISSOR_TEST));
  GLint draw = 0, read = 0;
  glGetIntegerv(GL_DRAW_BUFFER, &draw);
  glGetIntegerv(GL_READ_BUFFER, &read);
  QDBG_IN(FN, "  Buffers: draw=0x%x read=0x%x\n", unsigned(draw), unsigned(read));
  GLint align = 0, rowLen = 0, skipRows = 0, skipPix = 0;
  glGetIntegerv(GL_UNPACK_ALIGNMENT, &align);
  glGetIntegerv(GL_UNPACK_ROW_LENGTH, &rowLen);
  glGetIntegerv(GL_UNPACK_SKIP_ROWS, &skipRows);
  glGetIntegerv(GL_UNPACK_SKIP_PIXELS, &skipPix);
  QDBG_IN(FN, "  Unpack: alignment=%d rowlength=%d skiprows=%d skippixels=%d\n", align, rowLen, skipRows,
       skipPix);
}
