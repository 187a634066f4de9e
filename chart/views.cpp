// The views: sweeps of the model into chart series.
//
// Sections: [evaluation] [ellipse] [mu-load] [stiffness]
#include "chart/views.h"

#include <cmath>
#include <cstdio>

#include "tyre/kpacejka.h"
#include "tyre/kpacejka_point.h"

// ---- [evaluation] ------------------------------------------------------------------------

namespace {

struct Forces {
  float fx, fy;
};

// The forces at the tyre's point `at` with both slips replaced, as its setters
// would store them (the reports of Calculate on this thread).
Forces At(const KTyreParams &t, kpacejka::Point<float> at, float kappa, float alphaDeg) {
  at.slipPercentage = kpacejka::StoredSlipRatio(t, kappa);
  at.sideSlip = kpacejka::StoredSlipAngle(t, alphaDeg / CURVE_RAD2DEG);
  const KTyreResult r = KTyreEvaluateStored(t, at);
  KTyreReportStored(at, r);
  return {r.Fx, r.Fy};
}

// The point `at` with the load replaced as SetNormalLoad stores it.
kpacejka::Point<float> AtLoad(const KTyreParams &t, kpacejka::Point<float> at, float load) {
  at.Fz = at.FzPeak = kpacejka::StoredLoad(t, load);
  return at;
}

std::string Named(const char *what, const ViewTyre &vt) {
  return vt.label.empty() ? what : std::string(what) + "  " + vt.label;
}

}  // namespace

ViewLoadRange ViewLoadRangeOf(const KTyreParams &tyre) {
  char buf[96];
  ViewLoadRange r;
  // 999999 N is the model's "no range given".
  if (tyre.fzMax > 0.0f && tyre.fzMax < 999999.0f) {
    r.top = tyre.fzMax;
    snprintf(buf, sizeof buf, "maximum load %.0f N", double(r.top));
    r.why = buf;
    return r;
  }
  if (tyre.model != KTyreParams::PAC96 && tyre.fz0 * tyre.lfz0 > 0.0f) {
    const float nominal = tyre.fz0 * tyre.lfz0;
    r.top = 3.0f * nominal;
    snprintf(buf, sizeof buf, "3 x nominal load %.0f N (no load range given)", double(nominal));
    r.why = buf;
    return r;
  }
  if (tyre.model == KTyreParams::PAC96) {
    // Peak friction b1 Fz + b2 (longitudinal), a1 Fz + a2 (lateral), Fz in kN.
    float zero = INFINITY;
    if (tyre.b1 < 0.0f && tyre.b2 > 0.0f) zero = std::fmin(zero, -tyre.b2 / tyre.b1);
    if (tyre.a1 < 0.0f && tyre.a2 > 0.0f) zero = std::fmin(zero, -tyre.a2 / tyre.a1);
    if (std::isfinite(zero)) {
      const float typical = 1000.0f * zero / 4.0f;
      r.top = 3.0f * typical;
      snprintf(buf, sizeof buf, "3 x typical load %.0f N (no load range given)", double(typical));
      r.why = buf;
      return r;
    }
  }
  r.why = "the load slider's 30000 N (no load range given)";
  return r;
}

float ViewMaxLoad(const KTyreParams &tyre) { return ViewLoadRangeOf(tyre).top; }

namespace {

// "Fz up to ...", one part per tyre in the legend's order.
std::string LoadSubtitle(const std::vector<ViewTyre> &tyres) {
  std::string out;
  for (const ViewTyre &vt : tyres) out += (out.empty() ? "Fz up to " : " / ") + ViewLoadRangeOf(*vt.tyre).why;
  return out;
}

// Splits a load sweep at the tyre's minimum load: the part below it (and
// the first point at or above, so the lines meet) goes into a faded series
// without a legend entry before the series itself.
void PushSplitAtMinimum(Chart *c, ChartSeries s, float fzMin) {
  size_t n = 0;
  while (n < s.x.size() && s.x[n] < fzMin) n++;
  if (n > 0) {
    ChartSeries below;
    below.color = s.color;
    below.alpha = 0.3f * s.alpha;
    below.width = s.width;
    size_t end = n < s.x.size() ? n + 1 : n;
    below.x.assign(s.x.begin(), s.x.begin() + long(end));
    below.y.assign(s.y.begin(), s.y.begin() + long(end));
    s.x.erase(s.x.begin(), s.x.begin() + long(n));
    s.y.erase(s.y.begin(), s.y.begin() + long(n));
    c->series.push_back(std::move(below));
  }
  c->series.push_back(std::move(s));
}

}  // namespace

