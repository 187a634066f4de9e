// `fit --report-pdf FILE.pdf`: the fit report (fitreport/fitreport.h)
// written for the command line from what the fit driver (chart/fitrun.h)
// read and fitted.
#pragma once

#include "chart/fitrun.h"

// Writes the report of the fit `outcome` into job.reportPdf (when given).
// False after printing the problem ("tyrograph-cli CMD: FILE: ...").
bool FitCliWriteReportPdf(const char *cmd, const FitJob &job, const FitOutcome &outcome);
