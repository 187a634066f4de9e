// Session operations on the three graphs' tyres, emphasis, ghost alphas and
// the graphs' pixel mapping (no window needed).
#include "tool/session.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <string>

#include "golden.h"
#include "tool/frame.h"
#include "tool/graph.h"

namespace {

class SessionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Graph *prev = nullptr;
    for (int i = 0; i < CURVE_COUNT; i++) session.graphs[i] = prev = new Graph(CurveKind(i), prev);
    for (Graph *g : session.graphs)
      for (int w = 0; w < CAR_WHEELS; w++) {
        std::string error;
        ASSERT_TRUE(CarLoadTyreSource(TouringCar().c_str(), w, g->GetTyre(w), &error)) << error;
      }
    session.focus = 0;
    session.selected = 0;
    session.wheel = 0;
    session.point = OperatingPoint();
    SessionSelectWheelTyres(0);
  }
  void TearDown() override {
    for (Graph *&g : session.graphs) {
      delete g;
      g = nullptr;
    }
  }
};

}  // namespace

TEST_F(SessionTest, GraphsAreChainedInOrder) {
  EXPECT_EQ(session.graphs[0]->GetPrevious(), nullptr);
  EXPECT_EQ(session.graphs[1]->GetPrevious(), session.graphs[0]);
  EXPECT_EQ(session.graphs[2]->GetPrevious(), session.graphs[1]);
  EXPECT_STREQ(session.graphs[1]->GetXAxisName(), "X-axis");
}

TEST_F(SessionTest, EmphasisFollowsFocus) {
  struct Case { int focus; unsigned fx, fy, mz; } cases[] = {
      {0, GRAPH_EMPHASISED, 0, 0},
      {1, GRAPH_EMPHASISED, GRAPH_DIMMED, GRAPH_DIMMED},
      {2, GRAPH_DIMMED, GRAPH_EMPHASISED, GRAPH_DIMMED},
      {3, GRAPH_DIMMED, GRAPH_DIMMED, GRAPH_EMPHASISED},
      {0, GRAPH_EMPHASISED, 0, 0},
  };
  for (const Case &c : cases) {
    session.focus = c.focus;
    SessionApplyEmphasis();
    EXPECT_EQ(session.graphs[0]->GetFlags(), c.fx) << c.focus;
    EXPECT_EQ(session.graphs[1]->GetFlags(), c.fy) << c.focus;
    EXPECT_EQ(session.graphs[2]->GetFlags(), c.mz) << c.focus;
  }
}

TEST_F(SessionTest, OperatingPointReachesEveryTyre) {
  session.point.load = 4000.0f;
  session.point.camber = 2.0f;
  SessionApply(OP_LOAD);
  SessionApply(OP_CAMBER);
  for (Graph *g : session.graphs)
    for (int w = 0; w < CAR_WHEELS; w++) {
      EXPECT_FLOAT_EQ(g->GetTyre(w)->Fz, 4.0f);
      EXPECT_NEAR(g->GetTyre(w)->GetCamber(), 2.0f / CURVE_RAD2DEG, 1e-6);
    }
}

TEST_F(SessionTest, EditGoesToTheCurrentWheelOfAllGraphs) {
  session.focus = 2;  // a list
  session.selected = 2;  // a2
  ASSERT_TRUE(SessionLookupCoefficient());
  SessionSelectWheelTyres(2);
  SessionSetCoefficient(2000.0f);
  for (Graph *g : session.graphs) {
    EXPECT_EQ(g->GetTyre(2)->a2, 2000.0f);
    EXPECT_EQ(g->GetTyre(0)->a2, 1450.0f);
    EXPECT_EQ(g->GetTyre(3)->a2, 1450.0f);
  }
  EXPECT_EQ(SessionCoefficientValue(), 2000.0f);
}

TEST_F(SessionTest, PastTheListEditsNothing) {
  session.focus = 0;
  session.selected = 20;  // past b12
  EXPECT_FALSE(SessionLookupCoefficient());
  SessionSetCoefficient(5.0f);  // no effect, no crash
  EXPECT_EQ(session.graphs[0]->GetCurrentTyre()->b2, 1800.0f);
}

TEST_F(SessionTest, MagicFormulaTyreShowsScaleFactorsWhateverTheFocus) {
  for (int model : {1, 3}) {
    session.graphs[CURVE_FX]->GetCurrentTyre()->model = model;
    for (int focus = 0; focus < 4; focus++) {
      session.focus = focus;
      EXPECT_EQ(SessionList(), COEFF_LIST_SCALE);
    }
  }
  session.graphs[CURVE_FX]->GetCurrentTyre()->model = 2;
  session.focus = 3;
  EXPECT_EQ(SessionList(), COEFF_LIST_C);
}

