// Chart drawing: fitted axes, grid and ticks, clipped series, legend.
#include "chart/chart.h"

#include <cmath>
#include <algorithm>
#include <cstdio>

#include "base/qelide.h"
#include "render/qrenderer.h"

ChartAxis ChartFitAxis(float lo, float hi) {
  if (!(lo <= hi)) lo = hi = 0.0f;
  if (hi - lo < 1e-6f * (std::fabs(lo) + std::fabs(hi)) || hi == lo) {
    float pad = lo == 0.0f ? 1.0f : std::fabs(lo) * 0.1f;
    lo -= pad;
    hi += pad;
  }
  double raw = double(hi - lo) / 6.0;
  double mag = std::pow(10.0, std::floor(std::log10(raw)));
  double step = mag;
  for (double m : {1.0, 2.0, 5.0, 10.0})
    if (m * mag >= raw) {
      step = m * mag;
      break;
    }
  ChartAxis a;
  a.step = float(step);
  a.min = float(std::floor(double(lo) / step) * step);
  a.max = float(std::ceil(double(hi) / step) * step);
  return a;
}

void ChartFit(const Chart &chart, ChartAxis *x, ChartAxis *y) {
  float xl = INFINITY, xh = -INFINITY, yl = INFINITY, yh = -INFINITY;
  for (const ChartSeries &s : chart.series)
    for (size_t i = 0; i < s.x.size() && i < s.y.size(); i++) {
      if (!std::isfinite(s.x[i]) || !std::isfinite(s.y[i])) continue;
      xl = std::fmin(xl, s.x[i]), xh = std::fmax(xh, s.x[i]);
      yl = std::fmin(yl, s.y[i]), yh = std::fmax(yh, s.y[i]);
    }
  *x = ChartFitAxis(xl, xh);
  *y = ChartFitAxis(yl, yh);
}

ChartCorner ChartEmptiestCorner(const Chart &chart) {
  ChartAxis x, y;
  ChartFit(chart, &x, &y);
  const float xMid = 0.5f * (x.min + x.max), yMid = 0.5f * (y.min + y.max);
  size_t count[4] = {0, 0, 0, 0};  // in ChartCorner order
  for (const ChartSeries &s : chart.series)
    for (size_t i = 0; i < s.x.size() && i < s.y.size(); i++) {
      if (!std::isfinite(s.x[i]) || !std::isfinite(s.y[i])) continue;
      const bool left = s.x[i] < xMid, bottom = s.y[i] < yMid;
      count[(bottom ? 2 : 0) + (left ? 1 : 0)]++;
    }
  int best = 0;
  for (int c = 1; c < 4; c++)
    if (count[c] < count[best]) best = c;
  return ChartCorner(best);
}

QRect ChartBox(const QRect &area) { return QRect(area.x + 80, area.y + 40, area.wid - 110, area.hgt - 96); }

