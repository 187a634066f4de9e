// The views against the model: ellipse extremes, µ over load and stiffness
// against the window's curves; the fitted axes.
#include <cmath>

#include "golden.h"
#include "chart/oppoint.h"
#include "chart/plot.h"
#include "chart/tyreguard.h"
#include "chart/views.h"

namespace {

// A tyre at the window's start-up point (or another load), with the zoomed ranges.
struct ViewFixture {
  KPacejka tyre;
  ViewTyre vt{};
  ViewFixture(const std::string &source, float load = 2500.0f) {
    std::string error;
    EXPECT_TRUE(CarLoadTyreSource(source.c_str(), 0, &tyre, &error)) << error;
    OperatingPoint p;
    p.load = load;
    OpApplyAll(&tyre, p);
    vt.tyre = &tyre;
    vt.fxRange = CurveInitialRange(CURVE_FX);
    vt.fyRange = CurveInitialRange(CURVE_FY);
    CurveApplyZoom(CURVE_FX, true, &vt.fxRange);
    CurveApplyZoom(CURVE_FY, true, &vt.fyRange);
  }
  // The window's curve peak at the tyre's load (Fx/Fz or Fy/Fz).
  float CurvePeak(CurveKind kind) {
    TyreStateGuard keep(&tyre);
    Curve c;
    CurveSample(&tyre, kind, kind == CURVE_FX ? vt.fxRange : vt.fyRange, &c);
    return c.peakValue;
  }
};

float MaxOf(const std::vector<float> &v, float sign) {
  float m = -INFINITY;
  for (float x : v) m = std::fmax(m, sign * x);
  return sign * m;
}

const std::string MF61 = TirFile("MagicFormula61_Parameters.tir");

}  // namespace

TEST(Views, EllipseExtremesArePureSlipPeaks) {
  for (const std::string &source : {TouringCar(), MF61}) {
    ViewFixture f(source, 4000.0f);
    Chart c = ViewEllipse({f.vt});
    ASSERT_EQ(c.series.size(), std::size(VIEW_ELLIPSE_ANGLES) + 1);
    const ChartSeries &env = c.series.back();
    float load = 4.0f;  // kN, as the chart's axes
    EXPECT_NEAR(MaxOf(env.x, 1.0f), f.CurvePeak(CURVE_FX) * load, 0.01f * f.CurvePeak(CURVE_FX) * load) << source;
    EXPECT_NEAR(MaxOf(env.y, 1.0f), f.CurvePeak(CURVE_FY) * load, 0.01f * f.CurvePeak(CURVE_FY) * load) << source;
    // The zero-slip-angle sweep is pure longitudinal slip: it reaches the
    // envelope's Fx extremes and keeps Fy near zero.
    const ChartSeries &straight = c.series[4];
    EXPECT_NEAR(MaxOf(straight.x, 1.0f), MaxOf(env.x, 1.0f), 0.01f * MaxOf(env.x, 1.0f));
    EXPECT_NEAR(MaxOf(straight.x, -1.0f), MaxOf(env.x, -1.0f), 0.01f * std::fabs(MaxOf(env.x, -1.0f)));
    // No sweep point of a combined-slip model lies far outside the envelope.
    if (f.tyre.model != KPacejka::PAC96)
      for (size_t s = 0; s + 1 < c.series.size(); s++)
        for (size_t i = 0; i < c.series[s].x.size(); i++) {
          float ex = c.series[s].x[i] / (c.series[s].x[i] >= 0 ? MaxOf(env.x, 1.0f) : -MaxOf(env.x, -1.0f));
          float ey = c.series[s].y[i] / (c.series[s].y[i] >= 0 ? MaxOf(env.y, 1.0f) : -MaxOf(env.y, -1.0f));
          EXPECT_LT(ex * ex + ey * ey, 1.2f) << source << " series " << s << " point " << i;
        }
  }
}

