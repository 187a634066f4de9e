// Reads arbitrary bytes as a TYDEX file. Besides survival (ASan + UBSan),
// checks what the reader promises: refused input leaves no rows and a
// message naming the source; accepted input has rows and a load, and every
// present channel one finite value per row.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "fuzz/fuzz_common.h"
#include "tyre/krun.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  FuzzScratchFile("fuzz_tydex", ".tdx");  // only for its silencing of the reporters
  KRunData run;
  if (!KRunParseTydex(reinterpret_cast<const char *>(data), size, "fuzz.tdx", KRunOptions(), &run)) {
    if (run.rows || run.error.compare(0, 8, "fuzz.tdx") != 0) abort();
    return 0;
  }
  if (!run.rows || !run.channel[KRUN_FZ].present) abort();
  for (const KRunColumn &c : run.channel) {
    if (!c.present) continue;
    if (c.v.size() != run.rows) abort();
    for (double v : c.v)
      if (!std::isfinite(v)) abort();
  }
  return 0;
}
