// The fit report's pages, built from the data, the set points and the
// fitted tyre.
//
//   [1] helpers        [2] the data side     [3] summary and coefficients
//   [4] set points     [5] residuals         [6] combined slip
//   [7] the report
#include "fitreport/fitreport.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <map>

#include "chart/plot.h"
#include "fitreport/fitreport_layout.h"
#include "tyre/kdataload.h"
#include "tyre/kpacejka_batch.h"

namespace {

// ---- [1] helpers -----------------------------------------------------------------------

constexpr double RAD2DEG = 180.0 / M_PI;
constexpr int CURVE_STEPS = 121;
constexpr int MAX_LEVELS = 6;  // fixed slips drawn per combined-slip chart

const QColor MEASURED(150, 150, 150, 255), FITTED(0, 70, 200, 255), ZERO(120, 120, 120, 255);
// Series told apart by colour: loads on the residual charts, fixed slips on
// the combined-slip charts, channels on the per-set-point chart.
const QColor PALETTE[] = {QColor(0, 70, 200, 255),   QColor(200, 60, 0, 255),   QColor(0, 140, 60, 255),
                          QColor(140, 0, 170, 255),  QColor(190, 140, 0, 255),  QColor(0, 150, 170, 255),
                          QColor(220, 0, 120, 255),  QColor(90, 90, 90, 255)};
constexpr int PALETTE_SIZE = int(sizeof PALETTE / sizeof PALETTE[0]);

std::string Fmt(const char *fmt, ...) __attribute__((format(printf, 1, 2)));
std::string Fmt(const char *fmt, ...) {
  char buf[512];
  va_list ap;
  va_start(ap, fmt);
  vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  return buf;
}

// The renderer draws Latin-1; names from the user may be UTF-8.
std::string Latin1(const std::string &utf8) {
  std::string out;
  for (size_t i = 0; i < utf8.size(); i++) {
    const unsigned char c = static_cast<unsigned char>(utf8[i]);
    if (c < 0x80) {
      out += char(c);
    } else if ((c == 0xC2 || c == 0xC3) && i + 1 < utf8.size()) {
      out += char(((c & 0x03) << 6) | (static_cast<unsigned char>(utf8[++i]) & 0x3F));
    } else {
      out += '?';
      while (i + 1 < utf8.size() && (static_cast<unsigned char>(utf8[i + 1]) & 0xC0) == 0x80) i++;
    }
  }
  return out;
}

const char *Unit(int ch) { return ch == KCH_MZ ? "N\xb7m" : "N"; }

// Which sweep a point lies on, with the tolerances of plot --data.
bool OnKappaSweep(const KMeasuredPoint &p) { return std::fabs(p.alpha) * RAD2DEG <= double(PLOT_DATA_ANGLE_DEG); }
bool OnAlphaSweep(const KMeasuredPoint &p) { return std::fabs(p.kappa) <= double(PLOT_DATA_SLIP_RATIO); }
bool IsCombined(const KMeasuredPoint &p) { return !OnKappaSweep(p) && !OnAlphaSweep(p); }
// A channel's pure sweep runs over the slip ratio (Fx) or the slip angle.
bool OnPureSweep(const KMeasuredPoint &p, int ch) { return ch == KCH_FX ? OnKappaSweep(p) : OnAlphaSweep(p); }
double SweptSlip(const KMeasuredPoint &p, bool alpha) { return alpha ? p.alpha * RAD2DEG : p.kappa; }

// The fitted tyre at operating points, as eval gives it.
struct Operating {
  std::vector<double> fz, kappa, alpha, gamma, pressure;  // pressure 0: the tyre's nominal
  void Add(double f, double k, double a, double g, double p = 0) {
    fz.push_back(f), kappa.push_back(k), alpha.push_back(a), gamma.push_back(g), pressure.push_back(p);
  }
};

void Evaluate(const KPacejka &tyre, const Operating &op, std::vector<float> out[KCH_COUNT]) {
  const size_t n = op.fz.size();
  for (int ch = 0; ch < KCH_COUNT; ch++) out[ch].assign(n, 0.0f);
  if (!n) return;
  // points at a pressure of their own (a fit at several pressures) are
  // evaluated there, as the fit compared them
  if (std::any_of(op.pressure.begin(), op.pressure.end(), [](double p) { return p > 0; }))
    KPacejkaEvaluateBatchDoubleAtPressure(tyre, n, op.fz.data(), op.kappa.data(), op.alpha.data(), op.gamma.data(),
                                          op.pressure.data(), out[KCH_FX].data(), out[KCH_FY].data(),
                                          out[KCH_MZ].data(), KBATCH_EXACT);
  else
    KPacejkaEvaluateBatchDouble(tyre, n, op.fz.data(), op.kappa.data(), op.alpha.data(), op.gamma.data(),
                                out[KCH_FX].data(), out[KCH_FY].data(), out[KCH_MZ].data(), KBATCH_EXACT);
}

// A curve of the fitted tyre: one slip swept over lo..hi (degrees for the
// slip angle), the other held; at `pressure` (0: the nominal one).
ChartSeries Curve(const KPacejka &tyre, int ch, double fz, double gamma, double pressure, bool sweepAlpha, double lo,
                  double hi, double held) {
  Operating op;
  for (int i = 0; i < CURVE_STEPS; i++) {
    const double s = lo + (hi - lo) * i / (CURVE_STEPS - 1);
    if (sweepAlpha)
      op.Add(fz, held, s / RAD2DEG, gamma, pressure);
    else
      op.Add(fz, s, held, gamma, pressure);
  }
  std::vector<float> out[KCH_COUNT];
  Evaluate(tyre, op, out);
  ChartSeries c;
  for (int i = 0; i < CURVE_STEPS; i++) {
    c.x.push_back(float(sweepAlpha ? op.alpha[size_t(i)] * RAD2DEG : op.kappa[size_t(i)]));
    c.y.push_back(out[ch][size_t(i)]);
  }
  c.width = 2.0f;
  return c;
}

ChartSeries Points(QColor color) {
  ChartSeries s;
  s.points = true;
  s.color = color;
  return s;
}

// The slip range of a set of values, or `lo`..`hi` when it has none.
void Range(const std::vector<float> &x, double lo, double hi, double *from, double *to) {
  *from = lo, *to = hi;
  if (x.empty()) return;
  *from = *std::min_element(x.begin(), x.end());
  *to = *std::max_element(x.begin(), x.end());
  if (*to - *from < 1e-9) *from -= 0.5 * (hi - lo) * 0.1, *to += 0.5 * (hi - lo) * 0.1;
}

std::string SetPointText(const KSetPoint &sp) {
  std::string s = Fmt("Fz %.6g N, camber %.3g\xb0", sp.fz, sp.gamma * RAD2DEG);
  if (sp.pressure > 0) s += Fmt(", %.4g kPa", sp.pressure / 1000.0);
  if (sp.speed > 0) s += Fmt(", %.4g km/h", sp.speed * 3.6);
  return s;
}

std::vector<std::string> StatsRow(const char *name, const KFitChannelStats &s, int ch) {
  return {name, Fmt("%d", s.points), Fmt("%.6g %s", s.rms, Unit(ch)), Fmt("%.4g", s.rmsPercent), Fmt("%.6f", s.r2)};
}

FitReportBlock Text(std::vector<std::string> lines) {
  FitReportBlock b;
  b.kind = FitReportBlock::TEXT;
  b.lines = std::move(lines);
  return b;
}

FitReportBlock Table(FitReportTable t) {
  FitReportBlock b;
  b.kind = FitReportBlock::TABLE;
  b.table = std::move(t);
  return b;
}

FitReportBlock ChartBlock(Chart c) {
  FitReportBlock b;
  b.kind = FitReportBlock::CHART;
  b.chart = std::move(c);
  b.chart.legend = ChartEmptiestCorner(b.chart);
  return b;
}

// What the builders share: the input, a copy of the tyre to evaluate, the
// fitted values at every point and the figures per set point.
struct Context {
  const FitReportInput &in;
  const KMeasuredData &data;
  const KPacejka &tyre;
  std::vector<float> fitted[KCH_COUNT];
  std::vector<std::vector<size_t>> members;  // points per set point
  std::vector<std::array<KFitChannelStats, KCH_COUNT>> stats;
  std::string model;
};

}  // namespace

