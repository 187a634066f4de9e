// The analysis report: a fixed text written in binary mode.
#include "chart/analyse.h"

#include <cstdio>
#include <cstring>

const char *AnalyseReportText() { return "Pacejka analysis\n\nNo analysis done yet.\n"; }

bool AnalyseWriteReport(const char *path) {
  FILE *f = fopen(path, "wb");
  if (!f) return false;
  const char *text = AnalyseReportText();
  size_t len = strlen(text);
  bool ok = fwrite(text, 1, len, f) == len;
  // A full disk shows only at close; count it as a failed write.
  if (fclose(f) != 0) ok = false;
  return ok;
}
