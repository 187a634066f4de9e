// The tyre argument and operating-point options shared by the curves and
// export subcommands: TYRE [--wheel N] [--load N] [--slip-ratio R]
// [--slip-angle DEG] [--camber DEG] [--pressure PA] [--zoom on|off]
// [--set KEY=VALUE]...
//
// One tyre holds the loaded coefficients with the operating point applied;
// the graphs sample it through the stateless core (chart/curves.h), which
// changes nothing, so each graph sees the point exactly as the window's do.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "chart/curves.h"
#include "chart/oppoint.h"
#include "tyre/kpacejka.h"

struct CliTyreState {
  std::string source;
  int wheel = 0;
  OperatingPoint point;
  bool zoom = true;
  std::vector<std::pair<std::string, float>> sets;  // coefficient edits, in order
  float pressure = 0;  // inflation pressure, Pa; 0: the tyre's nominal pressure
  KPacejka tyre;
};

// Parses the shared options out of `args`; options it does not know are
// left in `rest` in order (their values with them when `valued` names them).
// False after printing "tyrograph-cli CMD: ..." to stderr.
bool CliParseTyreArgs(const char *cmd, const std::vector<std::string> &args,
                      const std::vector<std::string> &valued, CliTyreState *state,
                      std::vector<std::string> *rest);
// Loads the tyre, applies the operating point and then the edits. False with
// the problem (file and what is wrong) in `error`.
bool CliLoadTyreState(CliTyreState *state, std::string *error);
// False with the reason in `error` when `tyre` cannot be run at `pascals`
// (Pa, above 0): its model has no pressure terms or it has no nominal
// pressure. True for 0 (no pressure asked for).
bool CliPressureUsable(const KTyreParams &tyre, float pascals, std::string *error);
// CliLoadTyreState, printing the problem to stderr.
bool CliLoadTyres(const char *cmd, CliTyreState *state);
// The values export-ascii accepts: steps >= 0 and a maximum above 0 (the
// window asks again for anything else).
bool CliAsciiArgsValid(int steps, float maximum);
// A TYRE argument as the tyre commands take it: a bare name looked up in the
// base folder (CarResolveSource).
std::string CliResolveTyre(const std::string &source);
// Whether `source` loads as a tyre for `wheel` (the loader's own reports
// held back); when not, prints "tyrograph-cli CMD: PREFIX<the problem>" and
// returns false.
bool CliTyreLoads(const char *cmd, const std::string &source, int wheel, const char *prefix);
// Loads one tyre from `source` with the state's wheel, edits and operating point.
bool CliLoadTyreInto(const char *cmd, const CliTyreState &state, const std::string &source, KPacejka *tyre);
// An output option at rest[*i]: "-o OUT" (moving *i past OUT) or "--force".
// False for anything else.
bool CliTakeOutputOption(const std::vector<std::string> &rest, size_t *i, std::string *out, bool *force);
// True (with the message "OUT exists; add --force to overwrite it") when
// `out` names a file that exists and `force` is not set; standard output
// ("" or "-") never does.
bool CliRefusesOverwrite(const char *cmd, const std::string &out, bool force);
// A number argument: false (with a message) when `text` is not wholly a number.
bool CliParseFloat(const char *cmd, const char *option, const std::string &text, float *out);
bool CliParseInt(const char *cmd, const char *option, const std::string &text, int *out);
// Samples the three graphs as the window's frame does.
void CliSampleCurves(const CliTyreState &state, CurveRange ranges[CURVE_COUNT], Curve curves[CURVE_COUNT]);
// With "--help" (or "-h") among the arguments prints the subcommand's
// options, the shared ones included, and returns true.
bool CliWantsHelp(const char *cmd, const std::vector<std::string> &args, const char *own);
// Writes `text` to `out` ("" or "-": standard output). Exit code 0 or 1.
int CliEmit(const char *cmd, const std::string &out, const std::string &text);
