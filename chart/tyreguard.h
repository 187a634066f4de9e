// TyreStateGuard: the one way drawing code changes a tyre. It keeps the
// tyre's operating point (camber, slip angle, slip ratio, load, peak load)
// and the results of its last Calculate, and puts them back bit for bit when
// it goes out of scope, whatever the sampling and the ghost curves set in
// between. So a frame leaves every tyre as it found it.
#pragma once

#include <cstring>

#include "tyre/kpacejka.h"

class TyreStateGuard {
 public:
  // The fields a guard keeps, in one list.
  static constexpr int FIELD_COUNT = 19;
  static constexpr float KPacejka::*FIELDS[FIELD_COUNT] = {
      &KPacejka::camber, &KPacejka::sideSlip, &KPacejka::slipPercentage, &KPacejka::Fz, &KPacejka::FzPeak,
      &KPacejka::Bx, &KPacejka::Cx, &KPacejka::Dx, &KPacejka::By, &KPacejka::Cy, &KPacejka::Dy,
      &KPacejka::Fx, &KPacejka::Fy, &KPacejka::Mz, &KPacejka::resultSpare, &KPacejka::longStiffness,
      &KPacejka::corneringStiffness, &KPacejka::peakFx, &KPacejka::peakFy};

  struct State {
    float v[FIELD_COUNT + 4];
    // Bitwise, so NaN results compare equal to themselves.
    bool operator==(const State &o) const { return memcmp(v, o.v, sizeof v) == 0; }
  };
  static State Take(const KPacejka &t) {
    State s;
    for (int i = 0; i < FIELD_COUNT; i++) s.v[i] = t.*FIELDS[i];
    for (int i = 0; i < 4; i++) s.v[FIELD_COUNT + i] = t.resultSpares[i];
    return s;
  }
  static void Put(const State &s, KPacejka *t) {
    for (int i = 0; i < FIELD_COUNT; i++) t->*FIELDS[i] = s.v[i];
    for (int i = 0; i < 4; i++) t->resultSpares[i] = s.v[FIELD_COUNT + i];
  }

  explicit TyreStateGuard(KPacejka *t) : tyre(t) {
    if (tyre) saved = Take(*tyre);
  }
  ~TyreStateGuard() {
    if (tyre) Put(saved, tyre);
  }
  TyreStateGuard(const TyreStateGuard &) = delete;
  TyreStateGuard &operator=(const TyreStateGuard &) = delete;

 private:
  KPacejka *tyre;
  State saved{};
};
