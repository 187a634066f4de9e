// tyrograph-cli eval TYRE [--wheel N] [--set NAME=VALUE]... [--pressure PA] [--dump] [--stats]
//
// Evaluates one tyre at operating points read from standard input, one a
// line: "Fz kappa alpha gamma" (N, slip ratio, radians, radians). Prints
// "Fx Fy Mz" per line, with --stats also the curve statistics. --dump lists
// every named member instead. Member names come from the tyre's name table.
// --pressure evaluates at that inflation pressure (Pa, as TIR files give
// it) instead of the tyre's nominal one.
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "cli/tyreopts.h"
#include "chart/basedir.h"
#include "chart/carload.h"
#include "tyre/kpacejka.h"

namespace {

struct EvalOptions {
  std::string tyre;
  int wheel = 0;
  bool dump = false;
  bool stats = false;
  float pressure = 0;  // Pa; 0: nominal
  std::vector<std::pair<const KPacejkaMember *, double>> sets;
};

// A whole token as a finite number.
bool ParseNumber(const char *text, double *out) {
  char *end = nullptr;
  errno = 0;
  const double v = strtod(text, &end);
  if (!*text || *end || errno == ERANGE || !std::isfinite(v)) return false;
  *out = v;
  return true;
}

bool ParseSet(const std::string &text, EvalOptions *o) {
  const size_t eq = text.find('=');
  const std::string name = text.substr(0, eq);
  const KPacejkaMember *m = KPacejkaFindMember(name.c_str());
  if (!m) {
    fprintf(stderr, "tyrograph-cli eval: --set: unknown tyre member '%s'\n", name.c_str());
    return false;
  }
  double v;
  if (eq == std::string::npos || !ParseNumber(text.c_str() + eq + 1, &v)) {
    fprintf(stderr, "tyrograph-cli eval: --set %s: '%s' is not a number\n", name.c_str(),
            eq == std::string::npos ? "" : text.c_str() + eq + 1);
    return false;
  }
  o->sets.emplace_back(m, v);
  return true;
}

bool ParseArgs(const std::vector<std::string> &args, EvalOptions *o) {
  for (size_t i = 0; i < args.size(); i++) {
    const std::string &a = args[i];
    if (a == "--dump") {
      o->dump = true;
    } else if (a == "--stats") {
      o->stats = true;
    } else if (a == "--pressure") {
      double p;
      if (i + 1 >= args.size() || !ParseNumber(args[i + 1].c_str(), &p) || !(p > 0.0)) {
        fprintf(stderr, "tyrograph-cli eval: --pressure: '%s' is not a pressure above 0 (Pa)\n",
                i + 1 < args.size() ? args[i + 1].c_str() : "");
        return false;
      }
      o->pressure = float(p);
      i++;
    } else if (a == "--wheel" || a == "--set") {
      if (i + 1 >= args.size()) {
        fprintf(stderr, "tyrograph-cli eval: %s needs a value\n", a.c_str());
        return false;
      }
      const std::string &v = args[++i];
      double n;
      if (a == "--set") {
        if (!ParseSet(v, o)) return false;
      } else if (!ParseNumber(v.c_str(), &n) || n != std::floor(n)) {
        fprintf(stderr, "tyrograph-cli eval: --wheel: '%s' is not a whole number\n", v.c_str());
        return false;
      } else {
        o->wheel = int(n);
      }
    } else if (a.size() > 1 && a[0] == '-') {
      fprintf(stderr, "tyrograph-cli eval: unknown option '%s'\n", a.c_str());
      return false;
    } else if (o->tyre.empty()) {
      o->tyre = a;
    } else {
      fprintf(stderr, "tyrograph-cli eval: more than one tyre ('%s')\n", a.c_str());
      return false;
    }
  }
  if (o->tyre.empty()) {
    fprintf(stderr, "usage: tyrograph-cli eval TYRE [--wheel N] [--set NAME=VALUE]... [--pressure PA] [--dump] [--stats]\n");
    return false;
  }
  return true;
}

// A tyre without inflation-pressure data (no NOMPRES, no pressure
// coefficients) lists none of those members, as its TIR file has none.
void Dump(KPacejka &t) {
  const bool pressure = KPacejkaHasPressure(t);
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    if (m.group == KPacejkaMember::PRESSURE && !pressure) continue;
    if (m.kind == KPacejkaMember::FLOAT)
      printf("%s=%.9g\n", m.name, KPacejkaGetMember(t, m));
    else
      printf("%s=%lld\n", m.name, (long long)KPacejkaGetMember(t, m));
  }
}

// Splits a line at blanks and tabs.
std::vector<std::string> Tokens(const std::string &line) {
  std::vector<std::string> out;
  size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t' || line[i] == '\r')) i++;
    size_t b = i;
    while (i < line.size() && line[i] != ' ' && line[i] != '\t' && line[i] != '\r') i++;
    if (i > b) out.push_back(line.substr(b, i - b));
  }
  return out;
}

