// tyrograph-cli export-ascii: the window's "Export ASCII" file, byte for byte.
#include <cstdio>
#include <string>

#include "cli/cli.h"
#include "cli/tyreopts.h"
#include "chart/export.h"

namespace {

int RunExportAscii(const std::vector<std::string> &args) {
  auto *st = new CliTyreState;
  std::vector<std::string> rest;
  std::string out;
  int steps = -1;
  float maximum = 0.0f;
  bool haveMax = false, force = false;
  if (CliWantsHelp("export-ascii", args, "--steps N --max X [-o OUT] [--force]")) {
    delete st;
    return 0;
  }
  bool ok = CliParseTyreArgs("export-ascii", args, {"--steps", "--max", "-o"}, st, &rest);
  for (size_t i = 0; ok && i < rest.size(); i++) {
    if (rest[i] == "--steps") {
      ok = CliParseInt("export-ascii", "--steps", rest[++i], &steps);
    } else if (rest[i] == "--max") {
      ok = CliParseFloat("export-ascii", "--max", rest[++i], &maximum);
      haveMax = true;
    } else if (!CliTakeOutputOption(rest, &i, &out, &force)) {
      fprintf(stderr, "tyrograph-cli export-ascii: unknown option '%s'\n", rest[i].c_str());
      ok = false;
    }
  }
  // The window asks again for a negative count or a maximum not above 0.
  if (ok && (!haveMax || !CliAsciiArgsValid(steps, maximum))) {
    fprintf(stderr, "tyrograph-cli export-ascii: needs --steps N (N >= 0) and --max X (X > 0)\n");
    ok = false;
  }
  if (!ok || CliRefusesOverwrite("export-ascii", out, force) || !CliLoadTyres("export-ascii", st)) {
    delete st;
    return 2;
  }
  std::string text = ExportAsciiText(&st->tyre, &st->tyre, steps, maximum);
  delete st;
  return CliEmit("export-ascii", out, text);
}

CliCommand reg{"export-ascii", "TYRE --steps N --max X [-o OUT] [--force] [POINT]", "the \"Export ASCII\" file",
               50, RunExportAscii};

}  // namespace