TEST_F(SessionTest, ZoomSetsAllRanges) {
  session.zoom = false;
  SessionApplyZoom();
  EXPECT_EQ(session.graphs[0]->GetRange().xMax, 10.0f);
  EXPECT_EQ(session.graphs[2]->GetRange().xMin, -180.0f);
  session.zoom = true;
  SessionApplyZoom();
  EXPECT_EQ(session.graphs[0]->GetRange().xMax, 2.0f);
  EXPECT_EQ(session.graphs[1]->GetRange().xMin, -20.0f);
  // The scales stay those of creation: the zoom spreads the narrower range
  // over the same plot.
  EXPECT_FLOAT_EQ(session.graphs[0]->GetXScale(), 29.0f);
  EXPECT_FLOAT_EQ(session.graphs[2]->GetYScale(), 0.95f);
}

TEST(Frame, GhostAlphasAsDrawn) {
  const int load[] = {20, 36, 52, 100, 80};
  for (int i = 0; i < 5; i++) EXPECT_FLOAT_EQ(FrameLoadGhostAlpha(i) * 255.0f, float(load[i])) << i;
  const int camber[] = {20, 30, 40, 50, 40, 30};
  for (int i = 0; i < 6; i++) EXPECT_NEAR(FrameCamberGhostAlpha(i) * 255.0f, float(camber[i]), 1e-4) << i;
}

TEST(GraphMapping, SamplesSpanThePlot) {
  Graph g(CURVE_FY, nullptr);
  EXPECT_EQ(g.SampleX(0, 365), 75);
  EXPECT_EQ(g.SampleX(145, 365), 365);
  EXPECT_EQ(g.SampleX(289, 365), 75 + 578);
  EXPECT_EQ(g.SampleY(0.0f, 282), 282);
  EXPECT_EQ(g.SampleY(2.0f, 282), 282 - 190);
  EXPECT_EQ(g.SampleY(-1.0f, 282), 282 + 95);
  // Non-finite or huge values stay on a few plot heights.
  EXPECT_EQ(g.SampleY(std::nanf(""), 282), 282);
  EXPECT_EQ(g.SampleY(1e30f, 282), 282 - 4 * 380);
  EXPECT_EQ(g.GetColor(), QColor(255, 0, 0, 255));
}

TEST_F(SessionTest, TirImportReachesAllTyresAndRevertBringsTheCarBack) {
  std::string tir = std::string(TYRO_SOURCE_DIR) + "/data/tyres/MagicFormula61_Parameters.tir";
  SessionLoadTir(tir.c_str());
  for (Graph *g : session.graphs)
    for (int w = 0; w < CAR_WHEELS; w++) EXPECT_EQ(g->GetTyre(w)->model, 3);
  EXPECT_EQ(SessionList(), COEFF_LIST_SCALE);
  // "Revert" reloads the car by name from data/cars under the working folder.
  char tmpl[] = "/tmp/tyro_revertXXXXXX";
  ASSERT_NE(mkdtemp(tmpl), nullptr);
  std::string root = tmpl;
  ASSERT_EQ(system(("mkdir -p '" + root + "/data/cars' && ln -s '" TYRO_TEST_DATA "/tool/touring' '" + root +
                    "/data/cars/touring'").c_str()), 0);
  char old[4096];
  ASSERT_NE(getcwd(old, sizeof old), nullptr);
  ASSERT_EQ(chdir(root.c_str()), 0);
  session.car = "touring";
  SessionLoadCar();
  EXPECT_EQ(chdir(old), 0);
  (void)!system(("rm -rf '" + root + "'").c_str());
  for (Graph *g : session.graphs) {
    EXPECT_EQ(g->GetTyre(0)->model, 0);
    EXPECT_EQ(g->GetTyre(1)->b2, 2000.0f);
  }
}

TEST_F(SessionTest, ResetRestoresTheStartUpState) {
  session.point.load = 9000.0f;
  session.zoom = false;
  session.focus = 3;
  session.selected = 7;
  SessionReset();
  EXPECT_EQ(session.point.load, 2500.0f);
  EXPECT_TRUE(session.zoom);
  EXPECT_EQ(session.focus, 0);
  EXPECT_EQ(session.selected, 0);
  EXPECT_STREQ(session.edit.name, "b0");
  EXPECT_EQ(session.graphs[CURVE_FX]->GetFlags(), unsigned(GRAPH_EMPHASISED));
  for (Graph *g : session.graphs)
    for (int w = 0; w < CAR_WHEELS; w++) EXPECT_FLOAT_EQ(g->GetTyre(w)->Fz, 2.5f);
}
