// tyrograph-cli fit DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N]
//                  [--loss huber|cauchy|none] [--weights fx=W,fy=W,mz=W]
//                  -o OUT [--report FILE.json] [--report-pdf FILE.pdf] [--force]
//                  [--axes iso|sae|auto] [--columns KEY=NAME,...] [--units KEY=UNIT,...] [--thin N]
//
// Fits a tyre model to measured data: a tidy CSV file (tyre/kmeasured.h
// gives the format) as it stands, or a rig run read and conditioned
// (tyre/kdataload.h). Writes it as a TIR file (OUT ending in .tir) or a
// car.ini. A fitted channel with R² below 0.5 ends with exit status 3, the
// tyre written only with --force.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"
#include "cli/runcli.h"
#include "cli/tyreopts.h"

namespace {

const char *const kUsage =
    "DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N] [--loss huber|cauchy|none] "
    "[--weights fx=W,fy=W,mz=W] -o OUT [--report FILE.json] [--report-pdf FILE.pdf] [--force]";

int RunFit(const std::vector<std::string> &args) {
  const char *cmd = "fit";
  FitJob job;
  RunCliOptions runOptions;  // a rig run's --axes, --columns, --units, --thin
  std::vector<std::string> fitArgs;
  if (!RunCliParse(cmd, args, &runOptions, &fitArgs) || !FitCliParse(cmd, fitArgs, true, &job)) {
    fprintf(stderr, "usage: tyrograph-cli fit %s\n", kUsage);
    return 2;
  }
  // a --start that is no tyre is the argument's fault, as a bad TYRE of eval
  if (!job.start.empty()) {
    job.start = CliResolveTyre(job.start);
    if (!CliTyreLoads(cmd, job.start, job.wheel, "--start: ")) return 2;
  }
  job.run = runOptions.run;
  job.condition = runOptions.condition;
  job.raw = runOptions.given;
  return FitCliRun(cmd, job);
}

const char kDetails[] =
    "DATA.csv: a tidy CSV file, a header line naming the columns, then one row per measured\n"
    "point. Columns, in any order, each at most once:\n"
    "  fz      load, N (required)\n"
    "  kappa   slip ratio (0 when absent)\n"
    "  alpha   slip angle, rad (0 when absent)\n"
    "  gamma   camber, rad (0 when absent)\n"
    "  fx, fy  forces, N; mz  aligning moment, N*m (at least one of the three)\n"
    "  pressure  inflation pressure, Pa (optional; two or more add the pressure stages)\n"
    "Fields are separated by commas or blanks; blank lines and lines starting with '#' are\n"
    "skipped; every field is a finite number. Units and signs are those of eval's output.\n"
    "A force without a column is not fitted. DATA may also be a rig run (delimited text with\n"
    "named columns, or TYDEX), read and conditioned as `tyrograph-cli data` does.\n"
    "\n"
    "Options:\n"
    "  --model pac96|mf52|mf61   the model to fit (Pacejka89/96, Magic Formula 5.2 or 6.1)\n"
    "  --start TYRE              start from this tyre's coefficients (.tir, car.ini, car folder)\n"
    "  --wheel N                 the wheel of a car given as --start (default 0)\n"
    "  --loss huber|cauchy|none  robust loss: outliers pull less (default: huber)\n"
    "  --weights fx=W,fy=W,mz=W  each channel's weight (0 leaves it unfitted)\n"
    "  -o OUT                    the fitted tyre: a TIR file when OUT ends in .tir (mf52, mf61),\n"
    "                            else a car.ini\n"
    "  --report FILE.json        the fit's figures as JSON\n"
    "  --report-pdf FILE.pdf     a report of the fit: summary, coefficients, curves, residuals\n"
    "  --force                   overwrite OUT and the reports when they exist; write the tyre\n"
    "                            even when a channel fits poorly (R2 below 0.5, exit status 3)\n"
    "  --axes iso|sae|auto       a rig run's axes (default auto: sae when most loads are negative;\n"
    "                            Mz turned round when it clearly slopes as Fy does)\n"
    "  --columns KEY=NAME,...    which column is which (keys fz fx fy mz mx alpha kappa gamma ...)\n"
    "  --units KEY=UNIT,...      units a run's file lacks or gets wrong (deg, %, kN, ...)\n"
    "  --thin N                  keep about N points per sweep of a run\n";

CliCommand reg{"fit", kUsage, "fit a tyre model to measured data (CSV)", 60, RunFit, kDetails};

}  // namespace
