// The rig-run options of `data` and `fit` (cli/runcli.h).
#include "cli/runcli.h"

#include <cstdio>

#include "cli/tyreopts.h"
#include "diag/qcollect.h"
#include "diag/qdebug.h"

bool RunCliParse(const char *cmd, const std::vector<std::string> &args, RunCliOptions *o,
                 std::vector<std::string> *rest) {
  for (size_t i = 0; i < args.size(); i++) {
    const std::string &a = args[i];
    const bool ours = a == "--axes" || a == "--columns" || a == "--units" || a == "--thin";
    if (!ours) {
      rest->push_back(a);
      continue;
    }
    if (i + 1 >= args.size()) {
      fprintf(stderr, "tyrograph-cli %s: %s needs a value\n", cmd, a.c_str());
      return false;
    }
    const std::string &v = args[++i];
    std::string error;
    if (a == "--axes") {
      if (!KRunParseAxes(v, &o->run.axes)) {
        fprintf(stderr, "tyrograph-cli %s: --axes: '%s' is not iso, sae or auto\n", cmd, v.c_str());
        return false;
      }
      o->given = true;
    } else if (a == "--columns" || a == "--units") {
      if (!(a == "--columns" ? KRunParseColumns(v, &o->run, &error) : KRunParseUnits(v, &o->run, &error))) {
        fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, error.c_str());
        return false;
      }
      o->given = true;
    } else {
      if (!CliParseInt(cmd, "--thin", v, &o->condition.thin)) return false;
      if (o->condition.thin < 0) {
        fprintf(stderr, "tyrograph-cli %s: --thin: a number of points per sweep, 0 for all\n", cmd);
        return false;
      }
      o->given = o->given || o->condition.thin > 0;
    }
  }
  return true;
}

bool RunCliPlausible(const char *cmd, const KDataLoad &load) {
  for (const std::string &p : load.problems) fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, p.c_str());
  return load.problems.empty();
}

bool RunCliLoad(const char *cmd, const std::string &file, const RunCliOptions &o, bool check, KDataLoad *out) {
  bool read;
  std::vector<QProblem> problems;
  {
    // the readers' reports come back here; no log written, no loader trace
    const unsigned mask = qGetLogMask();
    qSetLogMask(0);
    QReportCollector reports;
    read = KDataLoadFile(file.c_str(), o.run, o.condition, o.given, out);
    qSetLogMask(mask);
    problems = std::move(reports.problems);
  }
  for (const QProblem &p : problems) fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, p.Text().c_str());
  if (!read) {
    if (!QProblemsHaveError(problems)) fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, out->error.c_str());
    return false;
  }
  return !check || RunCliPlausible(cmd, *out);
}
