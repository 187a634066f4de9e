// tyrograph-rigrun TYRE.tir -o RUN [--tydex] [--rate HZ] [--seed N] [--pressure-terms] [--force]
//
// Makes a realistic rig run from a tyre (tyre/krigrun.h): a tab-separated
// text file with names and units rows, SAE signs and degrees, or with
// --tydex a TYDEX file. Every file says in its comments that it is
// generated, from which tyre and with which settings. --pressure-terms
// runs the tyre at its set points' pressures (its NOMPRES and 85 % of it)
// through its pressure coefficients; without it the tyre stays at its
// nominal pressure throughout.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/qfile.h"
#include "diag/qdebug.h"
#include "tyre/kpacejka.h"
#include "tyre/krigrun.h"

namespace {

int Quiet(const char *, const char *) { return 0; }

int Usage(const char *problem) {
  if (problem) fprintf(stderr, "tyrograph-rigrun: %s\n", problem);
  fprintf(stderr, "usage: tyrograph-rigrun TYRE.tir -o RUN [--tydex] [--rate HZ] [--seed N] [--pressure-terms] "
                  "[--force]\n");
  return 2;
}

}  // namespace

int main(int argc, char **argv) {
  std::string tyreFile, out;
  bool tydex = false, force = false, pressureTerms = false;
  double rate = 25;
  unsigned long seed = 17;
  for (int i = 1; i < argc; i++) {
    const std::string a = argv[i];
    const bool valued = a == "-o" || a == "--rate" || a == "--seed";
    if (valued && i + 1 >= argc) return Usage((a + " needs a value").c_str());
    char *end = nullptr;
    if (a == "-o") out = argv[++i];
    else if (a == "--tydex") tydex = true;
    else if (a == "--force") force = true;
    else if (a == "--pressure-terms") pressureTerms = true;
    else if (a == "--rate") {
      rate = strtod(argv[++i], &end);
      if (*end || !(rate >= 5 && rate <= 1000)) return Usage("--rate: a number of samples per second, 5 to 1000");
    } else if (a == "--seed") {
      seed = strtoul(argv[++i], &end, 10);
      if (*end) return Usage("--seed: a whole number");
    } else if (a[0] == '-') return Usage(("unknown option '" + a + "'").c_str());
    else if (tyreFile.empty()) tyreFile = a;
    else return Usage("more than one tyre");
  }
  if (tyreFile.empty() || out.empty()) return Usage(nullptr);
  if (!force && QFileExists(out.c_str(), false)) {
    fprintf(stderr, "tyrograph-rigrun: %s exists; add --force to overwrite it\n", out.c_str());
    return 1;
  }
  KPacejka tyre;
  qSetDebugHook(Quiet);  // the loader's trace
  if (!tyre.LoadFromTirFile(tyreFile.c_str())) {
    fprintf(stderr, "tyrograph-rigrun: %s: not a readable TIR file\n", tyreFile.c_str());
    return 1;
  }
  KRigRunPlan plan = KRigRunPlanFor(tyre);
  plan.rate = rate;
  plan.seed = unsigned(seed);
  if (pressureTerms) {
    if (!(tyre.nompres > 0)) {
      fprintf(stderr, "tyrograph-rigrun: %s: --pressure-terms: the tyre has no NOMPRES\n", tyreFile.c_str());
      return 1;
    }
    plan.pressureTerms = true;
    plan.pressures = {double(tyre.nompres), 0.85 * double(tyre.nompres)};
  }
  KRunData run;
  KRigRun(tyre, plan, &run);
  const char *slash = strrchr(tyreFile.c_str(), '/');
  char settings[256];
  snprintf(settings, sizeof settings,
           "%g Hz, seed %lu, 1.5 %% noise, 3 %% load wobble, relaxation length %g m at %g km/h, grip drift %g %%, "
           "offsets Fy %g N, Mz %g N·m",
           plan.rate, seed, plan.relaxation, plan.speed * 3.6, plan.drift * 100, plan.fyOffset, plan.mzOffset);
  const std::vector<std::string> comment = {
      "GENERATED rig run, not a measurement: made by tyrograph-rigrun from " + std::string(slash ? slash + 1 : tyreFile.c_str()),
      settings,
      tydex ? "ISO signs (TYDEX wheel axes), degrees, km/h, kPa" : "SAE signs (loads negative), degrees, km/h, kPa"};
  std::vector<std::string> lines = comment;
  if (pressureTerms)
    lines.push_back("the tyre runs at each set point's pressure through its pressure coefficients (NOMPRES " +
                    std::to_string(int(tyre.nompres / 1000)) + " kPa)");
  const std::string text = tydex ? KRigRunTydex(run, lines) : KRigRunText(run, lines);
  FILE *f = fopen(out.c_str(), "wb");
  bool ok = f && fwrite(text.data(), 1, text.size(), f) == text.size();
  if (f && fclose(f) != 0) ok = false;
  if (!ok) {
    fprintf(stderr, "tyrograph-rigrun: %s: can't be written: %s\n", out.c_str(), strerror(errno));
    return 1;
  }
  return 0;
}
