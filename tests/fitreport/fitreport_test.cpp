// The fit report: its pages for a small fit, what the charts hold (curves at
// the set point's load and camber, residuals of the right points), the
// summary's continuation, the coefficient remarks, the drawn page and the
// PDF file.
#include "fitreport/fitreport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "platform/cairo/qcairo.h"
#include "render/qrecorder.h"
#include "tests/base/capture.h"
#include "tyre/kcondition.h"
#include "tyre/kpacejka_batch.h"
#include "tyre/ksample.h"

namespace {

// A tyre sampled at some loads and cambers stands in for measured data; the
// tyre itself is the "fitted" one, so every residual is zero.
struct Fixture {
  KPacejka tyre;
  KMeasuredData data;
  KFitResult result;
  FitReportInput in;

  Fixture(std::vector<double> loads, std::vector<double> cambers, bool combined) {
    {
      ReportCapture quiet;  // the loader's trace
      tyre.LoadFromTirFile(TYRO_SOURCE_DIR "/data/tyres/MagicFormula61_Parameters.tir");
    }
    KSamplePlan plan;
    plan.loads = std::move(loads);
    plan.cambers = std::move(cambers);
    plan.kappaMin = -0.2, plan.kappaMax = 0.2;
    plan.alphaMin = -0.3, plan.alphaMax = 0.3;
    plan.steps = 11;  // nearest the zero slip: 0.69 deg and 0.008, off the other sweep
    plan.combined = combined;
    plan.combinedSteps = 9;
    KSampleTyre(tyre, plan, &data);
    KFitEvaluate(tyre, data, result.channel);
    in.dataFile = "sampled.csv";
    in.dataKind = "tidy CSV";
    in.data = &data;
    KConditionSetPoints(data, &in.setPoints, &in.setPoint);
    in.model = KPacejka::MF61;
    in.tyre = &tyre;
    in.result = &result;
  }
};

std::vector<std::string> Titles(const FitReport &r) {
  std::vector<std::string> t;
  for (const FitReportPage &p : r.pages) t.push_back(p.title);
  return t;
}

bool StartsWith(const std::string &s, const std::string &head) { return s.compare(0, head.size(), head) == 0; }

size_t CountStarting(const std::vector<std::string> &titles, const std::string &head) {
  size_t n = 0;
  for (const std::string &t : titles) n += StartsWith(t, head);
  return n;
}

// The y of a polyline series at x, linearly between its vertices.
double At(const ChartSeries &s, double x) {
  for (size_t i = 1; i < s.x.size(); i++)
    if (s.x[i - 1] <= x && x <= s.x[i]) {
      const double u = (x - s.x[i - 1]) / (s.x[i] - s.x[i - 1]);
      return s.y[i - 1] + u * (s.y[i] - s.y[i - 1]);
    }
  return NAN;
}

}  // namespace

TEST(FitReportSetPoints, TidyPointsGroupByLoadAndCamber) {
  Fixture f({2000, 4000, 6000}, {-0.03, 0.0}, false);
  ASSERT_EQ(f.in.setPoints.size(), 6u);
  size_t total = 0;
  for (const KSetPoint &sp : f.in.setPoints) total += sp.points;
  EXPECT_EQ(total, f.data.points.size());
  for (size_t i = 0; i < f.data.points.size(); i++) {
    const KSetPoint &sp = f.in.setPoints[size_t(f.in.setPoint[i])];
    EXPECT_NEAR(sp.fz, f.data.points[i].fz, 1e-9) << i;
    EXPECT_NEAR(sp.gamma, f.data.points[i].gamma, 1e-12) << i;
  }
}

