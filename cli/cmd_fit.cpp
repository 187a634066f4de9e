// tyrograph-cli fit DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N]
//                  -o OUT [--report FILE.json] [--force]
//
// Fits a tyre model to measured data (tyre/kmeasured.h gives the format)
// and writes it as a TIR file (OUT ending in .tir) or a car.ini.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"
#include "chart/basedir.h"
#include "chart/carload.h"

namespace {

const char *const kUsage =
    "DATA.csv --model pac96|mf52|mf61 [--start TYRE] [--wheel N] -o OUT [--report FILE.json] [--force]";

int RunFit(const std::vector<std::string> &args) {
  const char *cmd = "fit";
  FitCliOptions o;
  if (!FitCliParse(cmd, args, true, &o)) {
    fprintf(stderr, "usage: tyrograph-cli fit %s\n", kUsage);
    return 2;
  }
  if (!FitCliOutputsFree(cmd, o)) return 1;
  FitCliQuiet quiet(cmd);
  // 1. the data (the reader names file, line and column of a problem)
  KMeasuredData data;
  if (!KMeasuredRead(o.input.c_str(), &data)) return 1;
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
  const bool ok = fitted && FitCliWriteTyre(cmd, o, *tyre) && FitCliWriteReport(cmd, o, r);
  if (ok) FitCliPrint(o, r);
  delete tyre;
  delete start;
  return ok ? 0 : 1;
}

const char kDetails[] =
    "DATA.csv: a header line naming the columns, then one row per measured point. Columns,\n"
    "in any order, each at most once:\n"
    "  fz      load, N (required)\n"
    "  kappa   slip ratio (0 when absent)\n"
    "  alpha   slip angle, rad (0 when absent)\n"
    "  gamma   camber, rad (0 when absent)\n"
    "  fx, fy  forces, N; mz  aligning moment, N*m (at least one of the three)\n"
    "Fields are separated by commas or blanks; blank lines and lines starting with '#' are\n"
    "skipped; every field is a finite number. Units and signs are those of eval's output.\n"
    "A force without a column is not fitted.\n"
    "\n"
    "Options:\n"
    "  --model pac96|mf52|mf61   the model to fit (Pacejka89/96, Magic Formula 5.2 or 6.1)\n"
    "  --start TYRE              start from this tyre's coefficients (.tir, car.ini, car folder)\n"
    "  --wheel N                 the wheel of a car given as --start (default 0)\n"
    "  -o OUT                    the fitted tyre: a TIR file when OUT ends in .tir (mf52, mf61),\n"
    "                            else a car.ini\n"
    "  --report FILE.json        the fit's figures as JSON\n"
    "  --force                   overwrite OUT and the report when they exist\n";

CliCommand reg{"fit", kUsage, "fit a tyre model to measured data (CSV)", 60, RunFit, kDetails};

}  // namespace
