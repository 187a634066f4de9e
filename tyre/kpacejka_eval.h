// The tyre formula core over the number type T (tyre/knumber.h): dispatch
// by model, then the friction limits and the NaN guard that every model's
// results pass through. The single-point core (ktyre.cpp) runs it with
// T = float, the batch with 8 or 16 lanes; the reports stay with the callers.
#pragma once

#include <limits>

#include "tyre/ktyre.h"
#include "tyre/kpacejka_mf52.h"
#include "tyre/kpacejka_pac2006.h"
#include "tyre/kpacejka_pac96.h"

namespace kpacejka {

template <class T>
struct Guarded {
  Mask<T> Fx, Fy, Mz;
};

template <class T>
inline T Limit(T v, T L) {
  return Select(v < -L, -L, Select(v > L, L, v));
}

// NaN or ±infinity.
template <class T>
inline Mask<T> IsBad(T v) {
  return !(Abs(v) <= std::numeric_limits<float>::max());
}

}  // namespace kpacejka

template <class T>
kpacejka::Guarded<T> KTyreParams::ApplyLimits(kpacejka::Forces<T> &f, const kpacejka::Point<T> &p) const {
  using namespace kpacejka;
  // 2. no force beyond twice the nominal friction force. Only the MF models
  //    keep their friction in pdx1/pdy1; every other model number (Pacejka2006
  //    included) reads the Pacejka89/96 b2/a2.
  const bool mf = model == MF52 || model == MF61;
  const float muX = mf ? pdx1 : b2 * 0.001f;
  const float muY = mf ? pdy1 : a2 * 0.001f;
  const T Lx = Abs(muX * 2.0f * p.Fz * 1000.0f);
  const T Ly = Abs(muY * 2.0f * p.Fz * 1000.0f);
  f.Fx = Limit(f.Fx, Lx);
  f.Fy = Limit(f.Fy, Ly);

  // 3. a NaN or infinity would poison every curve and sum it enters: zero it
  //    (the caller says so)
  const Guarded<T> bad{IsBad(f.Fx), IsBad(f.Fy), IsBad(f.Mz)};
  f.Fx = Select(bad.Fx, T(0.0f), f.Fx);
  f.Fy = Select(bad.Fy, T(0.0f), f.Fy);
  f.Mz = Select(bad.Mz, T(0.0f), f.Mz);
  return bad;
}

template <class T>
kpacejka::Forces<T> KTyreParams::Evaluate(const kpacejka::Point<T> &p, kpacejka::Stats *stats,
                                       kpacejka::Guarded<T> *bad) const {
  // 1. dispatch; every number without a routine of its own runs Magic Formula 5.2
  kpacejka::Forces<T> f;
  switch (model) {
    case PAC96: f = EvalPac96(p, stats); break;
    case PAC2006: f = EvalPac2006(p, stats); break;
    case MF61: f = EvalMagicFormula(true, p, stats); break;
    default: f = EvalMagicFormula(false, p, stats); break;
  }
  *bad = ApplyLimits(f, p);
  return f;
}
