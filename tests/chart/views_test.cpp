// The views against the model: ellipse extremes, µ over load and stiffness
// against the window's curves; the fitted axes.
#include <cmath>
#include <string>

#include "golden.h"
#include "chart/oppoint.h"
#include "chart/plot.h"
#include "chart/views.h"
#include "render/qrecorder.h"

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
    vt.at = tyre.GetStoredPoint();
    vt.fxRange = CurveInitialRange(CURVE_FX);
    vt.fyRange = CurveInitialRange(CURVE_FY);
    CurveApplyZoom(CURVE_FX, true, &vt.fxRange);
    CurveApplyZoom(CURVE_FY, true, &vt.fyRange);
  }
  // The window's curve peak at the tyre's load (Fx/Fz or Fy/Fz).
  float CurvePeak(CurveKind kind) {
    Curve c;
    CurveSample(tyre, tyre.GetStoredPoint(), kind, kind == CURVE_FX ? vt.fxRange : vt.fyRange, &c);
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
    // every byte of the coefficients, the operating point and the results
    auto bytes = [&] {
      const char *from = reinterpret_cast<const char *>(&f.tyre.camber);
      const char *to = reinterpret_cast<const char *>(&f.tyre.resultSpares[4]);
      return std::string(reinterpret_cast<const char *>(static_cast<const KTyreParams *>(&f.tyre)),
                         sizeof(KTyreParams)) + std::string(from, size_t(to - from));
    };
    const std::string before = bytes();
    Chart c = ViewMuLoad({f.vt});
    EXPECT_TRUE(before == bytes());
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
}

// The load sweeps stay where the tyre's coefficients mean something: a TIR
// file's maximum load, three times a Magic Formula tyre's nominal load, or
// three times a Pacejka89/96 tyre's typical load (a quarter of the load
// where its peak friction falls to zero), and the subtitle says which.
TEST(Views, LoadSweepsUseTheTyresOwnRange) {
  ViewFixture tir(MF61), car(TouringCar());
  ViewLoadRange r = ViewLoadRangeOf(tir.tyre);
  EXPECT_FLOAT_EQ(r.top, 18000.0f);
  EXPECT_EQ(r.why, "maximum load 18000 N");
  // touring: b1 = -110, b2 = 1800 (zero at 16.4 kN), a1 = -55, a2 = 1450 (26.4 kN)
  r = ViewLoadRangeOf(car.tyre);
  EXPECT_NEAR(r.top, 3.0f * 1000.0f * (1800.0f / 110.0f) / 4.0f, 0.5f);
  EXPECT_EQ(r.why, "3 x typical load 4091 N (no load range given)");
  for (Chart c : {ViewMuLoad({car.vt}), ViewStiffness({car.vt})}) {
    EXPECT_EQ(c.subtitle, "Fz up to " + r.why) << c.title;
    ASSERT_EQ(c.series.size(), 2u);
    for (const ChartSeries &s : c.series) {
      EXPECT_FLOAT_EQ(s.x.back(), r.top) << c.title;
      // No V down to zero friction or stiffness inside the range.
      for (float y : s.y) EXPECT_GT(y, 0.1f) << c.title << " " << s.label;
    }
  }
  // A Magic Formula tyre without a maximum load: three times its nominal load.
  ViewFixture open(MF61);
  open.tyre.fzMax = 999999.0f;
  open.tyre.lfz0 = 1.5f;
  r = ViewLoadRangeOf(open.tyre);
  EXPECT_FLOAT_EQ(r.top, 3.0f * 6752.0f * 1.5f);
  EXPECT_EQ(r.why, "3 x nominal load 10128 N (no load range given)");
  // A Pacejka89/96 tyre whose friction never falls: the load slider's top.
  car.tyre.b1 = car.tyre.a1 = 0.0f;
  EXPECT_FLOAT_EQ(ViewMaxLoad(car.tyre), 30000.0f);
  // Two tyres: one part each, in the legend's order.
  ViewFixture a(MF61), b(TouringCar());
  a.vt.label = "one.tir", b.vt.label = "two";
  EXPECT_EQ(ViewMuLoad({a.vt, b.vt}).subtitle,
            "Fz up to maximum load 18000 N / 3 x typical load 4091 N (no load range given)");
}

// Below a minimum load the model clamps the load: the sweeps go on there
// only faded and without a legend entry, meeting the series at the limit.
TEST(Views, BelowTheMinimumLoadTheSweepsFade) {
  ViewFixture f(TirFile("335_65R22_5_G275MSA_60psi.tir"));
  const float fzMin = f.tyre.fzMin;
  ASSERT_GT(fzMin, 10000.0f);
  for (Chart c : {ViewMuLoad({f.vt}), ViewStiffness({f.vt})}) {
    ASSERT_EQ(c.series.size(), 4u) << c.title;
    for (size_t i = 0; i < 4; i += 2) {
      const ChartSeries &below = c.series[i], &main = c.series[i + 1];
      EXPECT_TRUE(below.label.empty());
      EXPECT_LT(below.alpha, 0.5f);
      EXPECT_FALSE(main.label.empty());
      EXPECT_EQ(main.alpha, 1.0f);
      EXPECT_FLOAT_EQ(main.x.front(), fzMin) << c.title;
      EXPECT_FLOAT_EQ(below.x.back(), fzMin) << c.title;
      EXPECT_EQ(below.y.back(), main.y.front());
      for (size_t k = 0; k + 1 < below.x.size(); k++) EXPECT_LT(below.x[k], fzMin);
    }
  }
  // Without a minimum load nothing fades.
  ViewFixture g(MF61);
  EXPECT_EQ(ViewMuLoad({g.vt}).series.size(), 2u);
}

TEST(Views, StiffnessIsTheCurvesSlopeAtZeroSlip) {
  ViewFixture f(TouringCar());
  Chart c = ViewStiffness({f.vt});
  ASSERT_EQ(c.series.size(), 2u);
  size_t at = 0;
  while (c.series[0].x[at] != 2500.0f) at++;
  // The window's curves around zero: sample 145 sits at zero slip.
  Curve fx, fy;
  CurveSample(f.tyre, f.tyre.GetStoredPoint(), CURVE_FX, f.vt.fxRange, &fx);
  CurveSample(f.tyre, f.tyre.GetStoredPoint(), CURVE_FY, f.vt.fyRange, &fy);
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

TEST(Chart, LegendGoesToTheEmptiestCorner) {
  // a rising curve fills the bottom left and the top right
  Chart c;
  ChartSeries s;
  for (int i = 0; i <= 20; i++) s.x.push_back(float(i)), s.y.push_back(float(i * i));
  s.label = "curve";
  c.series.push_back(s);
  const ChartCorner corner = ChartEmptiestCorner(c);
  EXPECT_EQ(corner, CHART_TOP_LEFT);
  // the legend's white box is drawn at the left of the plot box
  c.legend = corner;
  QRecorder rec;
  const QRect area(0, 0, 400, 300), box = ChartBox(area);
  ChartPaint(&rec, c, area);
  const QRecord *label = rec.FindText("curve");
  ASSERT_NE(label, nullptr);
  EXPECT_LT(label->x, box.x + box.wid / 2);
  EXPECT_LT(label->y, box.y + box.hgt / 2);
  // the default stays at the top right
  c.legend = CHART_TOP_RIGHT;
  rec.Reset();
  ChartPaint(&rec, c, area);
  EXPECT_GT(rec.FindText("curve")->x, box.x + box.wid / 2);
}
