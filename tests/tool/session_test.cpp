// The graphs' emphasis by focus, ghost alphas and pixel mapping.
#include "tool/session.h"

#include <gtest/gtest.h>

#include <cmath>

#include "golden.h"
#include "tool/frame.h"

TEST(Session, EmphasisFollowsFocus) {
  CreateTouringGraphs();
  const unsigned E = GRAPH_EMPHASISED, D = GRAPH_DIMMED;
  const unsigned flags[][3] = {{E, 0, 0}, {E, D, D}, {D, E, D}, {D, D, E}, {E, 0, 0}};
  for (int i = 0; i < 5; i++) {
    session.focus = i % 4;
    SessionApplyEmphasis();
    for (int g = 0; g < CURVE_COUNT; g++) EXPECT_EQ(session.graphs[g]->GetFlags(), flags[i][g]) << i << "/" << g;
  }
  DeleteGraphs();
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
}