namespace {

const QColor INK(0, 0, 0, 255), GRID(230, 230, 230, 255), FRAME(128, 128, 128, 255), SUBTITLE(110, 110, 110, 255);

// Tick label: as few decimals as the step needs.
void Label(float v, float step, char *buf, size_t size) {
  int decimals = step >= 1.0f ? 0 : int(std::ceil(-std::log10(double(step)) - 1e-6));
  if (std::fabs(v) < step * 1e-3f) v = 0.0f;
  snprintf(buf, size, "%.*f", decimals, double(v));
}

// Values to pixel indices inside the box (fractions kept).
struct Mapper {
  QRect box;
  ChartAxis x, y;
  float X(float v) const { return float(box.x) + (v - x.min) / (x.max - x.min) * float(box.wid - 1); }
  float Y(float v) const { return float(box.y + box.hgt - 1) - (v - y.min) / (y.max - y.min) * float(box.hgt - 1); }
};

void PaintAxes(QRenderer *r, const Mapper &m) {
  char buf[32];
  std::vector<QSegment> grid;
  int right = m.box.x + m.box.wid - 1, bottom = m.box.y + m.box.hgt - 1;
  for (int i = 0; m.x.min + float(i) * m.x.step <= m.x.max + m.x.step * 1e-3f; i++) {
    float v = m.x.min + float(i) * m.x.step;
    int px = int(std::lround(m.X(v)));
    grid.push_back({px, m.box.y, px, bottom});
    Label(v, m.x.step, buf, sizeof buf);
    if (r->HasFont()) r->DrawText(buf, px - r->MeasureText(buf) / 2, bottom + 8, INK);  // clear of the lowest y label
  }
  for (int i = 0; m.y.min + float(i) * m.y.step <= m.y.max + m.y.step * 1e-3f; i++) {
    float v = m.y.min + float(i) * m.y.step;
    int py = int(std::lround(m.Y(v)));
    grid.push_back({m.box.x, py, right, py});
    Label(v, m.y.step, buf, sizeof buf);
    if (r->HasFont()) r->DrawText(buf, m.box.x - 6 - r->MeasureText(buf), py - 7, INK);
  }
  r->Segments(grid.data(), int(grid.size()), GRID);
  QSegment frame[4] = {{m.box.x, m.box.y, right, m.box.y},
                       {m.box.x, bottom, right, bottom},
                       {m.box.x, m.box.y, m.box.x, bottom},
                       {right, m.box.y, right, bottom}};
  r->Segments(frame, 4, FRAME);
}

void PaintSeries(QRenderer *r, const Mapper &m, const ChartSeries &s) {
  size_t n = s.x.size() < s.y.size() ? s.x.size() : s.y.size();
  if (s.points) {
    for (size_t i = 0; i < n; i++)
      if (std::isfinite(s.x[i]) && std::isfinite(s.y[i]))
        r->FillRect(QRect(int(std::lround(m.X(s.x[i]))) - 2, int(std::lround(m.Y(s.y[i]))) - 2, 5, 5), s.color);
    return;
  }
  // Pixel-centre positions (relative to pixel 0, 0); a gap (NaN) splits the line.
  std::vector<QPointF> run;
  auto flush = [&] {
    if (run.size() >= 2) r->Polyline(run.data(), int(run.size()), QStroke{s.color, s.alpha, s.width, true}, 0, 0);
    run.clear();
  };
  for (size_t i = 0; i < n; i++) {
    if (!std::isfinite(s.x[i]) || !std::isfinite(s.y[i])) {
      flush();
      continue;
    }
    run.push_back({m.X(s.x[i]), m.Y(s.y[i])});
  }
  flush();
}

Mapper MapperFor(const Chart &chart, const QRect &area) {
  Mapper m;
  m.box = ChartBox(area);
  ChartFit(chart, &m.x, &m.y);
  return m;
}

int Hits(const Chart &chart, const Mapper &m, const QRect &box) {
  int hits = 0;
  for (const ChartSeries &s : chart.series) {
    size_t n = s.x.size() < s.y.size() ? s.x.size() : s.y.size();
    bool have = false;
    float px = 0.0f, py = 0.0f;
    for (size_t i = 0; i < n; i++) {
      if (!std::isfinite(s.x[i]) || !std::isfinite(s.y[i])) {
        have = false;
        continue;
      }
      float x = m.X(s.x[i]), y = m.Y(s.y[i]);
      if (s.points || !have) {
        hits += box.Contains(int(std::lround(x)), int(std::lround(y)));
      } else {
        // Along the segment, a pixel at a time; far outside the box, skipped.
        if (std::fmax(px, x) >= float(box.x) && std::fmin(px, x) < float(box.x + box.wid) &&
            std::fmax(py, y) >= float(box.y) && std::fmin(py, y) < float(box.y + box.hgt)) {
          int steps = int(std::fmax(std::fabs(x - px), std::fabs(y - py))) + 1;
          for (int k = 1; k <= steps; k++) {
            float t = float(k) / float(steps);
            hits += box.Contains(int(std::lround(px + (x - px) * t)), int(std::lround(py + (y - py) * t)));
          }
        }
      }
      px = x, py = y, have = true;
    }
  }
  return hits;
}

ChartLegend Place(QRenderer *r, const Chart &chart, const Mapper &m) {
  ChartLegend legend;
  if (!r->HasFont()) return legend;
  int widest = 0;
  auto width = [r](const std::string &t) { return r->MeasureText(t.c_str()); };
  for (const ChartSeries &s : chart.series)
    if (!s.label.empty()) {
      legend.labels.push_back(QElideMiddle(s.label, CHART_LEGEND_TEXT, width));
      widest = std::max(widest, width(legend.labels.back()));
    }
  if (legend.labels.empty()) return legend;
  const int rows = int(legend.labels.size());
  // The white box of the legend in a corner; its text starts 6 pixels in.
  auto at = [&](ChartCorner corner) {
    const QRect &b = m.box;
    const bool left = corner == CHART_TOP_LEFT || corner == CHART_BOTTOM_LEFT;
    const bool bottom = corner == CHART_BOTTOM_RIGHT || corner == CHART_BOTTOM_LEFT;
    int x = left ? b.x + 16 : b.x + b.wid - widest - 46;
    int y = bottom ? b.y + b.hgt - rows * 16 - 8 : b.y + 8;
    return QRect(x - 6, y - 4, widest + 46, rows * 16 + 6);
  };
  if (chart.legend != CHART_LEGEND_AUTO) {
    legend.box = at(chart.legend);
    return legend;
  }
  int best = -1;
  for (ChartCorner c : {CHART_TOP_RIGHT, CHART_TOP_LEFT, CHART_BOTTOM_RIGHT, CHART_BOTTOM_LEFT}) {
    int hits = Hits(chart, m, at(c));
    if (best < 0 || hits < best) best = hits, legend.box = at(c);
  }
  return legend;
}

void PaintLegend(QRenderer *r, const Chart &chart, const ChartLegend &legend) {
  if (legend.labels.empty()) return;
  r->FillRect(legend.box, QColor(255, 255, 255, 255));
  int x = legend.box.x + 6, y = legend.box.y + 4;
  size_t row = 0;
  for (const ChartSeries &s : chart.series) {
    if (s.label.empty()) continue;
    if (s.points) {
      r->FillRect(QRect(x + 10, y + 5, 5, 5), s.color);
    } else {
      QPointF line[2] = {{0.0f, 0.0f}, {24.0f, 0.0f}};
      r->Polyline(line, 2, QStroke{s.color, s.alpha < 0.6f ? 0.6f : s.alpha, 2.0f, true}, x, y + 7);
    }
    r->DrawText(legend.labels[row++].c_str(), x + 32, y, INK);
    y += 16;
  }
}

}  // namespace