TEST(Views, MuOverLoadMeetsTheCurvesAtTheOperatingLoad) {
  for (const std::string &source : {TouringCar(), MF61}) {
    ViewFixture f(source);
    TyreStateGuard::State before = TyreStateGuard::Take(f.tyre);
    Chart c = ViewMuLoad({f.vt});
    EXPECT_TRUE(before == TyreStateGuard::Take(f.tyre));
    ASSERT_EQ(c.series.size(), 2u);
    for (int q = 0; q < 2; q++) {
      const ChartSeries &s = c.series[q];
      ASSERT_GE(s.x.size(), size_t(VIEW_LOAD_STEPS));  // the steps and the operating load among them
      EXPECT_FLOAT_EQ(s.x.back(), ViewMaxLoad(f.tyre));
      size_t at = 0;
      while (at < s.x.size() && s.x[at] != 2500.0f) at++;
      ASSERT_LT(at, s.x.size());
      EXPECT_FLOAT_EQ(s.y[at], f.CurvePeak(q ? CURVE_FY : CURVE_FX)) << source << q;
      // Every other load of the sweep meets the curves the window draws with
      // the load slider there (a sweep that moved only the peak load would
      // still meet them at the operating load).
      for (size_t i = 0; i < s.x.size(); i++) {
        ViewFixture there(source, s.x[i]);
        EXPECT_FLOAT_EQ(s.y[i], there.CurvePeak(q ? CURVE_FY : CURVE_FX)) << source << q << " at " << s.x[i] << " N";
      }
    }
  }
  // A TIR file's FZMAX ends the load axis; a car without one uses 30000 N.
  ViewFixture tir(MF61), car(TouringCar());
  EXPECT_FLOAT_EQ(ViewMaxLoad(tir.tyre), tir.tyre.fzMax);
  EXPECT_LT(tir.tyre.fzMax, 999999.0f);
  EXPECT_FLOAT_EQ(ViewMaxLoad(car.tyre), 30000.0f);
}

TEST(Views, StiffnessIsTheCurvesSlopeAtZeroSlip) {
  ViewFixture f(TouringCar());
  Chart c = ViewStiffness({f.vt});
  ASSERT_EQ(c.series.size(), 2u);
  size_t at = 0;
  while (c.series[0].x[at] != 2500.0f) at++;
  // The window's curves around zero: sample 145 sits at zero slip.
  Curve fx, fy;
  {
    TyreStateGuard keep(&f.tyre);
    CurveSample(&f.tyre, CURVE_FX, f.vt.fxRange, &fx);
    CurveSample(&f.tyre, CURVE_FY, f.vt.fyRange, &fy);
  }
  float dx = CurveSampleX(f.vt.fxRange, 146) - CurveSampleX(f.vt.fxRange, 145);
  float da = (CurveSampleX(f.vt.fyRange, 146) - CurveSampleX(f.vt.fyRange, 145)) / CURVE_RAD2DEG;
  float kx = (fx.samples[146] - fx.samples[144]) / (2.0f * dx) * 2.5f;  // kN per unit slip
  float ky = (fy.samples[146] - fy.samples[144]) / (2.0f * da) * 2.5f;  // kN/rad
  EXPECT_NEAR(c.series[0].y[at], kx, 0.15f * kx);  // the curve's samples are far apart
  EXPECT_NEAR(c.series[1].y[at], ky, 0.05f * ky);
  EXPECT_GT(c.series[1].y[at], c.series[1].y[0]);  // stiffer under more load at first
}

TEST(Chart, FittedAxes) {
  struct Row {
    float lo, hi, min, max, step;
  } rows[] = {
      {0.0f, 3.3f, 0.0f, 4.0f, 1.0f},         {-4.6f, 5.2f, -6.0f, 6.0f, 2.0f},
      {250.0f, 30000.0f, 0.0f, 30000.0f, 5000.0f}, {0.02f, 1.74f, 0.0f, 2.0f, 0.5f},
      {1.0f, 1.0f, 0.85f, 1.15f, 0.05f},         {0.0f, 0.0f, -1.0f, 1.0f, 0.5f},
      {INFINITY, -INFINITY, -1.0f, 1.0f, 0.5f},  // no data
  };
  for (const Row &r : rows) {
    ChartAxis a = ChartFitAxis(r.lo, r.hi);
    EXPECT_NEAR(a.min, r.min, 1e-4f) << r.lo << ".." << r.hi;
    EXPECT_NEAR(a.max, r.max, 1e-4f) << r.lo << ".." << r.hi;
    EXPECT_NEAR(a.step, r.step, 1e-5f) << r.lo << ".." << r.hi;
  }
}
