// The analysis report file.
#include "tool/analyse.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>

static std::string Slurp(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

TEST(Analyse, ReportMatchesGoldenAndRewritesTheSame40Bytes) {
  char tmpl[] = "/tmp/tyro_analyseXXXXXX";
  ASSERT_NE(mkdtemp(tmpl), nullptr);
  std::string path = std::string(tmpl) + "/reppac.txt";
  {
    std::ofstream old(path);
    old << "an older and much longer report that must be truncated away\n";
  }
  ASSERT_TRUE(AnalyseWriteReport(path.c_str()));
  ASSERT_TRUE(AnalyseWriteReport(path.c_str()));
  std::string got = Slurp(path);
  EXPECT_EQ(got.size(), 40u);
  EXPECT_EQ(got, Slurp(TYRO_TEST_DATA "/tool/reppac.txt"));
  unlink(path.c_str());
  rmdir(tmpl);
}

TEST(Analyse, UnwritablePathFails) {
  EXPECT_FALSE(AnalyseWriteReport("/nonexistent-folder/reppac.txt"));
}