namespace {

// The axes and the legend: when no corner is free of the series, the
// vertical axis grows by whole steps at the top (at most four) until one of
// the upper corners is.
Mapper Layout(QRenderer *r, const Chart &chart, const QRect &area, ChartLegend *legend) {
  Mapper m = MapperFor(chart, area);
  *legend = Place(r, chart, m);
  for (int grow = 0; grow < 4 && chart.legend == CHART_LEGEND_AUTO && !legend->labels.empty() &&
                     Hits(chart, m, legend->box) > 0;
       grow++) {
    m.y.max += m.y.step;
    *legend = Place(r, chart, m);
  }
  return m;
}

}  // namespace

ChartLegend ChartLegendPlace(QRenderer *r, const Chart &chart, const QRect &area) {
  ChartLegend legend;
  Layout(r, chart, area, &legend);
  return legend;
}

int ChartHits(QRenderer *r, const Chart &chart, const QRect &area, const QRect &box) {
  ChartLegend legend;
  return Hits(chart, Layout(r, chart, area, &legend), box);
}

void ChartPaint(QRenderer *r, const Chart &chart, const QRect &area) {
  ChartLegend legend;
  Mapper m = Layout(r, chart, area, &legend);
  if (r->HasFont()) {
    r->DrawText(chart.title.c_str(), area.x + (area.wid - r->MeasureText(chart.title.c_str())) / 2, area.y + 10, INK);
    if (!chart.subtitle.empty()) {
      // Centred under the title, but right of the y axis's name, and
      // shortened in the middle when the row is too narrow.
      const int left = m.box.x - 70 + r->MeasureText(chart.yName.c_str()) + 12, right = area.x + area.wid - 12;
      std::string sub = QElideMiddle(chart.subtitle, right - left,
                                     [r](const std::string &t) { return r->MeasureText(t.c_str()); });
      int w = r->MeasureText(sub.c_str());
      r->DrawText(sub.c_str(), std::max(left, area.x + (area.wid - w) / 2), area.y + 25, SUBTITLE);
    }
    r->DrawText(chart.yName.c_str(), m.box.x - 70, m.box.y - 22, INK);  // clear of the highest y label
    r->DrawText(chart.xName.c_str(), m.box.x + (m.box.wid - r->MeasureText(chart.xName.c_str())) / 2,
                m.box.y + m.box.hgt + 26, INK);
  }
  PaintAxes(r, m);
  r->ClipRect(m.box);
  for (const ChartSeries &s : chart.series) PaintSeries(r, m, s);
  r->ClipNone();
  PaintLegend(r, chart, legend);
}
