// Sign conventions of lateral force and aligning moment: telling which way a
// tyre or a data set points, and mirroring a tyre.
//
// Mirroring changes the sign of a set of coefficients. Which ones follows
// from the formulas:
//   Pacejka89/96  Fy = D·sin(C·atan(B·x ...)) + Sv with D = (a1·Fz + a2)·Fz,
//                 B = a3·(...)/(C·D): negating a1, a2, a3 keeps B and negates
//                 D; a111, a112, a12, a13 negate Sv. Mz likewise with c1, c2
//                 (D), c3, c4 (B) and c14 ... c17 (Sv).
//   Magic Formula Fy: pdy1, pdy2 negate Dy, pky1 negates Ky (By = Ky/(Cy·Dy)
//                 stays), pvy1 ... pvy4 negate SVy (SVy/Ky stays), rvy1 ...
//                 rvy3 negate SVyk. Mz takes Fy in its trail term and in the
//                 ssz2 term: qdz1, qdz2 and ssz2 turn over with Fy so that Mz
//                 stays. Mz on its own: the trail (qdz1, qdz2), the residual
//                 torque (qdz6 ... qdz9) and the s terms (ssz1 ... ssz4).
// The member table marks these (KPacejkaMember::mirror); a member marked for
// both channels turns over when exactly one of them is mirrored.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "tyre/kfit.h"

namespace {

constexpr unsigned FY = KPacejkaMember::MIRROR_FY, MZ = KPacejkaMember::MIRROR_MZ;

// Negates the members the mirrored channels turn over (the member table's
// mirror bits) among those of the tyre's kind: the Pacejka89/96
// coefficients for a Pacejka89/96 tyre, the Magic Formula ones otherwise.
void Apply(KPacejka &tyre, unsigned mirrored) {
  const bool pac96 = tyre.model == KPacejka::PAC96;
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    const unsigned hit = m.mirror & mirrored;
    if (hit != FY && hit != MZ) continue;  // none, or both: the sign stays
    if ((m.family == KPacejkaMember::PAC96_FAMILY) != pac96) continue;
    if (float *p = KPacejkaFloat(tyre, m)) *p = -*p;
  }
}

// Slope through the origin of y over x: Σxy / Σx².
struct Slope {
  double sxy = 0, sxx = 0;
  void Add(double x, double y) { sxy += x * y, sxx += x * x; }
  int Sign() const { return sxx > 0 && sxy != 0 ? (sxy > 0 ? 1 : -1) : 0; }
};

// Small slip angles: the linear part of the curves, well before the peak.
constexpr double SMALL_ALPHA = 0.035;  // 2 degrees

}  // namespace

int KFitUsualSign(int channel) { return channel == KCH_MZ ? -1 : 1; }

int KFitDataSlopeSign(const KMeasuredData &data, int channel) {
  if (!data.has[channel]) return 0;
  // The pure lateral points with the smallest non-zero slip angles, up to
  // SMALL_ALPHA (or the smallest there is when none is that small). Sweeps
  // run to both sides, so an offset (conicity, camber) cancels in Σxy.
  double smallest = HUGE_VAL;
  for (const KMeasuredPoint &p : data.points)
    if (p.kappa == 0 && p.alpha != 0) smallest = std::min(smallest, std::fabs(p.alpha));
  if (smallest == HUGE_VAL) return 0;
  const double limit = std::max(SMALL_ALPHA, smallest);
  Slope s;
  for (const KMeasuredPoint &p : data.points)
    if (p.kappa == 0 && p.alpha != 0 && std::fabs(p.alpha) <= limit) s.Add(p.alpha, p.force[channel]);
  return s.Sign();
}

int KFitTyreSlopeSign(const KTyreParams &tyre, double fz, int channel) {
  Slope s;
  for (double alpha : {-0.01, 0.01}) {
    const KOperatingPoint p{float(fz), 0.0f, float(alpha), 0.0f};
    const KTyreResult r = KTyreEvaluate(tyre, p);
    KTyreReport(tyre, p, r);
    s.Add(alpha, channel == KCH_FY ? double(r.Fy) : double(r.Mz));
  }
  return s.Sign();
}

void KFitMirror(KPacejka &tyre, bool fy, bool mz) {
  const unsigned mirrored = (fy ? FY : 0) | (mz ? MZ : 0);
  if (!mirrored) return;
  Apply(tyre, mirrored);
}
