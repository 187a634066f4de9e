// Reads arbitrary bytes as an integer expression for Eval, the evaluator
// behind the configuration reader's integers and `tyrograph-cli expr`, on
// its own: as one text, and cut at each NUL, so that deep nesting, long
// numbers, stray operators and unterminated groups reach it directly.
// Asserts nothing but survival (ASan + UBSan do the checking) and that a
// second evaluation of the same text gives the same value (the parse state is
// process-wide and must not leak from one text into the next).
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/qeval.h"
#include "fuzz/fuzz_common.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  FuzzScratchFile("fuzz_eval", ".txt");  // silences the reporters
  std::string text(reinterpret_cast<const char *>(data), size);
  const char *p = text.c_str(), *end = p + size;
  while (p <= end) {
    int first = Eval(p);
    if (Eval(p) != first) abort();
    p += strlen(p) + 1;
  }
  return 0;
}
