// The fit report from the command line: the data side from the data the
// driver loaded, the fit's tyre and figures, written to PDF.
#include "cli/fitreportcli.h"

#include <cstdio>

#include "fitreport/fitreport.h"
#include "platform/cairo/qcairo.h"

bool FitCliWriteReportPdf(const char *cmd, const FitJob &job, const FitOutcome &outcome) {
  if (job.reportPdf.empty()) return true;
  if (!outcome.data || !outcome.tyre) {
    fprintf(stderr, "tyrograph-cli %s: %s: no fit to report\n", cmd, job.reportPdf.c_str());
    return false;
  }
  FitReportInput in;
  FitReportDataFrom(job.input, *outcome.data, &in);
  in.model = job.model;
  in.output = job.out;
  in.tyre = outcome.tyre.get();
  in.result = &outcome.result;
  std::string error;
  const bool ok = FitReportWritePdf(job.reportPdf, FitReportBuild(in), &error);
  QCairoReleaseCaches();
  if (!ok) fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, error.c_str());
  return ok;
}
