// Measured points on the plots: which points are taken at an operating
// point, where they land, and that the curves lie over them.
#include <cstring>

#include "golden.h"
#include "chart/oppoint.h"
#include "chart/plot.h"
#include "tyre/kmeasured.h"
#include "render/qrecorder.h"

namespace {

KMeasuredData Parse(const char *text) {
  KMeasuredData d;
  EXPECT_TRUE(KMeasuredParse(text, strlen(text), "test.csv", &d)) << d.error;
  return d;
}

}  // namespace

TEST(PlotData, PointsNearTheOperatingPointOnly) {
  // Columns: load, slip ratio, slip angle (rad), camber (rad), forces.
  KMeasuredData d = Parse(
      "fz,kappa,alpha,gamma,fx,fy,mz\n"
      "2500,0.1,0,0,3000,0,0\n"        // slip-ratio sweep: Fx graph (and the ellipse)
      "2600,0,0.1,0,0,2600,-20\n"      // slip-angle sweep, 4 % heavier: Fy and Mz
      "2500,0.002,0.005,0,100,150,1\n" // near zero slip: in all three
      "2500,0.1,0.1,0,500,500,0\n"     // combined: the ellipse only
      "3000,0.1,0,0,1,1,1\n"           // 20 % heavier: left out
      "2500,0.1,0,0.02,1,1,1\n");      // camber 1.1 deg: left out
  PlotPoints p;
  EXPECT_EQ(PlotPointsFromMeasured(d, 2500.0f, 0.0f, &p), 4);
  ASSERT_EQ(p.x[CURVE_FX].size(), 2u);
  EXPECT_FLOAT_EQ(p.y[CURVE_FX][0], 1.2f);  // Fx over the point's own load
  ASSERT_EQ(p.x[CURVE_FY].size(), 2u);
  EXPECT_NEAR(p.x[CURVE_FY][0], 0.1 * 57.29578, 1e-4);  // degrees, as the graph
  EXPECT_FLOAT_EQ(p.y[CURVE_FY][0], 1.0f);
  EXPECT_FLOAT_EQ(p.y[CURVE_MZ][0], -20.0f);  // N·m, not over the load
  EXPECT_EQ(p.fx.size(), 4u);
  // Without a force column that graph gets nothing.
  PlotPoints q;
  EXPECT_EQ(PlotPointsFromMeasured(Parse("fz,kappa,fx\n2500,0.1,3000\n"), 2500.0f, 0.0f, &q), 1);
  EXPECT_TRUE(q.x[CURVE_FY].empty() && q.fx.empty());
}

TEST(PlotData, DrawnUnderTheCurvesAndInTheEllipse) {
  Graph *graphs[CURVE_COUNT] = {};
  CreateTouringGraphs(graphs);
  FrameState st;
  for (int i = 0; i < CURVE_COUNT; i++) {
    st.graphs[i] = graphs[i];
    OpApplyAll(st.graphs[i]->GetCurrentTyre(), OperatingPoint());
    st.graphs[i]->SetZoom(true);
  }
  PlotPoints p;
  p.x[CURVE_FY] = {0.0f, 30.0f}, p.y[CURVE_FY] = {0.0f, 1.0f};  // 30 degrees is off the zoomed graph
  p.fx = {1000.0f}, p.fy = {2000.0f};
  QRecorder rec;
  QRect view(0, 0, PLOT_WIDTH, PLOT_HEIGHT);
  PlotPaint(&rec, PLOT_CURVES, st, view, &p);
  // One point on the plot (the other is off it), after the grid, before the first curve.
  ASSERT_EQ(rec.Of(QREC_FILL).size(), 1u);
  size_t fillAt = 0, gridAt = 0, curveAt = 0;
  for (size_t i = 0; i < rec.Records().size(); i++) {
    QRecordKind k = rec.Records()[i].kind;
    if (k == QREC_FILL) fillAt = i;
    if (k == QREC_SEGMENTS && !gridAt) gridAt = i;
    if (k == QREC_POLYLINE && !curveAt) curveAt = i;
  }
  EXPECT_TRUE(gridAt < fillAt && fillAt < curveAt);
  // The ellipse: a "measured" series first (under the sweeps), in kN.
  Chart c = PlotChart(PLOT_ELLIPSE, st, &p);
  EXPECT_TRUE(c.series[0].points && c.series[0].label == "measured");
  EXPECT_FLOAT_EQ(c.series[0].y[0], 2.0f);
  DeleteGraphs(graphs);
}