// ---- [2] the data side ------------------------------------------------------------------

void FitReportDataFrom(const std::string &dataFile, const KDataLoad &load, FitReportInput *in) {
  in->dataFile = dataFile;
  in->data = &load.data;
  if (load.tidy) {
    in->dataKind = "tidy CSV";
    KConditionSetPoints(load.data, &in->setPoints, &in->setPoint);
  } else {
    in->dataKind = "rig run, " + load.run.format;
    in->setPoints = load.conditioned.setPoints;
    in->setPoint = load.conditioned.setPoint;
  }
}

namespace {

// ---- [3] summary and coefficients ---------------------------------------------------------

void SummaryPages(const Context &cx, std::vector<FitReportPage> *pages) {
  const FitReportInput &in = cx.in;
  const KFitResult &r = *in.result;
  FitReportPage page;
  page.title = "Fit report: " + Latin1(in.dataFile) + " fitted to " + cx.model;
  std::string channels;
  for (int ch = 0; ch < KCH_COUNT; ch++)
    if (cx.data.has[ch]) channels += std::string(channels.empty() ? "" : ", ") + KChannelName(ch);
  std::vector<std::string> lines = {
      Fmt("Data: %s (%s), %zu points at %zu set points; channels %s", Latin1(in.dataFile).c_str(),
          in.dataKind.c_str(), cx.data.points.size(), in.setPoints.size(), channels.c_str()),
      Fmt("Model: %s (%s)%s%s", cx.model.c_str(), KPacejka::GetModelName(in.model),
          in.output.empty() ? "" : ", written to ", Latin1(in.output).c_str()),
      Fmt("Fit: %d solver iterations, %.3g s", r.iterations, r.seconds)};
  if (r.pureOnly)
    lines.push_back("Pure slip only: Fx is compared where the slip angle is 0, Fy and Mz where the slip ratio is 0");
  for (int ch = 0; ch < KCH_COUNT; ch++)
    if (r.mirrored[ch])
      lines.push_back(Fmt("%s is mirrored against the usual Pacejka89/96 sign; fitted mirrored, written as it was",
                          KChannelName(ch)));
  for (const std::string &n : in.notes) lines.push_back(Latin1(n));
  lines.push_back("Reading it: a good fit has R\xb2 near 1 and an RMS of a few % of the peak in every row below;");
  lines.push_back("the set point pages show the curves through the points, the residual page whether what is left");
  lines.push_back("over has a trend over slip or load (a shape the model misses) or is noise.");
  page.blocks.push_back(Text(lines));

  FitReportTable channelTable;
  channelTable.header = {"channel", "points", "RMS", "RMS [% of peak]", "R\xb2"};
  for (int ch = 0; ch < KCH_COUNT; ch++)
    if (r.channel[ch].points) channelTable.rows.push_back(StatsRow(KChannelName(ch), r.channel[ch], ch));
  page.blocks.push_back(Table(channelTable));

  // the set points, with each channel's figures there; continued on
  // further pages when they are many
  FitReportTable spTable;
  const bool pressure = std::any_of(in.setPoints.begin(), in.setPoints.end(), [](const KSetPoint &s) { return s.pressure > 0; });
  const bool speed = std::any_of(in.setPoints.begin(), in.setPoints.end(), [](const KSetPoint &s) { return s.speed > 0; });
  spTable.header = {"#", "load [N]", "camber [\xb0]"};
  if (pressure) spTable.header.push_back("kPa");
  if (speed) spTable.header.push_back("km/h");
  spTable.header.push_back("points");
  for (int ch = 0; ch < KCH_COUNT; ch++)
    if (r.channel[ch].points) {
      spTable.header.push_back(std::string(KChannelName(ch)) + " RMS");
      spTable.header.push_back(std::string(KChannelName(ch)) + " %");
      spTable.header.push_back(std::string(KChannelName(ch)) + " R\xb2");
    }
  for (size_t s = 0; s < in.setPoints.size(); s++) {
    const KSetPoint &sp = in.setPoints[s];
    std::vector<std::string> row = {Fmt("%zu", s + 1), Fmt("%.6g", sp.fz), Fmt("%.3g", sp.gamma * RAD2DEG)};
    if (pressure) row.push_back(Fmt("%.4g", sp.pressure / 1000.0));
    if (speed) row.push_back(Fmt("%.4g", sp.speed * 3.6));
    row.push_back(Fmt("%zu", cx.members[s].size()));
    for (int ch = 0; ch < KCH_COUNT; ch++)
      if (r.channel[ch].points) {
        const KFitChannelStats &st = cx.stats[s][size_t(ch)];
        if (!st.points) {
          row.insert(row.end(), {"-", "-", "-"});
          continue;
        }
        row.push_back(Fmt("%.4g", st.rms));
        row.push_back(Fmt("%.3g", st.rmsPercent));
        row.push_back(Fmt("%.4f", st.r2));
      }
    spTable.rows.push_back(row);
  }
  const std::string spNote =
      "Per set point: RMS in N (Mz in N\xb7m), RMS as % of the set point's peak, R\xb2; the charts follow, one page "
      "per set point";
  int used = 0;
  for (const FitReportBlock &b : page.blocks) used += FitReportBlockHeight(b);
  int room = FitReportRows(FITREPORT_BODY_HEIGHT - used - FitReportBlockHeight(Text({spNote})) - FITREPORT_BLOCK_GAP);
  size_t next = 0;
  page.blocks.push_back(Text({spNote}));
  do {
    FitReportTable part = spTable;
    const size_t take = std::min(spTable.rows.size() - next, size_t(std::max(room, 1)));
    part.rows.assign(spTable.rows.begin() + long(next), spTable.rows.begin() + long(next + take));
    next += take;
    page.blocks.push_back(Table(part));
    pages->push_back(page);
    page = FitReportPage();
    page.title = "Set points (continued)";
    room = FitReportRows(FITREPORT_BODY_HEIGHT);
  } while (next < spTable.rows.size());
}

void CoefficientPages(const Context &cx, std::vector<FitReportPage> *pages) {
  const FitReportInput &in = cx.in;
  const KFitStage *stages[32];
  const int listed = std::min(KFitStagesFor(in.model, stages, 32), 32);
  // a fit at several pressures also varied the pressure terms about NOMPRES
  const int count = in.result->pressureStages > 0
                        ? listed + std::min(KFitPressureStagesFor(in.model, stages + listed, 32 - listed), 32 - listed)
                        : listed;
  FitReportTable table;
  table.header = {"name", "value", "group", "remark"};
  std::vector<bool> seen(size_t(kpacejkaMemberCount), false);
  bool longRemark = false;
  for (int s = 0; s < count; s++) {
    if (s == listed)
      if (const KPacejkaMember *nompres = KPacejkaFindMember("nompres"))
        table.rows.push_back({nompres->name, Fmt("%.9g", KPacejkaGetMember(*in.tyre, *nompres)),
                              KPacejkaGroupName(nompres->group),
                              in.result->nominalFromStart ? "nominal, the start's" : "nominal, most points"});
    for (int i = 0; i < kpacejkaMemberCount; i++) {
      const KPacejkaMember &m = kpacejkaMembers[i];
      float lo, hi;
      if (seen[size_t(i)] || !KFitVaries(in.model, *stages[s], m, &lo, &hi)) continue;
      seen[size_t(i)] = true;
      const double v = KPacejkaGetMember(*in.tyre, m);
      std::string remark;
      const double tol = 1e-6 * std::max(1.0, std::fabs(double(hi) - double(lo)));
      if (v <= double(lo) + tol) remark = Fmt("at lower bound %.6g", double(lo));
      if (v >= double(hi) - tol) remark = Fmt("at upper bound %.6g", double(hi));
      for (const FitReportRemark &rm : in.remarks) {
        std::string a = rm.name, b = m.name;
        for (char &c : a) c = char(std::tolower(static_cast<unsigned char>(c)));
        for (char &c : b) c = char(std::tolower(static_cast<unsigned char>(c)));
        if (a == b) remark += (remark.empty() ? "" : "; ") + Latin1(rm.text);
      }
      longRemark = longRemark || remark.size() > 24;
      table.rows.push_back({m.name, Fmt("%.9g", v), KPacejkaGroupName(m.group), remark});
    }
  }
  // the pressure coefficients the model carries without a term that reads them
  if (count > listed)
    for (int i = 0; i < kpacejkaMemberCount; i++) {
      const KPacejkaMember &m = kpacejkaMembers[i];
      if (seen[size_t(i)] || m.group != KPacejkaMember::PRESSURE || !m.tirSection ||
          !strstr(m.tirSection, "_coefficients"))
        continue;
      table.rows.push_back({m.name, Fmt("%.9g", KPacejkaGetMember(*in.tyre, m)), KPacejkaGroupName(m.group),
                            "carried, not fitted"});
    }
  table.columns = longRemark ? 1 : 2;
  const int perColumn = FitReportRows(FITREPORT_BODY_HEIGHT - FitReportBlockHeight(Text({""})) - FITREPORT_BLOCK_GAP);
  const size_t perPage = size_t(std::max(perColumn, 1) * table.columns);
  const size_t total = table.rows.size();
  size_t next = 0;
  int part = 0;
  do {
    FitReportPage page;
    page.title = Fmt("Fitted coefficients of %s (%zu)%s", cx.model.c_str(), total, part ? ", continued" : "");
    page.blocks.push_back(Text({"The coefficients the fit varied, with their values as written; a remark marks one "
                                "the fit left at a bound of its range or did not identify"}));
    FitReportTable t = table;
    const size_t take = std::min(total - next, perPage);
    t.rows.assign(table.rows.begin() + long(next), table.rows.begin() + long(next + take));
    next += take;
    page.blocks.push_back(Table(t));
    pages->push_back(page);
    part++;
  } while (next < total);
}

// ---- [4] set points ----------------------------------------------------------------------

void SetPointPages(const Context &cx, std::vector<FitReportPage> *pages) {
  const FitReportInput &in = cx.in;
  // the whole data's slip ranges, for a set point without a sweep
  std::vector<float> allKappa, allAlpha;
  for (const KMeasuredPoint &p : cx.data.points) allKappa.push_back(float(p.kappa)), allAlpha.push_back(float(p.alpha * RAD2DEG));
  double kLo, kHi, aLo, aHi;
  Range(allKappa, -0.2, 0.2, &kLo, &kHi);
  Range(allAlpha, -12, 12, &aLo, &aHi);
  for (size_t s = 0; s < in.setPoints.size(); s++) {
    const KSetPoint &sp = in.setPoints[s];
    FitReportPage page;
    page.grid = true;
    page.title = Fmt("Set point %zu of %zu: %s, %zu points", s + 1, in.setPoints.size(), SetPointText(sp).c_str(),
                     cx.members[s].size());
    for (int ch = 0; ch < KCH_COUNT; ch++) {
      if (!cx.data.has[ch]) continue;
      const bool alpha = ch != KCH_FX;
      Chart c;
      c.title = alpha ? Fmt("%s over slip angle (slip ratio 0)", KChannelName(ch)) : "Fx over slip ratio (slip angle 0)";
      c.xName = alpha ? "slip angle [deg]" : "slip ratio [-]";
      c.yName = Fmt("%s [%s]", KChannelName(ch), Unit(ch));
      ChartSeries pts = Points(MEASURED);
      for (size_t i : cx.members[s]) {
        const KMeasuredPoint &p = cx.data.points[i];
        if (!OnPureSweep(p, ch)) continue;
        pts.x.push_back(float(SweptSlip(p, alpha)));
        pts.y.push_back(float(p.force[ch]));
      }
      double lo, hi;
      if (alpha)
        Range(pts.x, aLo, aHi, &lo, &hi);
      else
        Range(pts.x, kLo, kHi, &lo, &hi);
      pts.label = Fmt("measured (%zu)", pts.x.size());
      ChartSeries curve = Curve(cx.tyre, ch, sp.fz, sp.gamma, sp.pressure, alpha, lo, hi, 0.0);
      curve.color = FITTED;
      curve.label = "fitted " + cx.model;
      c.series.push_back(std::move(pts));
      c.series.push_back(std::move(curve));
      page.blocks.push_back(ChartBlock(std::move(c)));
    }
    FitReportTable t;
    t.header = {"channel", "points", "RMS", "RMS [%]", "R\xb2"};
    for (int ch = 0; ch < KCH_COUNT; ch++)
      if (cx.stats[s][size_t(ch)].points) t.rows.push_back(StatsRow(KChannelName(ch), cx.stats[s][size_t(ch)], ch));
    FitReportBlock figures = Table(t);
    figures.lines = {"All the points of this set point:"};
    page.blocks.push_back(std::move(figures));
    pages->push_back(std::move(page));
  }
}

// ---- [5] residuals -----------------------------------------------------------------------

// Loads of the set points within 5 % of each other share a colour.
std::vector<int> LoadLevels(const std::vector<KSetPoint> &sps, std::vector<double> *levels) {
  std::vector<double> loads;
  for (const KSetPoint &sp : sps) loads.push_back(sp.fz);
  std::sort(loads.begin(), loads.end());
  levels->clear();
  for (double f : loads)
    if (levels->empty() || f > levels->back() * 1.05) levels->push_back(f);
  std::vector<int> level;
  for (const KSetPoint &sp : sps) {
    int best = 0;
    for (size_t k = 0; k < levels->size(); k++)
      if (std::fabs((*levels)[k] - sp.fz) < std::fabs((*levels)[size_t(best)] - sp.fz)) best = int(k);
    level.push_back(best);
  }
  return level;
}

void ResidualPage(const Context &cx, std::vector<FitReportPage> *pages) {
  const FitReportInput &in = cx.in;
  const bool pureOnly = in.result->pureOnly;
  std::vector<double> levels;
  const std::vector<int> level = LoadLevels(in.setPoints, &levels);
  FitReportPage page;
  page.grid = true;
  page.title = "Residuals over slip: measured - fitted, at each point's own load and camber";
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    if (!cx.data.has[ch]) continue;
    const bool alpha = ch != KCH_FX;
    Chart c;
    c.title = Fmt("%s measured - fitted, over %s%s", KChannelName(ch), alpha ? "slip angle" : "slip ratio",
                  levels.size() > 1 ? ", by load" : "");
    c.xName = alpha ? "slip angle [deg]" : "slip ratio [-]";
    c.yName = Fmt("%s residual [%s]", KChannelName(ch), Unit(ch));
    std::vector<ChartSeries> byLevel(levels.size(), Points(MEASURED));
    float xMin = INFINITY, xMax = -INFINITY;
    for (size_t i = 0; i < cx.data.points.size(); i++) {
      const KMeasuredPoint &p = cx.data.points[i];
      // the points the figures count
      if (pureOnly && (ch == KCH_FX ? p.alpha : p.kappa) != 0) continue;
      const int s = i < in.setPoint.size() ? in.setPoint[i] : -1;
      ChartSeries &series = byLevel[s >= 0 && size_t(s) < level.size() ? size_t(level[size_t(s)]) : 0];
      const float x = float(SweptSlip(p, alpha));
      series.x.push_back(x);
      series.y.push_back(float(p.force[ch] - double(cx.fitted[ch][i])));
      xMin = std::min(xMin, x), xMax = std::max(xMax, x);
    }
    ChartSeries zero;
    zero.color = ZERO;
    zero.width = 1.0f;
    if (xMin <= xMax) zero.x = {xMin, xMax}, zero.y = {0.0f, 0.0f};
    c.series.push_back(zero);
    for (size_t k = 0; k < byLevel.size(); k++) {
      if (byLevel[k].x.empty()) continue;
      byLevel[k].color = PALETTE[k % PALETTE_SIZE];
      if (levels.size() > 1 && levels.size() <= size_t(PALETTE_SIZE)) byLevel[k].label = Fmt("Fz %.0f N", levels[k]);
      c.series.push_back(std::move(byLevel[k]));
    }
    page.blocks.push_back(ChartBlock(std::move(c)));
  }
  // which set points fit worst
  Chart worst;
  worst.title = "RMS per set point (% of the set point's peak)";
  worst.xName = "set point";
  worst.yName = "RMS [%]";
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    if (!in.result->channel[ch].points) continue;
    ChartSeries line;
    line.color = PALETTE[ch];
    line.label = KChannelName(ch);
    ChartSeries dots = Points(PALETTE[ch]);
    for (size_t s = 0; s < in.setPoints.size(); s++) {
      const KFitChannelStats &st = cx.stats[s][size_t(ch)];
      line.x.push_back(float(s + 1));
      line.y.push_back(st.points ? float(st.rmsPercent) : NAN);
      if (st.points) dots.x.push_back(float(s + 1)), dots.y.push_back(float(st.rmsPercent));
    }
    worst.series.push_back(std::move(dots));
    worst.series.push_back(std::move(line));
  }
  page.blocks.push_back(ChartBlock(std::move(worst)));
  pages->push_back(std::move(page));
}

