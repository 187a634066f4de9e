// Reads arbitrary bytes as a delimited-text rig run, then maps and
// conditions what it read. Besides survival (ASan + UBSan), checks what the
// reader promises: refused input leaves no rows and a message naming the
// source; accepted input has rows, a load and a force channel, every
// present channel one finite value per row; conditioning keeps only finite
// points and never more points than rows.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "fuzz/fuzz_common.h"
#include "tyre/kcondition.h"
#include "tyre/krun.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  FuzzScratchFile("fuzz_runtext", ".txt");  // only for its silencing of the reporters
  KRunData run;
  if (!KRunParseText(reinterpret_cast<const char *>(data), size, "fuzz.txt", KRunOptions(), &run)) {
    if (run.rows || run.error.compare(0, 8, "fuzz.txt") != 0) abort();
    return 0;
  }
  if (!run.rows || !run.channel[KRUN_FZ].present) abort();
  if (!run.channel[KRUN_FX].present && !run.channel[KRUN_FY].present && !run.channel[KRUN_MZ].present) abort();
  for (const KRunColumn &c : run.channel) {
    if (!c.present) continue;
    if (c.v.size() != run.rows) abort();
    for (double v : c.v)
      if (!std::isfinite(v)) abort();
  }
  KRunMapAxes(&run, KAXES_AUTO);
  KConditioned out;
  if (KConditionRun(run, KConditionOptions(), &out)) {
    if (out.data.points.empty() || out.data.points.size() > run.rows) abort();
    for (const KMeasuredPoint &p : out.data.points)
      if (!std::isfinite(p.alpha) || !std::isfinite(p.kappa) || !std::isfinite(p.fz)) abort();
  }
  return 0;
}
