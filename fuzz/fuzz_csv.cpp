// Reads arbitrary bytes as measured tyre data (CSV). Besides survival (ASan +
// UBSan), checks what the reader promises: refused input leaves no points
// and a message naming the source; accepted input has at least one point,
// only finite numbers, and reads back unchanged from its own formatting.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_common.h"
#include "tyre/kmeasured.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  FuzzScratchFile("fuzz_csv", ".csv");  // only for its silencing of the reporters
  KMeasuredData d;
  if (!KMeasuredParse(reinterpret_cast<const char *>(data), size, "fuzz.csv", &d)) {
    if (!d.points.empty() || d.error.compare(0, 8, "fuzz.csv") != 0) abort();
    return 0;
  }
  if (d.points.empty()) abort();
  for (const KMeasuredPoint &p : d.points) {
    const double v[] = {p.fz, p.kappa, p.alpha, p.gamma, p.force[0], p.force[1], p.force[2], p.pressure};
    for (double x : v)
      if (!std::isfinite(x)) abort();
  }
  const std::string text = KMeasuredFormat(d);
  KMeasuredData back;
  if (!KMeasuredParse(text.data(), text.size(), "again.csv", &back) || back.points.size() != d.points.size())
    abort();
  for (size_t i = 0; i < d.points.size(); i++) {
    if (back.points[i].pressure != d.points[i].pressure || back.points[i].pressure < 0) abort();
    for (int ch = 0; ch < KCH_COUNT; ch++)
      if (back.points[i].force[ch] != d.points[i].force[ch] || back.has[ch] != d.has[ch]) abort();
  }
  return 0;
}