TEST(FitReportSetPoints, WobblingLoadsClusterAndAStrayPointJoinsTheNearest) {
  KMeasuredData data;
  data.has[KCH_FY] = true;
  for (int i = 0; i < 300; i++) {
    KMeasuredPoint p;
    p.fz = (i < 150 ? 3000.0 : 6000.0) * (1.0 + 0.02 * std::sin(i * 0.7));  // ±2 % wobble
    p.alpha = 0.001 * (i % 50);
    data.points.push_back(p);
  }
  KMeasuredPoint stray;
  stray.fz = 5000.0;  // in no cluster: nearer 6000 N
  data.points.push_back(stray);
  std::vector<KSetPoint> sps;
  std::vector<int> sp;
  KConditionSetPoints(data, &sps, &sp);
  ASSERT_EQ(sps.size(), 2u);
  EXPECT_NEAR(sps[0].fz, 3000.0, 60.0);
  EXPECT_NEAR(sps[1].fz, 6000.0, 120.0);
  EXPECT_EQ(sps[0].points, 150u);
  EXPECT_EQ(sps[1].points, 151u);
  EXPECT_EQ(sp.back(), 1);
}

TEST(FitReportPages, SmallFitHasItsPagesInOrder) {
  // pure slip at 2 loads x 2 cambers: summary, coefficients, 4 set points,
  // residuals; no combined-slip page
  Fixture f({3000, 5000}, {0.0, 0.03}, false);
  const FitReport r = FitReportBuild(f.in);
  const std::vector<std::string> t = Titles(r);
  ASSERT_GE(t.size(), 7u);
  EXPECT_EQ(t[0], "Fit report: sampled.csv fitted to mf61");
  const size_t coef = CountStarting(t, "Fitted coefficients of mf61");
  EXPECT_GE(coef, 1u);
  for (size_t i = 1; i <= coef; i++) EXPECT_TRUE(StartsWith(t[i], "Fitted coefficients")) << t[i];
  for (size_t s = 0; s < 4; s++)
    EXPECT_TRUE(StartsWith(t[1 + coef + s], "Set point " + std::to_string(s + 1) + " of 4: ")) << t[1 + coef + s];
  EXPECT_TRUE(StartsWith(t[5 + coef], "Residuals over slip")) << t[5 + coef];
  EXPECT_EQ(t.size(), 6 + coef);
  EXPECT_EQ(CountStarting(t, "Combined slip"), 0u);
  EXPECT_EQ(r.title, "Fit report: sampled.csv fitted to mf61");
}

TEST(FitReportPages, CombinedPointsGetAPagePerSetPoint) {
  Fixture f({4000}, {0.0, 0.03}, true);
  const FitReport r = FitReportBuild(f.in);
  const std::vector<std::string> t = Titles(r);
  EXPECT_EQ(CountStarting(t, "Combined slip at set point "), 2u);
  const FitReportPage &p = r.pages.back();
  ASSERT_TRUE(StartsWith(p.title, "Combined slip at set point 2 of 2")) << p.title;
  // both kinds of sweep: Fx and Fy over the slip ratio, then over the slip angle
  ASSERT_EQ(p.blocks.size(), 4u);
  EXPECT_EQ(p.blocks[0].chart.title, "Fx over slip ratio at fixed slip angles");
  EXPECT_EQ(p.blocks[1].chart.title, "Fy over slip ratio at fixed slip angles");
  EXPECT_EQ(p.blocks[2].chart.title, "Fx over slip angle at fixed slip ratios");
  EXPECT_EQ(p.blocks[3].chart.title, "Fy over slip angle at fixed slip ratios");
  // each fixed slip's curve runs through its points (the tyre is the data's)
  for (const FitReportBlock &b : p.blocks) {
    const std::vector<ChartSeries> &s = b.chart.series;
    ASSERT_EQ(s.size() % 2, 0u);
    EXPECT_EQ(s.size(), 8u) << b.chart.title;  // four fixed slips, points and curve each
    for (size_t k = 0; k + 1 < s.size(); k += 2)
      for (size_t i = 0; i < s[k].x.size(); i++)
        EXPECT_NEAR(At(s[k + 1], s[k].x[i]), s[k].y[i], 0.02 * 6000) << b.chart.title << " " << s[k + 1].label;
  }
}

