// Reads arbitrary bytes as an info file and works on the tree: getters on the
// keys it holds and on fixed ones, node access, a set and a write. Asserts
// nothing but survival (ASan + UBSan do the checking).
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/qfile.h"
#include "base/qinfo.h"
#include "base/qinfonode.h"
#include "base/qstring.h"
#include "ui/diag/qdebug.h"

static int Quiet(const char *, const char *) { return 0; }

// Reports go nowhere (and nothing into QLOG.txt): a run of millions of
// inputs must not fill the disk.
static const std::string &Setup() {
  static std::string out = [] {
    qSetErrorHook(Quiet);
    qSetWarnHook(Quiet);
    qSetDebugHook(Quiet);
    qSetPlainDebugHook(Quiet);
    qSetLogMask(0);
    // One output file per process, overwritten by every input; in memory
    // (tmpfs) where there is one, since a disk write per input is slow.
    std::string dir = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    return dir + "/fuzz_info_" + std::to_string(getpid()) + ".ini";
  }();
  static bool cleanup = atexit([] { remove(Setup().c_str()); }) == 0;
  (void)cleanup;
  return out;
}

static void Query(QInfo &info, const char *key) {
  char buf[QInfo::MAX_TOKEN + 2];
  float f[3];
  int v[4];
  info.GetString(key, buf, "d");
  info.GetInt(key, 1);
  info.GetFloat(key, 1.0f);
  info.GetBool(key, true);
  info.GetFloats(key, 3, f);
  info.GetInt4(key, v);
  info.GetHost(key, buf);
  info.CountChildren(key);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string &out = Setup();
  QFile file("fuzz.ini", (const char *)data, int(size));
  // One tree for the whole run, emptied for each input: a new object per
  // input would spend most of the time faulting in its half-megabyte hash.
  static QInfo *info = new QInfo("fuzz.ini", QINFO_NO_READ | QINFO_SILENT);
  info->Clear();
  info->SetFlags(QINFO_SILENT);
  info->Read(file);

  // The first keys the input holds, by their full paths (through the hash),
  // and a few fixed ones (through the walk and references).
  QInfoIterator it(info);
  qstring path;
  for (int i = 0; i < 16 && it.GetNext(&path); i++) Query(*info, path.c_str());
  for (const char *k : {"a", "wheel0.pacejka.a0", "a.b", "", "."}) Query(*info, k);

  info->SetString("wheel0.pacejka.a0", "1.5");
  info->SetString("a.b", "2");
  info->Delete("a");
  if (size < 128) info->SortLevel();  // quadratic, with a report per step: small inputs only
  info->DbgPrint("fuzz", 1);
  info->Write(out.c_str(), false);
  info->SetFlags(0);
  return 0;
}
