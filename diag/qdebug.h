// The process-wide reporters and the central log writer.
//
// Every module reports through these: qerr/qwarn/qnote/qdbg carry the source
// position (file, function, line) and a printf-style message; qdbgplain has no
// position; qfatal ends the process. None of them fails towards the caller.
#pragma once

#include <cstdarg>

enum : unsigned {
  QLOG_ERR = 0x1,
  QLOG_WARN = 0x2,
  QLOG_CRIT = 0x4,
  QLOG_NOTE = 0x8,
  QLOG_INFO = 0x10,
  QLOG_FATAL = 0x40,
  QLOG_NO_CHANNEL = 0x80,
  QLOG_NO_STDERR = 0x100,
  QLOG_MSGBOX = 0x400,
  QLOG_INFO2 = 0x800,
};

#define QFMT(a, b) __attribute__((format(printf, a, b)))

void qerr(const char *file, const char *func, int line, const char *fmt, ...) QFMT(4, 5);
void qwarn(const char *file, const char *func, int line, const char *fmt, ...) QFMT(4, 5);
void qdbg(const char *file, const char *func, int line, const char *fmt, ...) QFMT(4, 5);
void qnote(const char *file, const char *func, int line, const char *fmt, ...) QFMT(4, 5);
void qdbgplain(const char *fmt, ...) QFMT(1, 2);
[[noreturn]] void qfatal(const char *fmt, ...) QFMT(1, 2);
[[noreturn]] void qexitmsg(const char *fmt, ...) QFMT(1, 2);
[[noreturn]] void QCrash(const char *reason);
[[noreturn]] void QExit(int code);
void qasserterr(const char *file, int line);
void QOLOF(const char *file, int line, int indent);

// ---- Reporting from here ----
// QERR/QWARN/QNOTE/QDBG ("fmt", ...) fill in the source tag, the function and
// the line of the call site:
//   - the tag is QDIAG_TAG, by default the file's base name up to its first
//     '_' or '.' ("tyre/kpacejka_load.cpp" -> "kpacejka"); a file whose
//     reports carry another tag redefines QDIAG_TAG after its includes;
//   - the function is "Class::Method" (or the free function's name) taken
//     from the compiler's signature of the enclosing function; a lambda
//     reports as the function around it.
// QERR_IN (func, "fmt", ...) and friends name the function explicitly, for
// helpers that report on behalf of a public entry point.
struct QDiagTag {
  char name[64];
  explicit QDiagTag(const char *file);
};
struct QDiagFunc {
  char name[128];
  explicit QDiagFunc(const char *signature);
};

#define QDIAG_TAG QDiagTag(__FILE__).name
#define QDIAG_HERE(func) QDIAG_TAG, func, __LINE__
#define QDIAG_FUNC QDiagFunc(__PRETTY_FUNCTION__).name
#define QERR(...) qerr(QDIAG_HERE(QDIAG_FUNC), __VA_ARGS__)
#define QWARN(...) qwarn(QDIAG_HERE(QDIAG_FUNC), __VA_ARGS__)
#define QNOTE(...) qnote(QDIAG_HERE(QDIAG_FUNC), __VA_ARGS__)
#define QDBG(...) qdbg(QDIAG_HERE(QDIAG_FUNC), __VA_ARGS__)
#define QERR_IN(func, ...) qerr(QDIAG_HERE(func), __VA_ARGS__)
#define QWARN_IN(func, ...) qwarn(QDIAG_HERE(func), __VA_ARGS__)
#define QNOTE_IN(func, ...) qnote(QDIAG_HERE(func), __VA_ARGS__)
#define QDBG_IN(func, ...) qdbg(QDIAG_HERE(func), __VA_ARGS__)

// The central writer. `source` may be null.
void qlogf(unsigned flags, const char *source, const char *fmt, ...) QFMT(3, 4);
// Writes a pending "[%dx repeat] %s" line; called at exit.
void qlogFlush();

// Output hooks: (prefix, message) -> int. Each setter returns the hook it
// replaces; null means the default output.
typedef int (*QReportHook)(const char *prefix, const char *message);
QReportHook qSetErrorHook(QReportHook hook);
QReportHook qSetWarnHook(QReportHook hook);
QReportHook qSetDebugHook(QReportHook hook);
QReportHook qSetPlainDebugHook(QReportHook hook);

void qSetLogMask(unsigned mask);
unsigned qGetLogMask();
const char *QLogFileName();

bool qlog_last_open(const char *path);
void qlog_last_close();
bool qlog_last_written();

// Development flags word (dev.opengl_checks 0x1, dev.argument_tracing 0x4).
enum : unsigned { QDEV_OPENGL_CHECKS = 0x1, QDEV_ARGUMENT_TRACING = 0x4 };
unsigned qGetDevFlags();
void qSetDevFlags(unsigned flags);

// ---- links to the layers above (set by them; defaults work without) ----

// Name of the current application object, shown in every log line ("-" when
// none is set).
void qSetAppName(const char *name);
const char *qGetAppName();

// The modal message box of QLOG_MSGBOX reports. The UI installs one that hides
// a full-screen main window and waits for the box; without one the text goes
// to standard error.
typedef void (*QMessageBoxFunc)(const char *text, const char *title);
QMessageBoxFunc qSetMessageBoxHandler(QMessageBoxFunc box);

// Moves QLOG.txt (and with it QLOG_OLD.txt) somewhere else; a relative name is
// made absolute against the working folder. An empty name makes the next
// report start afresh with "QLOG.txt".
void qSetLogFileName(const char *name);
// No log file at all until the next qSetLogFileName: every line still goes
// to standard error, the debug channel and QLOG_LAST.txt as its flags say.
void qSetLogFileOff();

// Folder in which QOLOF looks for a source file it cannot open as named.
void qSetSourcePath(const char *dir);

// ---- UDP debug channel ----

// Opens the channel towards host:port; false when the socket can't be made.
bool qdbgChannelOpen(const char *host, int port);
void qdbgChannelClose();
// Sends raw text on the channel (used by the reporters).
void qdbgChannelSend(const char *text);
// 0 none yet, 1 open, -1 unavailable.
int qdbgChannelState();

// Settings stored for the networking layer.
void qSetPortOffset(int offset);
int qGetPortOffset();
void qSetFakePacketDrops(int drops);
int qGetFakePacketDrops();

// ---- argument tracing ----
void qargPush(const char *file, const char *func, int line, const char *fmt, ...) QFMT(4, 5);
void qargPop();
void qargPrint(const char *title, bool asNote);
int qargFindThreadID();
// Forgets both slots (for tests).
void qargReset();
int qargDepth(int slot);
const char *qargText(int slot, int index);

// ---- call trace file ----
enum : unsigned {
  QTRACE_WARN = 0x10,
  QTRACE_ERR = 0x20,
  QTRACE_DBG = 0x40,
  QTRACE_DATE = 0x80,
  QTRACE_TIME = 0x100,
};
// Opens the trace file ("wb"); a new one closes the old; null or "" closes it.
bool qtraceOpen(const char *name, unsigned mask);
void qtraceClose();
void qtraceSetLevel(int level);
// Writes one line (trailing newlines collapse into exactly one).
void qtraceLine(unsigned bit, const char *text);
void qtraceEnter(const char *cls, const char *method, const void *obj = nullptr);
void qtraceLeave(const char *cls, const char *method, const void *obj = nullptr);
void qtraceLeveled(int level, const char *fmt, ...) QFMT(2, 3);
int qtraceDepth();