TEST(FitReportPages, SetPointCurvesRunThroughTheirPoints) {
  // the curve is evaluated at the set point's own load and camber: with the
  // data's own tyre, it passes through every measured point
  Fixture f({2500, 6000}, {-0.04, 0.04}, false);
  const FitReport r = FitReportBuild(f.in);
  int checked = 0;
  for (const FitReportPage &p : r.pages) {
    if (!StartsWith(p.title, "Set point ")) continue;
    ASSERT_EQ(p.blocks.size(), 4u) << p.title;  // Fx, Fy, Mz, the figures
    for (int ch = 0; ch < 3; ch++) {
      const Chart &c = p.blocks[size_t(ch)].chart;
      ASSERT_EQ(c.series.size(), 2u);
      const ChartSeries &pts = c.series[0], &curve = c.series[1];
      ASSERT_TRUE(pts.points);
      ASSERT_EQ(pts.x.size(), 12u) << c.title;  // its sweep and the other's zero point
      const double scale = ch == 2 ? 200.0 : 8000.0;
      for (size_t i = 0; i < pts.x.size(); i++) {
        // between curve vertices the curve is a chord: allow its sag
        EXPECT_NEAR(At(curve, pts.x[i]), pts.y[i], 0.01 * scale) << p.title << " " << c.title << " x " << pts.x[i];
        checked++;
      }
    }
    EXPECT_EQ(p.blocks[3].kind, FitReportBlock::TABLE);
  }
  EXPECT_EQ(checked, 4 * 3 * 12);
}

TEST(FitReportPages, ResidualsAreMeasuredMinusFittedAtEachPoint) {
  Fixture f({3000, 5000}, {0.0}, false);
  // a data point off by a known amount shows as that residual
  f.data.points[3].force[KCH_FX] += 250.0;
  const FitReport r = FitReportBuild(f.in);
  const FitReportPage *res = nullptr;
  for (const FitReportPage &p : r.pages)
    if (StartsWith(p.title, "Residuals")) res = &p;
  ASSERT_NE(res, nullptr);
  ASSERT_EQ(res->blocks.size(), 4u);
  const Chart &fx = res->blocks[0].chart;
  EXPECT_EQ(fx.yName, "Fx residual [N]");
  size_t n = 0;
  int big = 0;
  for (const ChartSeries &s : fx.series) {
    if (!s.points) continue;
    n += s.x.size();
    for (float y : s.y) {
      if (std::fabs(y - 250.0f) < 1e-3f) big++;
      else EXPECT_NEAR(y, 0.0f, 1e-3f);
    }
  }
  EXPECT_EQ(n, f.data.points.size());
  EXPECT_EQ(big, 1);
  // two loads: one colour each, named in the legend
  EXPECT_EQ(fx.series[1].label, "Fz 3000 N");
  EXPECT_EQ(fx.series[2].label, "Fz 5000 N");
}

// A fit at two pressures: the points at 85 % of NOMPRES made by the tyre at
// that pressure, grouped into set points by pressure too; the coefficient
// table then lists NOMPRES and the pressure terms, the summary says what
// the pressure stages did, and curves and residuals are taken at each set
// point's own pressure.
struct PressureFixture : Fixture {
  PressureFixture() : Fixture({4000}, {0.0}, false) {
    const double nominal = tyre.nompres, low = 0.85 * nominal;
    const size_t n = data.points.size();
    for (size_t i = 0; i < n; i++) {
      KMeasuredPoint p = data.points[i];
      data.points[i].pressure = nominal;
      p.pressure = low;
      float out[KCH_COUNT];
      KPacejkaEvaluateBatchDoubleAtPressure(tyre, 1, &p.fz, &p.kappa, &p.alpha, &p.gamma, &p.pressure, &out[0],
                                            &out[1], &out[2], KBATCH_EXACT);
      for (int ch = 0; ch < KCH_COUNT; ch++) p.force[ch] = out[ch];
      data.points.push_back(p);
    }
    KConditionSetPoints(data, &in.setPoints, &in.setPoint);
    result.pressures = {{nominal, int(n)}, {low, int(n)}};
    result.pressureStages = 3;
    result.nominalPressure = result.stagePressure = nominal;
  }
};

