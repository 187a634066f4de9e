// Chart: an x-y diagram described as data (title, axis names with units,
// series of lines or points) and drawn through a QRenderer, with axes that
// fit the data. The views beside the window's graphs (chart/views.h) are
// charts; the window, tyrograph-cli plot and the tests draw them alike.
#pragma once

#include <string>
#include <vector>

#include "render/qcolor.h"
#include "render/qrect.h"

class QRenderer;

struct ChartSeries {
  std::vector<float> x, y;
  QColor color;
  float alpha = 1.0f;
  float width = 1.5f;
  bool points = false;  // measured points: small squares, no line
  std::string label;    // legend text; empty: not in the legend
};

// The corner of the plot box the legend sits in; CHART_LEGEND_AUTO lets the
// drawing pick it from the series' pixels (ChartLegendPlace).
enum ChartCorner { CHART_TOP_RIGHT, CHART_TOP_LEFT, CHART_BOTTOM_RIGHT, CHART_BOTTOM_LEFT, CHART_LEGEND_AUTO };

struct Chart {
  std::string title;
  std::string subtitle;      // a second line under the title, in grey; may be empty
  std::string xName, yName;  // with units, e.g. "Fz [N]"
  std::vector<ChartSeries> series;
  ChartCorner legend = CHART_TOP_RIGHT;
};

// The corner whose quarter of the plot box the fewest points of the
// series (line vertices included) fall in: where a legend hides least.
ChartCorner ChartEmptiestCorner(const Chart &chart);

// An axis: the data range widened to whole ticks.
struct ChartAxis {
  float min = 0.0f, max = 1.0f, step = 0.5f;
};

// The axis over values lo..hi: a step of 1, 2 or 5 times a power of ten
// giving four to ten ticks; an empty or flat range still gets one step.
ChartAxis ChartFitAxis(float lo, float hi);
// The axes over all finite points of all series.
void ChartFit(const Chart &chart, ChartAxis *x, ChartAxis *y);
// The plot box of a chart drawn into `area`.
QRect ChartBox(const QRect &area);
// Title, grid, tick labels, axis names, series and legend into `area`.
void ChartPaint(QRenderer *r, const Chart &chart, const QRect &area);

// The legend: one row per labelled series, each label shortened in the
// middle to at most CHART_LEGEND_TEXT pixels, in the corner `chart.legend`
// names. With CHART_LEGEND_AUTO it goes into the corner of the plot box where
// the fewest series pixels run (ChartHits), the upper right when several tie,
// then the upper left, lower right and lower left; and when every corner has
// some, the vertical axis gets up to four more steps at the top, until an
// upper corner is free.
constexpr int CHART_LEGEND_TEXT = 300;
struct ChartLegend {
  QRect box;                        // the white box behind it; empty: no legend
  std::vector<std::string> labels;  // as drawn
};
ChartLegend ChartLegendPlace(QRenderer *r, const Chart &chart, const QRect &area);
// Pixels of the chart's series drawn into `area` (lines followed from point to
// point, and measured points) that fall inside `box`, with the axes as
// ChartPaint lays them out.
int ChartHits(QRenderer *r, const Chart &chart, const QRect &area, const QRect &box);
