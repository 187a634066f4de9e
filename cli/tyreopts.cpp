// Shared option parsing of the curve and export subcommands.
#include "cli/tyreopts.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "base/qfile.h"
#include "chart/basedir.h"
#include "chart/carload.h"
#include "diag/qcollect.h"
#include "chart/export.h"
#include "chart/graphtyres.h"

bool CliParseFloat(const char *cmd, const char *option, const std::string &text, float *out) {
  char *end = nullptr;
  errno = 0;
  double v = strtod(text.c_str(), &end);
  if (text.empty() || *end || errno == ERANGE || !std::isfinite(v)) {
    fprintf(stderr, "tyrograph-cli %s: %s: '%s' is not a number\n", cmd, option, text.c_str());
    return false;
  }
  *out = static_cast<float>(v);
  return true;
}

bool CliParseInt(const char *cmd, const char *option, const std::string &text, int *out) {
  char *end = nullptr;
  errno = 0;
  long v = strtol(text.c_str(), &end, 10);
  if (text.empty() || *end || errno == ERANGE || v < -1000000000L || v > 1000000000L) {
    fprintf(stderr, "tyrograph-cli %s: %s: '%s' is not a whole number\n", cmd, option, text.c_str());
    return false;
  }
  *out = int(v);
  return true;
}

static bool ParseSet(const char *cmd, const std::string &text, CliTyreState *state) {
  size_t eq = text.find('=');
  std::string key = text.substr(0, eq);
  if (eq == std::string::npos || !KPacejkaFindMember(key.c_str())) {
    fprintf(stderr, "tyrograph-cli %s: --set: '%s' is not KEY=VALUE with a tyre member name (a0 ... c17, lfz0, pcx1, ...)\n",
            cmd, text.c_str());
    return false;
  }
  float v;
  if (!CliParseFloat(cmd, "--set", text.substr(eq + 1), &v)) return false;
  state->sets.emplace_back(key, v);
  return true;
}

// One shared option with its value; false on a bad value.
static bool ParseOption(const char *cmd, const std::string &opt, const std::string &val, CliTyreState *state) {
  if (opt == "--wheel") return CliParseInt(cmd, "--wheel", val, &state->wheel);
  if (opt == "--load") return CliParseFloat(cmd, "--load", val, &state->point.load);
  if (opt == "--slip-ratio") return CliParseFloat(cmd, "--slip-ratio", val, &state->point.slipRatio);
  if (opt == "--slip-angle") return CliParseFloat(cmd, "--slip-angle", val, &state->point.slipAngle);
  if (opt == "--camber") return CliParseFloat(cmd, "--camber", val, &state->point.camber);
  if (opt == "--pressure") {
    if (!CliParseFloat(cmd, "--pressure", val, &state->pressure)) return false;
    if (state->pressure > 0.0f) return true;
    fprintf(stderr, "tyrograph-cli %s: --pressure: '%s' is not a pressure above 0 (Pa)\n", cmd, val.c_str());
    return false;
  }
  if (opt == "--set") return ParseSet(cmd, val, state);
  // --zoom
  if (val != "on" && val != "off") {
    fprintf(stderr, "tyrograph-cli %s: --zoom: '%s' is neither on nor off\n", cmd, val.c_str());
    return false;
  }
  state->zoom = val == "on";
  return true;
}

bool CliParseTyreArgs(const char *cmd, const std::vector<std::string> &args,
                      const std::vector<std::string> &valued, CliTyreState *state,
                      std::vector<std::string> *rest) {
  static const char *const shared[] = {"--wheel", "--load", "--slip-ratio", "--slip-angle",
                                       "--camber", "--pressure", "--zoom", "--set"};
  for (size_t i = 0; i < args.size(); i++) {
    const std::string &a = args[i];
    bool isShared = false;
    for (const char *s : shared) isShared = isShared || a == s;
    bool isValued = isShared;
    for (const std::string &v : valued) isValued = isValued || a == v;
    if (isValued && i + 1 >= args.size()) {
      fprintf(stderr, "tyrograph-cli %s: %s needs a value\n", cmd, a.c_str());
      return false;
    }
    if (isShared) {
      if (!ParseOption(cmd, a, args[i + 1], state)) return false;
      i++;
    } else if (isValued) {
      rest->push_back(a);
      rest->push_back(args[++i]);
    } else if (a.size() > 1 && a[0] == '-') {
      rest->push_back(a);
    } else if (state->source.empty()) {
      state->source = a;
    } else {
      fprintf(stderr, "tyrograph-cli %s: unexpected argument '%s'\n", cmd, a.c_str());
      return false;
    }
  }
  if (state->source.empty()) {
    fprintf(stderr, "tyrograph-cli %s: no TYRE given (a .tir file, a car.ini or a car folder)\n", cmd);
    return false;
  }
  state->source = CarResolveSource(state->source, BaseFolderFind());
  return true;
}

