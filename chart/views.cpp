// The views: sweeps of the model into chart series.
//
// Sections: [evaluation] [ellipse] [mu-load] [stiffness]
#include "chart/views.h"

#include <cmath>

#include "chart/tyreguard.h"
#include "tyre/kpacejka.h"

// ---- [evaluation] ------------------------------------------------------------------------

namespace {

struct Forces {
  float fx, fy;
};

Forces At(KPacejka *t, float kappa, float alphaDeg) {
  t->SetSlipRatio(kappa);
  t->SetSlipAngle(alphaDeg / CURVE_RAD2DEG);
  t->Calculate();
  return {t->Fx, t->Fy};
}

std::string Named(const char *what, const ViewTyre &vt) {
  return vt.label.empty() ? what : std::string(what) + "  " + vt.label;
}

}  // namespace

float ViewMaxLoad(const KPacejka &tyre) {
  // 999999 N is the model's "no range given"; the slider's top is more useful.
  return tyre.fzMax > 0.0f && tyre.fzMax < 999999.0f ? tyre.fzMax : 30000.0f;
}

// ---- [ellipse] ---------------------------------------------------------------------------

namespace {

constexpr int SWEEP_POINTS = 201;  // slip ratio -1 .. 1
constexpr int PEAK_POINTS = 1000;  // each side of a pure-slip sweep

// The largest positive and negative force of a pure-slip sweep: slip ratio
// -1..1 at zero slip angle, or slip angle -30..30 degrees at zero slip ratio.
// (A tyre's sign convention decides which slip gives which sign.)
void PureExtremes(KPacejka *t, bool lateral, float *pos, float *neg) {
  *pos = *neg = 0.0f;
  for (int i = -PEAK_POINTS; i <= PEAK_POINTS; i++) {
    float s = float(i) / float(PEAK_POINTS);
    Forces f = lateral ? At(t, 0.0f, 30.0f * s) : At(t, s, 0.0f);
    float v = lateral ? f.fy : f.fx;
    *pos = std::fmax(*pos, v);
    *neg = std::fmax(*neg, -v);
  }
}

}  // namespace

Chart ViewEllipse(const std::vector<ViewTyre> &tyres) {
  Chart c;
  c.title = "Friction ellipse: Fy over Fx, slip ratio -1..1 at slip angles -12..12 deg";
  c.xName = "Fx [kN]";
  c.yName = "Fy [kN]";
  for (const ViewTyre &vt : tyres) {
    TyreStateGuard keep(vt.tyre);
    for (float alpha : VIEW_ELLIPSE_ANGLES) {
      ChartSeries s;
      s.color = vt.fyColor;
      s.alpha = 1.0f - std::fabs(alpha) / 20.0f;
      for (int i = 0; i < SWEEP_POINTS; i++) {
        Forces f = At(vt.tyre, -1.0f + 2.0f * float(i) / float(SWEEP_POINTS - 1), alpha);
        s.x.push_back(f.fx / 1000.0f);
        s.y.push_back(f.fy / 1000.0f);
      }
      // Pacejka89/96 has no combined slip: its sweeps keep the pure-slip forces.
      if (alpha == 0.0f)
        s.label = Named(vt.tyre->model == KPacejka::PAC96 ? "sweeps (model without combined slip)" : "combined slip", vt);
      c.series.push_back(std::move(s));
    }
    // The envelope: an ellipse through the four pure-slip peaks, one quarter
    // per sign pair, so shifted curves keep their own extremes.
    float fxPos, fxNeg, fyPos, fyNeg;
    PureExtremes(vt.tyre, false, &fxPos, &fxNeg);
    PureExtremes(vt.tyre, true, &fyPos, &fyNeg);
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
// operating load itself among them (so the view and the curves meet there).
std::vector<float> Loads(const KPacejka &t) {
  float top = ViewMaxLoad(t), own = t.Fz * 1000.0f;
  std::vector<float> loads;
  for (int i = 1; i <= VIEW_LOAD_STEPS; i++) {
    float l = top * float(i) / float(VIEW_LOAD_STEPS);
    if (own > 0.0f && own < l && (loads.empty() || loads.back() < own)) loads.push_back(own);
    loads.push_back(l);
  }
  return loads;
}

}  // namespace

Chart ViewMuLoad(const std::vector<ViewTyre> &tyres) {
  Chart c;
  c.title = "Peak friction over load (peaks of the Fx/Fz and Fy/Fz curves)";
  c.xName = "Fz [N]";
  c.yName = "\xB5 [N/N]";
  for (const ViewTyre &vt : tyres) {
    TyreStateGuard keep(vt.tyre);
    ChartSeries mx, my;
    mx.color = vt.fxColor, my.color = vt.fyColor;
    mx.label = Named("\xB5x", vt), my.label = Named("\xB5y", vt);
    // Each curve from the operating point, as the window's graphs sample it:
    // the Fx curve at the operating slip angle, the Fy curve at its slip ratio.
    auto peak = [&](CurveKind kind, const CurveRange &range, float load) {
      TyreStateGuard fresh(vt.tyre);
      Curve curve;
      vt.tyre->SetNormalLoad(load);
      CurveSample(vt.tyre, kind, range, &curve);
      return curve.peakValue;
    };
    for (float load : Loads(*vt.tyre)) {
      mx.x.push_back(load), mx.y.push_back(peak(CURVE_FX, vt.fxRange, load));
      my.x.push_back(load), my.y.push_back(peak(CURVE_FY, vt.fyRange, load));
    }
    c.series.push_back(std::move(mx));
    c.series.push_back(std::move(my));
  }
  return c;
}

// ---- [stiffness] -------------------------------------------------------------------------

Chart ViewStiffness(const std::vector<ViewTyre> &tyres) {
  Chart c;
  c.title = "Slip stiffness over load (slope at zero slip)";
  c.xName = "Fz [N]";
  c.yName = "Kx [kN/unit slip], Ky [kN/rad]";
  // Central differences over a small slip, at the tyre's camber.
  const float dk = 0.002f, daDeg = 0.1f;
  for (const ViewTyre &vt : tyres) {
    TyreStateGuard keep(vt.tyre);
    ChartSeries kx, ky;
    kx.color = vt.fxColor, ky.color = vt.fyColor;
    kx.label = Named("Kx", vt), ky.label = Named("Ky", vt);
    for (float load : Loads(*vt.tyre)) {
      vt.tyre->SetNormalLoad(load);
      float fx = (At(vt.tyre, dk, 0.0f).fx - At(vt.tyre, -dk, 0.0f).fx) / (2.0f * dk);
      float fy = (At(vt.tyre, 0.0f, daDeg).fy - At(vt.tyre, 0.0f, -daDeg).fy) / (2.0f * daDeg / CURVE_RAD2DEG);
      kx.x.push_back(load), kx.y.push_back(fx / 1000.0f);
      ky.x.push_back(load), ky.y.push_back(fy / 1000.0f);
    }
    c.series.push_back(std::move(kx));
    c.series.push_back(std::move(ky));
  }
  return c;
}