std::map<std::string, std::vector<std::string>> CoefficientRows(const FitReport &r) {
  std::map<std::string, std::vector<std::string>> rows;
  for (const FitReportPage &p : r.pages)
    for (const FitReportBlock &b : p.blocks)
      if (b.kind == FitReportBlock::TABLE && b.table.header[0] == "name")
        for (const auto &row : b.table.rows) rows[row[0]] = row;
  return rows;
}

TEST(FitReportPages, PressureFitListsItsTermsAndDrawsAtEachPressure) {
  PressureFixture f;
  ASSERT_EQ(f.in.setPoints.size(), 2u);
  EXPECT_EQ(f.in.setPoints[1].pressure, 0.85 * f.tyre.nompres);
  const FitReport r = FitReportBuild(f.in);
  auto rows = CoefficientRows(r);
  ASSERT_EQ(rows.count("nompres"), 1u);
  EXPECT_EQ(rows["nompres"][1], "260000");
  EXPECT_EQ(rows["nompres"][3], "nominal, most points");
  for (const char *name : {"ppx1", "ppx4", "ppy1", "ppy5", "ppz1", "qpz1"}) EXPECT_EQ(rows.count(name), 1u) << name;
  bool said = false;
  for (const std::string &line : r.pages[0].blocks[0].lines)
    said = said || line == "Pressure stages ran (Fx, Fy, Mz) about NOMPRES = 260000 Pa, the pressure with the most points";
  EXPECT_TRUE(said);
  // the low pressure's curves run through its points, its residuals are 0
  int checked = 0;
  for (const FitReportPage &p : r.pages) {
    if (StartsWith(p.title, "Set point 2 of 2"))
      for (int ch = 0; ch < 3; ch++) {
        const ChartSeries &pts = p.blocks[size_t(ch)].chart.series[0], &curve = p.blocks[size_t(ch)].chart.series[1];
        for (size_t i = 0; i < pts.x.size(); i++, checked++)
          EXPECT_NEAR(At(curve, pts.x[i]), pts.y[i], ch == 2 ? 2.0 : 40.0) << p.title << " " << ch << " x " << pts.x[i];
      }
    if (!StartsWith(p.title, "Residuals")) continue;
    for (const FitReportBlock &b : p.blocks)
      for (const ChartSeries &s : b.chart.series) {
        if (!s.points) continue;
        for (float y : s.y) EXPECT_NEAR(y, 0.0f, 0.05f) << b.chart.title;
      }
  }
  EXPECT_EQ(checked, 3 * 12);
  // one pressure: no pressure terms in the table
  f.result.pressureStages = 0;
  rows = CoefficientRows(FitReportBuild(f.in));
  EXPECT_EQ(rows.count("nompres") + rows.count("ppy1"), 0u);
  EXPECT_EQ(rows.count("pdy1"), 1u);
}

TEST(FitReportPages, ManySetPointsContinueTheSummary) {
  Fixture f({2000, 2500, 3000, 3500, 4000, 4500, 5000, 5500, 6000, 6500}, {-0.05, 0.0, 0.05}, false);
  ASSERT_EQ(f.in.setPoints.size(), 30u);
  const FitReport r = FitReportBuild(f.in);
  ASSERT_GE(r.pages.size(), 2u);
  EXPECT_EQ(r.pages[1].title, "Set points (continued)");
  // every set point once, in order, over both pages
  std::vector<std::string> numbers;
  for (int p = 0; p < 2; p++)
    for (const FitReportBlock &b : r.pages[size_t(p)].blocks)
      if (b.kind == FitReportBlock::TABLE && b.table.header[0] == "#")
        for (const auto &row : b.table.rows) numbers.push_back(row[0]);
  ASSERT_EQ(numbers.size(), 30u);
  for (size_t i = 0; i < numbers.size(); i++) EXPECT_EQ(numbers[i], std::to_string(i + 1));
}

