// The car.ini writer for one tyre on all four wheels.
#include "chart/carsave.h"

#include <cstdio>
#include <cstdlib>

#include "base/qinfo.h"
#include "chart/carload.h"
#include "tyre/kpacejka.h"

namespace {

// The shortest "%.Ng" text that reads back (as the configuration reader
// does, with atof) to exactly `v`.
std::string FloatText(float v) {
  char buf[32];
  for (int digits = 6; digits <= 9; digits++) {
    snprintf(buf, sizeof buf, "%.*g", digits, double(v));
    if (float(atof(buf)) == v) break;
  }
  return buf;
}

}  // namespace

bool CarWriteTyre(const char *path, const KPacejka &tyre, std::string *error) {
  QInfo *info = new QInfo(path, QINFO_NO_READ | QINFO_SILENT);
  bool ok = true;
  for (int w = 0; w < CAR_WHEELS && ok; w++) {
    const std::string section = CarWheelSection(w) + ".";
    ok = info->SetInt((section + "model").c_str(), tyre.model);
    for (int i = 0; i < kpacejkaMemberCount && ok; i++) {
      const KPacejkaMember &m = kpacejkaMembers[i];
      if (m.kind != KPacejkaMember::FLOAT || !KPacejkaModelReads(m, tyre.model)) continue;
      if (m.group == KPacejkaMember::PRESSURE && !KPacejkaHasPressure(tyre)) continue;
      ok = info->SetString((section + m.name).c_str(), FloatText(float(KPacejkaGetMember(tyre, m))).c_str());
    }
  }
  ok = ok && info->Write(path, false);
  info->SetFlags(info->GetFlags() & ~QINFO_MODIFIED);  // no second try from the destructor
  delete info;
  if (!ok) *error = std::string(path) + ": can't be written";
  return ok;
}