// ---- [6] combined slip -------------------------------------------------------------------

// Combined points of one set point at one fixed slip, the other swept.
struct Level {
  bool fixedAlpha;
  double value;  // the fixed slip (median): rad or slip ratio
  std::vector<size_t> points;
};

// A point lies on a sweep of the slip ratio at a fixed slip angle when more
// of the set point's combined points share its slip angle than its slip
// ratio, and the other way round.
std::vector<Level> Levels(const KMeasuredData &data, const std::vector<size_t> &members) {
  std::vector<size_t> combined;
  for (size_t i : members)
    if (IsCombined(data.points[i])) combined.push_back(i);
  std::map<long, size_t> alphaCount, kappaCount;
  auto aKey = [&](size_t i) { return std::lround(data.points[i].alpha * RAD2DEG * 10.0); };  // 0.1°
  auto kKey = [&](size_t i) { return std::lround(data.points[i].kappa * 1000.0); };        // 0.001
  for (size_t i : combined) alphaCount[aKey(i)]++, kappaCount[kKey(i)]++;
  std::map<std::pair<bool, long>, Level> byKey;
  for (size_t i : combined) {
    const bool fixedAlpha = alphaCount[aKey(i)] >= kappaCount[kKey(i)];
    Level &l = byKey[{fixedAlpha, fixedAlpha ? aKey(i) : kKey(i)}];
    l.fixedAlpha = fixedAlpha;
    l.points.push_back(i);
  }
  std::vector<Level> out;
  for (auto &[key, l] : byKey) {
    if (l.points.size() < 3) continue;  // not a sweep
    std::vector<double> v;
    for (size_t i : l.points) v.push_back(l.fixedAlpha ? data.points[i].alpha : data.points[i].kappa);
    std::nth_element(v.begin(), v.begin() + long(v.size() / 2), v.end());
    l.value = v[v.size() / 2];
    out.push_back(std::move(l));
  }
  return out;
}

