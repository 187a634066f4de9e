// tyrograph-cli export-tir: a Magic Formula tyre (model 1 or 3) as a TIR file.
#include <cstdio>
#include <string>

#include "base/qfile.h"
#include "cli/cli.h"
#include "cli/tyreopts.h"
#include "tyre/kpacejka_tirwrite.h"

namespace {

int RunExportTir(const std::vector<std::string> &args) {
  const char *cmd = "export-tir";
  if (CliWantsHelp(cmd, args, "[-o OUT.tir] [--force]")) return 0;
  auto *st = new CliTyreState;
  std::vector<std::string> rest;
  std::string out;
  bool force = false;
  // 1. options: the shared ones, -o and --force
  bool ok = CliParseTyreArgs(cmd, args, {"-o"}, st, &rest);
  for (size_t i = 0; ok && i < rest.size(); i++) {
    if (!CliTakeOutputOption(rest, &i, &out, &force)) {
      fprintf(stderr, "tyrograph-cli %s: unknown option '%s'\n", cmd, rest[i].c_str());
      ok = false;
    }
  }
  const bool toStdout = out.empty() || out == "-";
  // 2. an existing file stays unless asked; checked before loading so a
  //    refusal costs nothing
  if (ok && CliRefusesOverwrite(cmd, out, force)) ok = false;
  if (!ok || !CliLoadTyres(cmd, st)) {
    delete st;
    return 2;
  }
  // 3. only the Magic Formula models have a TIR form
  const KPacejka &tyre = st->tyre;
  if (!KPacejkaTirWritable(tyre)) {
    fprintf(stderr, "tyrograph-cli %s: %s: a %s tyre has no TIR form (only Magic Formula 5.2 and 6.1)\n", cmd,
            st->source.c_str(), tyre.GetModelName());
    delete st;
    return 1;
  }
  // 4. standard output, or the file (whose writer reports a failure itself)
  int rc = 0;
  if (toStdout) {
    std::string text;
    KPacejkaTirText(tyre, &text);
    fwrite(text.data(), 1, text.size(), stdout);
    rc = fflush(stdout) == 0 ? 0 : 1;
  } else if (!KPacejkaWriteTirFile(out.c_str(), tyre)) {
    fprintf(stderr, "tyrograph-cli %s: %s: not written\n", cmd, out.c_str());
    rc = 1;
  }
  delete st;
  return rc;
}

CliCommand reg{"export-tir", "TYRE [-o OUT.tir] [--force] [POINT]",
               "a Magic Formula tyre as a TIR file (every property the import reads)", 52, RunExportTir};

}  // namespace
