// KPacejka::LoadFromTirFile: the Magic Formula properties of a TIR file.
#include <cstdio>
#include <cstring>

#include "tyre/kpacejka.h"
#include "tyre/ptirfile.h"
#include "diag/qdebug.h"

// The coefficients each section provides, under the member names they are
// stored in (the TIR key is the same name, except lkzc, which feeds lt).
struct TirSection {
  const char *section;
  const char *const *keys;
  int count;
};

static const char *const longitudinalKeys[] = {
    "pcx1", "pdx1", "pdx2", "pdx3", "pex1", "pex2", "pex3", "pex4", "pkx1",
    "pkx2", "pkx3", "phx1", "phx2", "pvx1", "pvx2", "rbx1", "rbx2", "rbx3",
    "rcx1", "rex1", "rex2", "rhx1", "ptx1", "ptx2", "ptx3"};
static const char *const lateralKeys[] = {
    "pcy1", "pdy1", "pdy2", "pdy3", "pey1", "pey2", "pey3", "pey4", "pky1",
    "pky2", "pky3", "phy1", "phy2", "phy3", "pvy1", "pvy2", "pvy3", "pvy4",
    "rby1", "rby2", "rby3", "rby4", "rcy1", "rey1", "rey2", "rhy1", "rhy2",
    "rvy1", "rvy2", "rvy3", "rvy4", "rvy5", "rvy6", "pty1", "pty2"};
// qbz4 is not imported: it keeps its value (a configuration key may set it).
static const char *const aligningKeys[] = {
    "qbz1", "qbz2", "qbz3", "qbz5", "qbz6", "qbz9", "qbz10", "qcz1", "qdz1", "qdz2",
    "qdz3", "qdz4", "qdz6", "qdz7", "qdz8", "qdz9", "qez1",  "qez2", "qez3", "qez4",
    "qez5", "qhz1", "qhz2", "qhz3", "qhz4", "ssz1", "ssz2",  "ssz3", "ssz4"};
static const char *const scalingKeys[] = {
    "lfz0", "lcx",  "lmux", "lex",   "lkx", "lhx",   "lvx",   "lgax", "lcy", "lmuy", "ley",
    "lky",  "lhy",  "lvy",  "lgay",  "ltr", "lres",  "lgaz",  "lxal", "lyka", "lvyka", "ls",
    "lsgkp", "lsgal", "lgyr", "lmx", "lvmx", "lmy", "lmp",   "lkyc", "lkzc"};

#define SECTION(name, keys) {name, keys, int(sizeof keys / sizeof keys[0])}
static const TirSection tirSections[] = {
    SECTION("longitudinal_coefficients", longitudinalKeys),
    SECTION("lateral_coefficients", lateralKeys),
    SECTION("aligning_coefficients", aligningKeys),
    SECTION("scaling_coefficients", scalingKeys),
};

// One range end, with the member's current value as default.
static void ReadRange(const PTirFile &tir, const char *name, float &value) {
  value = tir.GetFloat(name, value);
}

bool KPacejka::LoadFromTirFile(const char *fileName) {
  // 1-2.
  qdbg("kpacejka", "KPacejka::LoadFromTirFile", __LINE__, "KPacejka:LoadFromTIRFile(%s)\n", fileName);
  PTirFile tir(fileName);
  // 3. the model; anything unknown is tried as 5.2
  const int fittyp = tir.GetInt("model.fittyp", 0);
  if (fittyp == 61) {
    model = MF61;
  } else if (fittyp == 52) {
    model = MF52;
  } else {
    qerr("kpacejka", "KPacejka::LoadFromTirFile", __LINE__,
         "model.fittyp = %d; only 52 (MF5.2) or 61 (MF6.1) supported! Attempting MF5.2", fittyp);
    model = MF52;
  }
  // 4. tyre data
  r0 = tir.GetFloat("dimensions.unloaded_radius", 0.3f);
  fz0 = tir.GetFloat("vertical.fnomin", 1500.0f);
  longv = 30.0f;
  mbelt = 0.0f;
  // 5. ranges, in the file's own units
  ReadRange(tir, "long_slip_range.kpumin", slipRatioMin);
  ReadRange(tir, "long_slip_range.kpumax", slipRatioMax);
  ReadRange(tir, "slip_angle_range.alpmin", slipAngleMin);
  ReadRange(tir, "slip_angle_range.alpmax", slipAngleMax);
  ReadRange(tir, "inclination_angle_range.cammin", camberMin);
  ReadRange(tir, "inclination_angle_range.cammax", camberMax);
  ReadRange(tir, "vertical_force_range.fzmin", fzMin);
  ReadRange(tir, "vertical_force_range.fzmax", fzMax);
  // 6. coefficients, each defaulting to its current value
  char name[128];
  for (const TirSection &s : tirSections) {
    for (int i = 0; i < s.count; i++) {
      const char *key = s.keys[i];
      const KPacejkaMember *m = KPacejkaFindMember(strcmp(key, "lkzc") ? key : "lt");
      float *p = m ? KPacejkaFloat(*this, *m) : nullptr;
      if (!p) continue;
      snprintf(name, sizeof name, "%s.%s", s.section, key);
      *p = tir.GetFloat(name, *p);
    }
  }
  // 7.
  return true;
}