// ---- [ellipse] ---------------------------------------------------------------------------

namespace {

constexpr int SWEEP_POINTS = 201;  // slip ratio -1 .. 1
constexpr int PEAK_POINTS = 1000;  // each side of a pure-slip sweep

// The largest positive and negative force of a pure-slip sweep: slip ratio
// -1..1 at zero slip angle, or slip angle -30..30 degrees at zero slip ratio.
// (A tyre's sign convention decides which slip gives which sign.)
void PureExtremes(const ViewTyre &vt, bool lateral, float *pos, float *neg) {
  *pos = *neg = 0.0f;
  for (int i = -PEAK_POINTS; i <= PEAK_POINTS; i++) {
    float s = float(i) / float(PEAK_POINTS);
    Forces f = lateral ? At(*vt.tyre, vt.at, 0.0f, 30.0f * s) : At(*vt.tyre, vt.at, s, 0.0f);
    float v = lateral ? f.fy : f.fx;
    *pos = std::fmax(*pos, v);
    *neg = std::fmax(*neg, -v);
  }
}

}  // namespace

Chart ViewEllipse(const std::vector<ViewTyre> &tyres) {
  Chart c;
  c.legend = CHART_LEGEND_AUTO;
  c.title = "Friction ellipse: Fy over Fx, slip ratio -1..1 at slip angles -12..12 deg";
  c.xName = "Fx [kN]";
  c.yName = "Fy [kN]";
  for (const ViewTyre &vt : tyres) {
    for (float alpha : VIEW_ELLIPSE_ANGLES) {
      ChartSeries s;
      s.color = vt.fyColor;
      s.alpha = 1.0f - std::fabs(alpha) / 20.0f;
      for (int i = 0; i < SWEEP_POINTS; i++) {
        Forces f = At(*vt.tyre, vt.at, -1.0f + 2.0f * float(i) / float(SWEEP_POINTS - 1), alpha);
        s.x.push_back(f.fx / 1000.0f);
        s.y.push_back(f.fy / 1000.0f);
      }
      // Pacejka89/96 has no combined slip: its sweeps keep the pure-slip forces.
      if (alpha == 0.0f)
        s.label = Named(vt.tyre->model == KTyreParams::PAC96 ? "sweeps (model without combined slip)" : "combined slip", vt);
      c.series.push_back(std::move(s));
    }
    // The envelope: an ellipse through the four pure-slip peaks, one quarter
    // per sign pair, so shifted curves keep their own extremes.
    float fxPos, fxNeg, fyPos, fyNeg;
    PureExtremes(vt, false, &fxPos, &fxNeg);
    PureExtremes(vt, true, &fyPos, &fyNeg);
    ChartSeries env;
    env.color = vt.fxColor;
    env.width = 2.0f;
    env.label = Named("pure-slip envelope", vt);
    for (int i = 0; i <= 360; i += 2) {
      float a = float(i) / CURVE_RAD2DEG, ca = std::cos(a), sa = std::sin(a);
      env.x.push_back(ca * (ca >= 0.0f ? fxPos : fxNeg) / 1000.0f);
      env.y.push_back(sa * (sa >= 0.0f ? fyPos : fyNeg) / 1000.0f);
    }
    c.series.push_back(std::move(env));
  }
  return c;
}

// ---- [mu-load] ---------------------------------------------------------------------------

