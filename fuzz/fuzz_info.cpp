// Reads arbitrary bytes as an info file and works on the tree: getters on the
// keys it holds and on fixed ones, node access, a set and a write. Asserts
// nothing but survival (ASan + UBSan do the checking).
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/qfile.h"
#include "base/qinfo.h"
#include "base/qinfonode.h"
#include "base/qstring.h"
#include "fuzz/fuzz_common.h"

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
  const std::string &out = FuzzScratchFile("fuzz_info", ".ini");
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