// One tyre from `source` with the state's wheel, operating point and edits.
static bool LoadOne(const CliTyreState &state, const std::string &source, KPacejka *tyre, std::string *error) {
  if (!CarLoadTyreSource(source.c_str(), state.wheel, tyre, error)) return false;
  // The window applies the whole operating point after loading and each
  // edit later, directly into the tyre's storage.
  OpApplyAll(tyre, state.point);
  for (const auto &[key, value] : state.sets) KPacejkaSetMember(*tyre, *KPacejkaFindMember(key.c_str()), value);
  if (!CliPressureUsable(*tyre, state.pressure, error)) {
    *error = source + ": " + *error;
    return false;
  }
  tyre->SetPressure(state.pressure);
  return true;
}

bool CliPressureUsable(const KTyreParams &tyre, float pascals, std::string *error) {
  if (pascals <= 0.0f) return true;
  const char *problem = KPacejkaPressureProblem(tyre, pascals);
  if (problem) *error = std::string("--pressure: ") + problem;
  return !problem;
}

bool CliLoadTyreState(CliTyreState *state, std::string *error) {
  if (!LoadOne(*state, state->source, &state->tyre, error)) return false;
  // The window loads the car once for each of its three graphs, and what
  // loading reports (the camber check's warnings, say) comes once per graph;
  // tyrograph-cli has always said the same. The curves need the one tyre.
  for (int g = 1; g < CURVE_COUNT; g++) {
    KPacejka reports;
    if (!LoadOne(*state, state->source, &reports, error)) return false;
  }
  return true;
}

std::string CliResolveTyre(const std::string &source) { return CarResolveSource(source, BaseFolderFind()); }

bool CliTyreLoads(const char *cmd, const std::string &source, int wheel, const char *prefix) {
  auto tyre = std::make_unique<KPacejka>();
  std::string error;
  bool loads;
  {
    // Only whether it loads: what the loader reports on the way comes when
    // the command loads the tyre for its work.
    QReportCollector quiet;
    loads = CarLoadTyreSource(source.c_str(), wheel, tyre.get(), &error);
  }
  if (loads) return true;
  fprintf(stderr, "tyrograph-cli %s: %s%s\n", cmd, prefix, error.c_str());
  return false;
}

bool CliLoadTyreInto(const char *cmd, const CliTyreState &state, const std::string &source, KPacejka *tyre) {
  std::string error;
  if (LoadOne(state, source, tyre, &error)) return true;
  fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, error.c_str());
  return false;
}

bool CliLoadTyres(const char *cmd, CliTyreState *state) {
  std::string error;
  if (CliLoadTyreState(state, &error)) return true;
  fprintf(stderr, "tyrograph-cli %s: %s\n", cmd, error.c_str());
  return false;
}

bool CliAsciiArgsValid(int steps, float maximum) { return steps >= 0 && maximum > 0.0f; }

void CliSampleCurves(const CliTyreState &state, CurveRange ranges[CURVE_COUNT], Curve curves[CURVE_COUNT]) {
  GraphTyresSample(state.tyre, state.zoom, ranges, curves);
}

bool CliTakeOutputOption(const std::vector<std::string> &rest, size_t *i, std::string *out, bool *force) {
  if (rest[*i] == "-o" && *i + 1 < rest.size()) {
    *out = rest[++*i];
    return true;
  }
  if (rest[*i] != "--force") return false;
  *force = true;
  return true;
}

bool CliRefusesOverwrite(const char *cmd, const std::string &out, bool force) {
  if (force || out.empty() || out == "-" || !QFileExists(out.c_str(), false)) return false;
  fprintf(stderr, "tyrograph-cli %s: %s exists; add --force to overwrite it\n", cmd, out.c_str());
  return true;
}

int CliEmit(const char *cmd, const std::string &out, const std::string &text) {
  if (out.empty() || out == "-") {
    fwrite(text.data(), 1, text.size(), stdout);
    return fflush(stdout) == 0 ? 0 : 1;
  }
  if (!ExportWriteFile(out.c_str(), text)) {
    fprintf(stderr, "tyrograph-cli %s: %s: can't open output file for writing\n", cmd, out.c_str());
    return 1;
  }
  return 0;
}

bool CliWantsHelp(const char *cmd, const std::vector<std::string> &args, const char *own) {
  bool help = false;
  for (const std::string &a : args) help = help || a == "--help" || a == "-h";
  if (!help) return false;
  printf("usage: tyrograph-cli %s TYRE %s [POINT]\n\n"
         "TYRE: a .tir file (any case), a car.ini-style file or a car folder holding car.ini\n\n"
         "POINT (the window's state; defaults are its start-up state):\n"
         "  --wheel N          wheel 0..3 of a car (default 0)\n"
         "  --load NEWTONS     vertical load (default 2500)\n"
         "  --slip-ratio R     operating slip ratio (default 0)\n"
         "  --slip-angle DEG   operating slip angle (default 0)\n"
         "  --camber DEG       camber (default 0)\n"
         "  --pressure PA      inflation pressure in Pa, as TIR files give it (default: the tyre's NOMPRES)\n"
         "  --zoom on|off      \"Zoom in horizontally\" (default on)\n"
         "  --set KEY=VALUE    set a tyre member first (a0 ... c17, lfz0 ... lres, pcx1 ...); repeatable\n",
         cmd, own);
  return true;
}
