// tyrograph-cli fit DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N]
//                  -o OUT [--report FILE.json] [--report-pdf FILE.pdf] [--force]
//
// Fits a tyre model to measured data (tyre/kmeasured.h gives the format)
// and writes it as a TIR file (OUT ending in .tir) or a car.ini.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"
#include "cli/fitreportcli.h"
#include "chart/basedir.h"
#include "chart/carload.h"
#include "cli/runcli.h"

namespace {

const char *const kUsage =
    "DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N] -o OUT [--report FILE.json] "
    "[--report-pdf FILE.pdf] [--force]";

int RunFit(const std::vector<std::string> &args) {
  const char *cmd = "fit";
  FitCliOptions o;
  RunCliOptions runOptions;  // a rig run's --axes, --columns, --units, --thin
  std::vector<std::string> fitArgs;
  if (!RunCliParse(cmd, args, &runOptions, &fitArgs) || !FitCliParse(cmd, fitArgs, true, &o)) {
    fprintf(stderr, "usage: tyrograph-cli fit %s\n", kUsage);
    return 2;
  }
  if (!FitCliOutputsFree(cmd, o)) return 1;
  FitCliQuiet quiet(cmd);
  // 1. the data (the reader names file, line and column of a problem): a
  // tidy CSV file as it stands, a rig run conditioned; then the checks
  KDataLoad load;
  if (!RunCliLoad(cmd, o.input, runOptions, true, &load)) return 1;
  const KMeasuredData &data = load.data;
  // 2. the start: the given tyre or the built-in one
  KPacejka *start = nullptr;
  if (!o.start.empty()) {
    start = new KPacejka;
    std::string error;
    o.start = CarResolveSource(o.start, BaseFolderFind());
    if (!CarLoadTyreSource(o.start.c_str(), o.wheel, start, &error)) {
      fprintf(stderr, "tyrograph-cli %s: --start: %s\n", cmd, error.c_str());
      delete start;
      return 2;
    }
  }
  // 3. fit, write, tell
  KFitOptions fo;
  fo.model = o.model;
  fo.start = start;
  fo.progress = FitCliProgress;
  KPacejka *tyre = new KPacejka;
  KFitResult r;
  const bool fitted = KFitTyre(data, fo, tyre, &r);
  FitCliProgressDone();
  const bool ok = fitted && FitCliWriteTyre(cmd, o, *tyre) && FitCliWriteReport(cmd, o, r) &&
                  FitCliWriteReportPdf(cmd, o, load, *tyre, r);
  if (ok) FitCliPrint(o, r);
  delete tyre;
  delete start;
  return ok ? 0 : 1;
}

const char kDetails[] =
    "DATA.csv: a tidy CSV file, a header line naming the columns, then one row per measured\n"
    "point. Columns, in any order, each at most once:\n"
    "  fz      load, N (required)\n"
    "  kappa   slip ratio (0 when absent)\n"
    "  alpha   slip angle, rad (0 when absent)\n"
    "  gamma   camber, rad (0 when absent)\n"
    "  fx, fy  forces, N; mz  aligning moment, N*m (at least one of the three)\n"
    "Fields are separated by commas or blanks; blank lines and lines starting with '#' are\n"
    "skipped; every field is a finite number. Units and signs are those of eval's output.\n"
    "A force without a column is not fitted. DATA may also be a rig run (delimited text with\n"
    "named columns, or TYDEX), read and conditioned as `tyrograph-cli data` does.\n"
    "\n"
    "Options:\n"
    "  --model pac96|mf52|mf61   the model to fit (Pacejka89/96, Magic Formula 5.2 or 6.1)\n"
    "  --start TYRE              start from this tyre's coefficients (.tir, car.ini, car folder)\n"
    "  --wheel N                 the wheel of a car given as --start (default 0)\n"
    "  -o OUT                    the fitted tyre: a TIR file when OUT ends in .tir (mf52, mf61),\n"
    "                            else a car.ini\n"
    "  --report FILE.json        the fit's figures as JSON\n"
    "  --report-pdf FILE.pdf     a report of the fit: summary, coefficients, curves, residuals\n"
    "  --force                   overwrite OUT and the reports when they exist\n"
    "  --axes iso|sae|auto       a rig run's axes (default auto: sae when most loads are negative)\n"
    "  --columns KEY=NAME,...    which column is which (keys fz fx fy mz mx alpha kappa gamma ...)\n"
    "  --units KEY=UNIT,...      units a run's file lacks or gets wrong (deg, %, kN, ...)\n"
    "  --thin N                  keep about N points per sweep of a run\n";

CliCommand reg{"fit", kUsage, "fit a tyre model to measured data (CSV)", 60, RunFit, kDetails};

}  // namespace