Chart CombinedChart(const Context &cx, const KSetPoint &sp, const std::vector<Level> &all, bool fixedAlpha, int ch) {
  std::vector<const Level *> levels;
  for (const Level &l : all)
    if (l.fixedAlpha == fixedAlpha) levels.push_back(&l);
  // the fullest sweeps, drawn in order of their fixed slip
  std::stable_sort(levels.begin(), levels.end(), [](const Level *a, const Level *b) { return a->points.size() > b->points.size(); });
  if (levels.size() > size_t(MAX_LEVELS)) levels.resize(size_t(MAX_LEVELS));
  std::sort(levels.begin(), levels.end(), [](const Level *a, const Level *b) { return a->value < b->value; });
  const bool sweepAlpha = !fixedAlpha;
  Chart c;
  c.title = Fmt("%s over %s at fixed %s", KChannelName(ch), sweepAlpha ? "slip angle" : "slip ratio",
                sweepAlpha ? "slip ratios" : "slip angles");
  c.xName = sweepAlpha ? "slip angle [deg]" : "slip ratio [-]";
  c.yName = Fmt("%s [%s]", KChannelName(ch), Unit(ch));
  for (size_t k = 0; k < levels.size(); k++) {
    const Level &l = *levels[k];
    const QColor color = PALETTE[k % PALETTE_SIZE];
    ChartSeries pts = Points(color);
    for (size_t i : l.points) {
      const KMeasuredPoint &p = cx.data.points[i];
      pts.x.push_back(float(SweptSlip(p, sweepAlpha)));
      pts.y.push_back(float(p.force[ch]));
    }
    double lo, hi;
    Range(pts.x, sweepAlpha ? -12 : -0.2, sweepAlpha ? 12 : 0.2, &lo, &hi);
    ChartSeries curve = Curve(cx.tyre, ch, sp.fz, sp.gamma, sp.pressure, sweepAlpha, lo, hi, l.value);
    curve.color = color;
    curve.label = fixedAlpha ? Fmt("slip angle %.3g\xb0 (%zu)", l.value * RAD2DEG, l.points.size())
                             : Fmt("slip ratio %.3g (%zu)", l.value, l.points.size());
    c.series.push_back(std::move(pts));
    c.series.push_back(std::move(curve));
  }
  return c;
}