namespace {

// Loads of a load sweep: VIEW_LOAD_STEPS steps up to the maximum, with the
// operating load and the minimum load among them (so the view and the curves
// meet there, and the faded part ends at the limit).
std::vector<float> Loads(const ViewTyre &vt) {
  const KTyreParams &t = *vt.tyre;
  float top = ViewMaxLoad(t), own = vt.at.Fz * 1000.0f;
  std::vector<float> loads;
  auto insert = [&](float extra, float next) {
    if (extra > 0.0f && extra < next && (loads.empty() || loads.back() < extra)) loads.push_back(extra);
  };
  for (int i = 1; i <= VIEW_LOAD_STEPS; i++) {
    float l = top * float(i) / float(VIEW_LOAD_STEPS);
    insert(std::fmin(own, t.fzMin), l);
    insert(std::fmax(own, t.fzMin), l);
    loads.push_back(l);
  }
  return loads;
}

}  // namespace

Chart ViewMuLoad(const std::vector<ViewTyre> &tyres) {
  Chart c;
  c.legend = CHART_LEGEND_AUTO;
  c.title = "Peak friction over load (peaks of the Fx/Fz and Fy/Fz curves)";
  c.xName = "Fz [N]";
  c.yName = "\xB5 [N/N]";
  c.subtitle = LoadSubtitle(tyres);
  for (const ViewTyre &vt : tyres) {
    ChartSeries mx, my;
    mx.color = vt.fxColor, my.color = vt.fyColor;
    mx.label = Named("\xB5x", vt), my.label = Named("\xB5y", vt);
    // Each curve from the operating point, as the window's graphs sample it:
    // the Fx curve at the operating slip angle, the Fy curve at its slip ratio.
    auto peak = [&](CurveKind kind, const CurveRange &range, float load) {
      Curve curve;
      CurveSample(*vt.tyre, AtLoad(*vt.tyre, vt.at, load), kind, range, &curve);
      return curve.peakValue;
    };
    for (float load : Loads(vt)) {
      mx.x.push_back(load), mx.y.push_back(peak(CURVE_FX, vt.fxRange, load));
      my.x.push_back(load), my.y.push_back(peak(CURVE_FY, vt.fyRange, load));
    }
    PushSplitAtMinimum(&c, std::move(mx), vt.tyre->fzMin);
    PushSplitAtMinimum(&c, std::move(my), vt.tyre->fzMin);
  }
  return c;
}

// ---- [stiffness] -------------------------------------------------------------------------

Chart ViewStiffness(const std::vector<ViewTyre> &tyres) {
  Chart c;
  c.legend = CHART_LEGEND_AUTO;
  c.title = "Slip stiffness over load (slope at zero slip)";
  c.xName = "Fz [N]";
  c.yName = "Kx [kN/unit slip], Ky [kN/rad]";
  c.subtitle = LoadSubtitle(tyres);
  // Central differences over a small slip, at the tyre's camber.
  const float dk = 0.002f, daDeg = 0.1f;
  for (const ViewTyre &vt : tyres) {
    ChartSeries kx, ky;
    kx.color = vt.fxColor, ky.color = vt.fyColor;
    kx.label = Named("Kx", vt), ky.label = Named("Ky", vt);
    for (float load : Loads(vt)) {
      const kpacejka::Point<float> at = AtLoad(*vt.tyre, vt.at, load);
      const KTyreParams &t = *vt.tyre;
      float fx = (At(t, at, dk, 0.0f).fx - At(t, at, -dk, 0.0f).fx) / (2.0f * dk);
      float fy = (At(t, at, 0.0f, daDeg).fy - At(t, at, 0.0f, -daDeg).fy) / (2.0f * daDeg / CURVE_RAD2DEG);
      kx.x.push_back(load), kx.y.push_back(fx / 1000.0f);
      ky.x.push_back(load), ky.y.push_back(fy / 1000.0f);
    }
    PushSplitAtMinimum(&c, std::move(kx), vt.tyre->fzMin);
    PushSplitAtMinimum(&c, std::move(ky), vt.tyre->fzMin);
  }
  return c;
}
