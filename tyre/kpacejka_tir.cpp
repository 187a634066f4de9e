// KPacejka::LoadFromTirFile: the Magic Formula properties of a TIR file,
// under the TIR sections and keys of the member table.
#include <cstdio>
#include <cstring>

#include "tyre/kpacejka.h"
#include "tyre/ptirfile.h"
#include "diag/qdebug.h"

// "section.key" of a member's TIR key.
static void TirName(char *out, size_t size, const KPacejkaMember &m) {
  snprintf(out, size, "%s.%s", m.tirSection, m.tirKey);
}

// A member with a fixed default rather than its current value.
static void ReadFixed(KPacejka &tyre, const PTirFile &tir, const char *member, float def) {
  const KPacejkaMember *m = KPacejkaFindMember(member);
  char name[128];
  TirName(name, sizeof name, *m);
  *KPacejkaFloat(tyre, *m) = tir.GetFloat(name, def);
}

bool KPacejka::LoadFromTirFile(const char *fileName) {
  // 1-2.
  QDBG("KPacejka:LoadFromTIRFile(%s)\n", fileName);
  PTirFile tir(fileName);
  // 3. the model; anything unknown is tried as 5.2
  const int fittyp = tir.GetInt("model.fittyp", 0);
  if (fittyp == 61) {
    model = MF61;
  } else if (fittyp == 52) {
    model = MF52;
  } else {
    QERR(
         "model.fittyp = %d; only 52 (MF5.2) or 61 (MF6.1) supported! Attempting MF5.2", fittyp);
    model = MF52;
  }
  // 4. tyre data: the radius and the nominal load from the file; the
  //    reference speed and the belt mass have no key and get fixed values
  ReadFixed(*this, tir, "r0", 0.3f);
  ReadFixed(*this, tir, "fz0", 1500.0f);
  longv = 30.0f;
  mbelt = 0.0f;
  // 5-6. every other member with a TIR key (the ranges in the file's own
  //    units, the coefficients, the scaling factors with lkzc feeding lt),
  //    each defaulting to its current value; qbz4 has no key and stays
  char name[128];
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    float *p = KPacejkaFloat(*this, m);
    if (!m.tirKey || m.group == KPacejkaMember::DIMENSIONS || !p) continue;
    TirName(name, sizeof name, m);
    *p = tir.GetFloat(name, *p);
  }
  // 7.
  return true;
}