void CombinedPages(const Context &cx, std::vector<FitReportPage> *pages) {
  const FitReportInput &in = cx.in;
  for (size_t s = 0; s < in.setPoints.size(); s++) {
    const std::vector<Level> levels = Levels(cx.data, cx.members[s]);
    if (levels.empty()) continue;
    const KSetPoint &sp = in.setPoints[s];
    FitReportPage page;
    page.grid = true;
    page.title = Fmt("Combined slip at set point %zu of %zu: %s", s + 1, in.setPoints.size(), SetPointText(sp).c_str());
    const bool has[2] = {std::any_of(levels.begin(), levels.end(), [](const Level &l) { return l.fixedAlpha; }),
                         std::any_of(levels.begin(), levels.end(), [](const Level &l) { return !l.fixedAlpha; })};
    // Fx and Fy of both kinds of sweep first, then Mz
    const std::pair<bool, int> order[] = {{true, KCH_FX},  {true, KCH_FY},  {false, KCH_FX},
                                          {false, KCH_FY}, {true, KCH_MZ},  {false, KCH_MZ}};
    for (const auto &[fixedAlpha, ch] : order) {
      if (page.blocks.size() >= 4 || !has[fixedAlpha ? 0 : 1] || !cx.data.has[ch]) continue;
      page.blocks.push_back(ChartBlock(CombinedChart(cx, sp, levels, fixedAlpha, ch)));
    }
    if (!page.blocks.empty()) pages->push_back(std::move(page));
  }
}

}  // namespace

