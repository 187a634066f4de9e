// Argument tracing: callers push a description of what they are working on
// and pop it when done, so that a crash report can show it. Two thread slots,
// each keyed by the thread id (0 = free), each with up to 100 entries.
// Active only when the dev flag for argument tracing is set.
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>

#include "diag/qdebug.h"

namespace {

enum { SLOTS = 2, DEPTH = 100, TEXT = 200 };

struct Entry {
  const char *file;
  const char *func;
  int line;
  char text[TEXT + 1];
};

struct Slot {
  int thread;
  int depth;
  Entry entries[DEPTH];
  bool overflowReported;
  bool underflowReported;
};

Slot g_slots[SLOTS];

int ThreadId() { return int(syscall(SYS_gettid)); }

bool Active() { return (qGetDevFlags() & QDEV_ARGUMENT_TRACING) != 0; }

}  // namespace

int qargFindThreadID() {
  int me = ThreadId();
  for (int i = 0; i < SLOTS; i++)
    if (g_slots[i].thread == me) return i;
  for (int i = 0; i < SLOTS; i++) {
    if (g_slots[i].thread == 0) {
      g_slots[i].thread = me;
      return i;
    }
  }
  QERR("No space for qarg thread %d\n", me);
  return 0;
}

void qargPush(const char *file, const char *func, int line, const char *fmt, ...) {
  if (!Active()) return;
  Slot &s = g_slots[qargFindThreadID()];
  if (s.depth < DEPTH) {
    Entry &e = s.entries[s.depth];
    va_list ap;
    va_start(ap, fmt);
    vsnprintf(e.text, sizeof e.text, fmt, ap);
    va_end(ap);
    e.file = file;
    e.func = func;
    e.line = line;
    s.depth++;
    return;
  }
  s.depth++;
  if (!s.overflowReported) {
    s.overflowReported = true;
    QERR_IN("qargPushBase", "qargPush overflow; verify your qargPush/qargPop calls");
    qargPrint("qargPush overflow state", true);
  }
}

void qargPop() {
  if (!Active()) return;
  Slot &s = g_slots[qargFindThreadID()];
  if (s.depth > 0) {
    s.depth--;
    return;
  }
  if (!s.underflowReported) {
    s.underflowReported = true;
    QERR_IN("qargPopBase", "qargPop underflow; verify your qargPush/qargPop calls");
  }
}

void qargPrint(const char *title, bool asNote) {
#define QARG_OUT(...)                                         \
  do {                                                        \
    if (asNote) QNOTE(__VA_ARGS__); \
    else QDBG(__VA_ARGS__); \
  } while (0)
  QARG_OUT("Argument stack(s) [%s]:\n", title);
  for (int i = 0; i < SLOTS; i++) {
    const Slot &s = g_slots[i];
    if (asNote) QARG_OUT("Stack for threadID %d [%d]:\n", i, s.thread);
    else QARG_OUT("  Stack for threadID %d [%d]:\n", i, s.thread);
    if (s.depth == 0) {
      QARG_OUT("<empty stack> (is dev.argument_tracing set to 1?)\n");
      continue;
    }
    int top = s.depth < DEPTH ? s.depth : DEPTH;
    for (int d = top - 1; d >= 0; d--) {
      const Entry &e = s.entries[d];
      QARG_OUT("stack[%d]=%s\n", d, e.text);
      if (asNote) QARG_OUT("  (set in %s line %d in %s()\n", e.file, e.line, e.func);
      else QARG_OUT("  (set at %s line %d in %s()\n", e.file, e.line, e.func);
    }
  }
#undef QARG_OUT
}

void qargReset() {
  for (Slot &s : g_slots) s = Slot{};
}

int qargDepth(int slot) { return slot >= 0 && slot < SLOTS ? g_slots[slot].depth : 0; }

const char *qargText(int slot, int index) {
  if (slot < 0 || slot >= SLOTS || index < 0 || index >= DEPTH) return "";
  return g_slots[slot].entries[index].text;
}
