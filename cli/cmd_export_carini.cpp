// tyrograph-cli export-carini: the window's "Export for Car.Ini" block.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/tyreopts.h"
#include "chart/export.h"

namespace {

int RunExportCarIni(const std::vector<std::string> &args) {
  auto *st = new CliTyreState;
  std::vector<std::string> rest;
  std::string out;
  bool force = false;
  if (CliWantsHelp("export-carini", args, "[-o OUT] [--force]")) {
    delete st;
    return 0;
  }
  bool ok = CliParseTyreArgs("export-carini", args, {"-o"}, st, &rest);
  for (size_t i = 0; ok && i < rest.size(); i++) {
    if (!CliTakeOutputOption(rest, &i, &out, &force)) {
      fprintf(stderr, "tyrograph-cli export-carini: unknown option '%s'\n", rest[i].c_str());
      ok = false;
    }
  }
  if (!ok || CliRefusesOverwrite("export-carini", out, force) || !CliLoadTyres("export-carini", st)) {
    delete st;
    return 2;
  }
  // The statistics are the peaks of the curves the window last drew.
  CurveRange ranges[CURVE_COUNT];
  Curve curves[CURVE_COUNT];
  CliSampleCurves(*st, ranges, curves);
  std::string text = ExportCarIniText(st->tyre, curves[CURVE_FX].peakX, curves[CURVE_FY].peakX);
  delete st;
  return CliEmit("export-carini", out, text);
}

CliCommand reg{"export-carini", "TYRE [-o OUT] [--force] [POINT]", "the \"Export for Car.Ini\" block", 51,
               RunExportCarIni};

}  // namespace