// ---- [7] the report ----------------------------------------------------------------------

namespace {

// What the fit result says it could not identify: held coefficients as
// remarks, combined slip left generic as a note. Results that carry none
// of it add nothing.
template <typename Result>
void Unidentified(const Result &r, std::vector<FitReportRemark> *remarks, std::vector<std::string> *notes) {
  if constexpr (requires { r.held; })
    for (const auto &h : r.held) remarks->push_back({h.name, std::string("held: ") + h.why});
  if constexpr (requires { r.combinedNotIdentified; })
    if (r.combinedNotIdentified)
      notes->push_back("Combined slip not identified (no combined points): its coefficients keep generic values");
}

// What the fit did with the data's pressures, a line each, capitalised.
void PressureNotes(const KFitResult &r, int model, std::vector<std::string> *notes) {
  const std::string text = KFitPressureNote(r, model);
  size_t at = 0;
  while (at < text.size()) {
    const size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    line[0] = char(std::toupper(static_cast<unsigned char>(line[0])));
    notes->push_back(line);
    at = end + 1;
  }
}

}  // namespace

FitReport FitReportBuild(const FitReportInput &in) {
  FitReport report;
  if (!in.data || !in.tyre || !in.result) return report;
  FitReportInput with = in;
  Unidentified(*in.result, &with.remarks, &with.notes);
  PressureNotes(*in.result, in.model, &with.notes);
  Context cx{with, *in.data, *in.tyre, {}, {}, {}, KFitModelKey(in.model)};
  // 1. the fitted values at every point, and the points of each set point
  Operating op;
  for (const KMeasuredPoint &p : cx.data.points) op.Add(p.fz, p.kappa, p.alpha, p.gamma, p.pressure);
  Evaluate(cx.tyre, op, cx.fitted);
  cx.members.resize(in.setPoints.size());
  for (size_t i = 0; i < cx.data.points.size() && i < in.setPoint.size(); i++)
    if (in.setPoint[i] >= 0 && size_t(in.setPoint[i]) < cx.members.size()) cx.members[size_t(in.setPoint[i])].push_back(i);
  // 2. the figures per set point, as the fit's own are made
  KPacejka copy;
  KFitCopy(*in.tyre, &copy);
  for (const std::vector<size_t> &m : cx.members) {
    KMeasuredData sub;
    for (int ch = 0; ch < KCH_COUNT; ch++) sub.has[ch] = cx.data.has[ch];
    for (size_t i : m) sub.points.push_back(cx.data.points[i]);
    std::array<KFitChannelStats, KCH_COUNT> st;
    KFitEvaluate(copy, sub, st.data(), in.result->pureOnly);
    cx.stats.push_back(st);
  }
  // 3. the pages
  report.title = "Fit report: " + Latin1(in.dataFile) + " fitted to " + cx.model;
  report.footer = "Tyrograph fit report \xb7 " + Latin1(in.dataFile) + " \xb7 " + cx.model;
  SummaryPages(cx, &report.pages);
  CoefficientPages(cx, &report.pages);
  SetPointPages(cx, &report.pages);
  ResidualPage(cx, &report.pages);
  CombinedPages(cx, &report.pages);
  return report;
}
