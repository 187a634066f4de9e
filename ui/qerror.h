// OpenGL error helpers: pending-error reports, the live debug-message
// callback, and a dump of the fixed-function state.
#pragma once

#include <cstdint>

// Reports each pending OpenGL error as "%s: OpenGL error (%d): %s".
// Returns the number of errors reported.
int QShowGLErrors(const char *where);
// Installs QGLErrorCallback when the driver offers glDebugMessageCallbackARB;
// else reports that it cannot. True when installed.
bool QCatchGLErrors();
// The debug-message callback (the GL calling convention's argument list).
void QGLErrorCallback(unsigned source, unsigned type, unsigned id, unsigned severity, int length,
                      const char *message, const void *userParam);
// Reports the platform's last error for `where`.
void QWindowsError(const char *where);

// Names used by the callback's message (exposed for tests).
const char *QGLSourceName(unsigned source);
const char *QGLTypeName(unsigned type);
const char *QGLSeverityName(unsigned severity);

class QGLState {
 public:
  // Dumps the fixed-function state through qdbg, headed by `title`.
  static void DbgPrint(const char *title);
};

// Installs the framework's message box as the QLOG_MSGBOX output of the log
// and gives the log the application name. Called by QApp's constructor.
void QInstallMessageBox();
