// Reads arbitrary bytes as a TIR tyre property file into a tyre and
// evaluates it over a few operating points, slips and cambers to both sides,
// then writes it back as TIR text.
// Asserts nothing but survival (ASan + UBSan do the checking); the tyre's
// NaN guard and force limits are what keep a nonsense file from poisoning
// the numbers.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_common.h"
#include "tyre/kpacejka.h"
#include "tyre/kpacejka_tirwrite.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string &path = FuzzScratchFile("fuzz_tir", ".tir");
  FILE *f = fopen(path.c_str(), "wb");
  if (!f) return 0;
  fwrite(data, 1, size, f);
  fclose(f);

  KPacejka tyre;
  tyre.LoadFromTirFile(path.c_str());
  static const float loads[] = {0.0f, 500.0f, 4000.0f, 30000.0f};
  static const float slips[] = {-1.0f, -0.08f, 0.0f, 0.12f, 1.0f};
  for (float fz : loads) {
    tyre.SetNormalLoad(fz);
    for (float s : slips) {
      tyre.SetSlipRatio(s);
      tyre.SetSlipAngle(s * 0.6f);
      tyre.SetCamber(s * 0.1f);
      tyre.Calculate();
    }
  }
  // The writer gets whatever the import made of the bytes: NaN, infinities,
  // denormals, huge ranges.
  std::string text;
  KPacejkaTirText(tyre, &text);
  return 0;
}
