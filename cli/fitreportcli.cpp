// The fit report from the command line: the data side from the loaded
// file, the fit's tyre and figures, written to PDF.
#include "cli/fitreportcli.h"

#include <cstdio>

#include "fitreport/fitreport.h"
#include "platform/cairo/qcairo.h"

bool FitCliWriteReportPdf(const char *cmd, const FitCliOptions &o, const KDataLoad &load, const KPacejka &tyre,
                          const KFitResult &result) {
  if (o.reportPdf.empty()) return true;
  FitReportInput in;
  FitReportDataFrom(o.input, load, &in);
  in.model = o.model;
  in.output = o.out;
  in.tyre = &tyre;
  in.result = &result;
  std::string error;
  const bool ok = FitReportWritePdf(o.reportPdf, FitReportBuild(in), &error);
  QCairoReleaseCaches();
  if (!ok) fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, error.c_str());
  return ok;
}