TEST(FitReportPages, CoefficientRemarks) {
  Fixture f({4000}, {0.0}, false);
  // a coefficient at the top of its fitting range, and one the caller marks
  const KPacejkaMember *m = KPacejkaFindMember("pdx1");
  ASSERT_NE(m, nullptr);
  KPacejkaSetMember(f.tyre, *m, double(m->fitMax));
  f.in.remarks.push_back({"PKY1", "held: the data has one camber"});
  const FitReport r = FitReportBuild(f.in);
  std::string pdx1, pky1;
  for (const FitReportPage &p : r.pages)
    for (const FitReportBlock &b : p.blocks)
      if (b.kind == FitReportBlock::TABLE && b.table.header[0] == "name")
        for (const auto &row : b.table.rows) {
          if (row[0] == "pdx1") pdx1 = row[3];
          if (row[0] == "pky1") pky1 = row[3];
        }
  EXPECT_TRUE(StartsWith(pdx1, "at upper bound")) << pdx1;
  EXPECT_EQ(pky1, "held: the data has one camber");
}

TEST(FitReportPaint, PageHasTitleFooterAndCharts) {
  Fixture f({3000, 5000}, {0.0}, false);
  const FitReport r = FitReportBuild(f.in);
  QRecorder rec;
  FitReportPaintPage(&rec, r, 0);
  EXPECT_NE(rec.FindText("Fit report: sampled.csv fitted to mf61"), nullptr);
  const std::string of = " of " + std::to_string(r.pages.size());
  EXPECT_NE(rec.FindText("page 1" + of), nullptr);
  EXPECT_NE(rec.FindText("Per set point: RMS"), nullptr);
  // a set point page: its three charts' titles and axis names, with units
  rec.Reset();
  int page = 0;
  while (!StartsWith(r.pages[size_t(page)].title, "Set point 2 of 2")) page++;
  FitReportPaintPage(&rec, r, page);
  for (const char *text : {"Fx over slip ratio (slip angle 0)", "Fy over slip angle (slip ratio 0)",
                           "Mz over slip angle (slip ratio 0)", "slip angle [deg]", "slip ratio [-]", "Mz [N\xb7m]",
                           "fitted mf61", "measured (12)"})
    EXPECT_NE(rec.FindText(text), nullptr) << text;
  EXPECT_NE(rec.FindText("page " + std::to_string(page + 1) + of), nullptr);
  // nothing drawn beyond the page
  for (const QRecord &c : rec.Records())
    if (c.kind == QREC_TEXT) {
      EXPECT_GE(c.x, 0) << c.text;
      EXPECT_LE(c.x + QRecorder::GLYPH_WIDTH * int(c.text.size()), FITREPORT_PAGE_WIDTH + 40) << c.text;
      EXPECT_LT(c.y, FITREPORT_PAGE_HEIGHT) << c.text;
    }
}

TEST(FitReportPdf, WritesEveryPageAndRefusesAnUnwritablePath) {
  Fixture f({4000}, {0.0}, false);
  const FitReport r = FitReportBuild(f.in);
  std::string error;
  ASSERT_TRUE(FitReportWritePdf("report_test.pdf", r, &error)) << error;
  FILE *file = fopen("report_test.pdf", "rb");
  ASSERT_NE(file, nullptr);
  std::string bytes;
  char buf[4096];
  for (size_t n; (n = fread(buf, 1, sizeof buf, file)) > 0;) bytes.append(buf, n);
  fclose(file);
  remove("report_test.pdf");
  EXPECT_EQ(bytes.compare(0, 5, "%PDF-"), 0);
  size_t pages = 0;
  for (size_t at = 0; (at = bytes.find("/Type /Page\n", at)) != std::string::npos; at++) pages++;
  for (size_t at = 0; (at = bytes.find("/Type /Page ", at)) != std::string::npos; at++) pages++;
  EXPECT_EQ(pages, r.pages.size());

  EXPECT_FALSE(FitReportWritePdf("no/such/folder/report.pdf", r, &error));
  EXPECT_EQ(error, "no/such/folder/report.pdf: can't open output file for writing");
  EXPECT_FALSE(FitReportWritePdf("empty.pdf", FitReport(), &error));
  EXPECT_EQ(error, "empty.pdf: the report has no pages");
  QCairoReleaseCaches();  // the font caches Cairo built, for the leak checker
}
