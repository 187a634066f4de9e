// tyrograph-cli convert SOURCE --model pac96|mf52|mf61 [--wheel N]
//                      [--loss huber|cauchy|none] [--weights fx=W,fy=W,mz=W]
//                      -o OUT [--report FILE.json] [--force]
//
// Samples a tyre over its own validity ranges (tyre/ksample.h) and fits the
// target model to the samples; writes it as a TIR file or a car.ini.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/fitcli.h"
#include "chart/carload.h"

namespace {

const char *const kUsage =
    "SOURCE --model pac96|mf52|mf61 [--wheel N] [--loss huber|cauchy|none] [--weights fx=W,fy=W,mz=W] -o OUT "
    "[--report FILE.json] [--force]";

int RunConvert(const std::vector<std::string> &args) {
  const char *cmd = "convert";
  FitCliOptions o;
  if (!FitCliParse(cmd, args, false, &o)) {
    fprintf(stderr, "usage: tyrograph-cli convert %s\n", kUsage);
    return 2;
  }
  if (!FitCliOutputsFree(cmd, o)) return 1;
  FitCliQuiet quiet(cmd);
  // 1. the source, as eval reads it
  KPacejka *source = new KPacejka;
  std::string error;
  if (!CarLoadTyreSource(o.input.c_str(), o.wheel, source, &error)) {
    fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, error.c_str());
    delete source;
    return 1;
  }
  // 2. sample, fit, write, tell
  // a source of the target's family starts the fit from its own
  // coefficients: a tyre converted to its own model comes back exact
  KFitOptions fo = FitCliFitOptions(o);
  if ((source->model == KPacejka::PAC96) == (o.model == KPacejka::PAC96)) fo.start = source;
  KPacejka *tyre = new KPacejka;
  KFitResult r;
  const bool fitted = KFitConvert(*source, fo, tyre, &r);
  FitCliProgressDone();
  const int status = fitted ? FitCliFinish(cmd, o, *tyre, r) : 1;
  delete tyre;
  delete source;
  return status;
}

CliCommand reg{"convert", kUsage, "convert a tyre to another model by fitting samples of it", 61, RunConvert};

}  // namespace