bool ReadLine(std::string &line) {
  line.clear();
  int c;
  while ((c = getchar()) != EOF && c != '\n') line += char(c);
  return c != EOF || !line.empty();
}

// One operating point per line; false (with the message) on a malformed line.
bool EvaluateLines(const KPacejka &t, bool stats, float pressure) {
  KTyreResult last = t.GetLastResult();
  std::string line;
  for (int n = 1; ReadLine(line); n++) {
    const std::vector<std::string> tok = Tokens(line);
    if (tok.empty() || tok[0][0] == '#') continue;
    double v[4];
    for (size_t k = 0; k < 4; k++) {
      if (k >= tok.size()) {
        fprintf(stderr, "tyrograph-cli eval: line %d: expected 4 numbers (Fz kappa alpha gamma), got %zu\n",
                n, tok.size());
        return false;
      }
      if (!ParseNumber(tok[k].c_str(), &v[k])) {
        fprintf(stderr, "tyrograph-cli eval: line %d: '%s' is not a number\n", n, tok[k].c_str());
        return false;
      }
    }
    if (tok.size() > 4) {
      fprintf(stderr, "tyrograph-cli eval: line %d: unexpected '%s' after 4 numbers\n", n, tok[4].c_str());
      return false;
    }
    // The stateless core; statistics a model does not form keep the last
    // line's (at first the loaded tyre's), as they would in the tyre.
    const KOperatingPoint at{float(v[0]), float(v[1]), float(v[2]), float(v[3]), pressure};
    last = KTyreEvaluate(t, at, &last);
    KTyreReport(t, at, last);
    printf("%.9g %.9g %.9g", double(last.Fx), double(last.Fy), double(last.Mz));
    if (stats) {
      const float s[] = {last.longStiffness, last.corneringStiffness, last.peakFx, last.peakFy, last.Bx,
                         last.Cx, last.Dx, last.By, last.Cy, last.Dy};
      for (float x : s) printf(" %.9g", double(x));
    }
    printf("\n");
  }
  return true;
}

int RunEval(const std::vector<std::string> &args) {
  EvalOptions o;
  if (!ParseArgs(args, &o)) return 2;
  KPacejka *tyre = new KPacejka;
  std::string error;
  o.tyre = CarResolveSource(o.tyre, BaseFolderFind());
  if (!CarLoadTyreSource(o.tyre.c_str(), o.wheel, tyre, &error)) {
    fprintf(stderr, "tyrograph-cli eval: %s\n", error.c_str());
    delete tyre;
    return 2;  // as curves and plot: the TYRE argument is at fault
  }
  for (const auto &s : o.sets) KPacejkaSetMember(*tyre, *s.first, s.second);
  if (!CliPressureUsable(*tyre, o.pressure, &error)) {
    fprintf(stderr, "tyrograph-cli eval: %s: %s\n", o.tyre.c_str(), error.c_str());
    delete tyre;
    return 2;
  }
  int rc = 0;
  if (o.dump) Dump(*tyre);
  else if (!EvaluateLines(*tyre, o.stats, o.pressure)) rc = 2;
  delete tyre;
  return rc;
}

const char kDetails[] =
    "TYRE: a .tir file (any case), a car.ini-style file or a car folder holding car.ini;\n"
    "  a bare name is looked up as data/cars/NAME, then data/tyres/NAME in the base folder.\n"
    "\n"
    "Standard input: one operating point a line, four numbers separated by blanks:\n"
    "  Fz kappa alpha gamma   load (N), slip ratio, slip angle (rad), camber (rad)\n"
    "  Blank lines and lines starting with '#' are skipped.\n"
    "Standard output: \"Fx Fy Mz\" (N, N, N*m) a line; with --stats also longitudinal and\n"
    "  cornering stiffness, peak Fx, peak Fy, Bx, Cx, Dx, By, Cy, Dy.\n"
    "\n"
    "Options:\n"
    "  --wheel N          wheel 0..3 of a car (default 0)\n"
    "  --set NAME=VALUE   set a tyre member first (a0 ... c17, lfz0, pcx1, ...); repeatable\n"
    "  --pressure PA      inflation pressure in Pa, as TIR files give it (default: the tyre's NOMPRES)\n"
    "  --dump             list every member as NAME=VALUE instead of evaluating\n"
    "  --stats            add the curve statistics to each line\n";

CliCommand reg{"eval", "TYRE [--wheel N] [--set NAME=VALUE]... [--pressure PA] [--dump] [--stats]",
               "evaluate a tyre at operating points read from stdin", 20, RunEval, kDetails};

}  // namespace
