// `fit --report-pdf FILE.pdf`: the fit report (fitreport/fitreport.h)
// written for the command line.
#pragma once

#include "cli/fitcli.h"
#include "tyre/kdataload.h"

// Writes the report of a fit into o.reportPdf (when given). False after
// printing the problem ("tyrograph-cli CMD: FILE: ...").
bool FitCliWriteReportPdf(const char *cmd, const FitCliOptions &o, const KDataLoad &load, const KPacejka &tyre,
                          const KFitResult &result);
