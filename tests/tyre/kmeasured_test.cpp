// The measured-data reader: every column lands in its own field whatever the
// order and separator, and every kind of bad input is refused with file,
// line, column and problem named, through the reporter and in `error`.
#include <gtest/gtest.h>

#include <string>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"
#include "tyre/kmeasured.h"

namespace {

bool Parse(const std::string &text, KMeasuredData *d) {
  return KMeasuredParse(text.data(), text.size(), "d.csv", d);
}

}  // namespace

TEST(MeasuredRead, ColumnsInAnyOrderAndEitherSeparator) {
  // Each column holds its own value, so a column read into the wrong field
  // (or skipped) shows.
  for (const char *text : {
           "fz,kappa,alpha,gamma,fx,fy,mz\n1,2,3,4,5,6,7\n",
           "mz fy fx gamma alpha kappa fz\n7 6 5 4 3 2 1\n",
           "# header follows\r\n\r\nGAMMA, FZ ,mz,Kappa,fy,alpha,fx\r\n  # a comment row\r\n4, 1 ,7,2,6,3,5\r\n",
           "alpha\tfx\tfz\tmz\tfy\tgamma\tkappa\n3\t5\t1\t7\t6\t4\t2",  // no line end at the end
       }) {
    KMeasuredData d;
    ASSERT_TRUE(Parse(text, &d)) << text << d.error;
    ASSERT_EQ(d.points.size(), 1u) << text;
    const KMeasuredPoint &p = d.points[0];
    const double got[] = {p.fz, p.kappa, p.alpha, p.gamma, p.force[KCH_FX], p.force[KCH_FY], p.force[KCH_MZ]};
    for (int i = 0; i < 7; i++) EXPECT_EQ(got[i], i + 1) << text << " column " << i;
    for (int ch = 0; ch < KCH_COUNT; ch++) EXPECT_TRUE(d.has[ch]) << text;
  }
}

TEST(MeasuredRead, MissingColumnsAndRoundTrip) {
  // absent inputs are 0; absent channels are not measured
  KMeasuredData d;
  ASSERT_TRUE(Parse("fz,alpha,fy\n4000,0.05,2100.5\n5000,-1e-2,-700\n", &d)) << d.error;
  ASSERT_EQ(d.points.size(), 2u);
  EXPECT_TRUE(d.points[1].kappa == 0 && d.points[1].alpha == -0.01 && d.points[1].force[KCH_FY] == -700);
  EXPECT_TRUE(!d.has[KCH_FX] && d.has[KCH_FY] && !d.has[KCH_MZ]);
  // written and read back: the same numbers, the same channels
  d.points[0].alpha = 0.1 + 0.2;  // not short in decimal
  const std::string text = KMeasuredFormat(d);
  EXPECT_EQ(text.substr(0, text.find('\n')), "fz,kappa,alpha,gamma,fy");
  KMeasuredData back;
  ASSERT_TRUE(Parse(text, &back)) << back.error;
  EXPECT_TRUE(back.points[0].alpha == d.points[0].alpha && back.points[1].force[KCH_FY] == -700);
  EXPECT_FALSE(back.has[KCH_FX]);
}

// The optional pressure column: read into each point, written only when a
// point has a pressure, so data without one keeps its seven columns.
TEST(MeasuredRead, PressureColumnRoundTripsAndIsWrittenOnlyWhenThere) {
  KMeasuredData d;
  ASSERT_TRUE(Parse("fz,alpha,fy,PRESSURE\n4000,0.05,2100.5,240000\n4000,-0.05,-2100.5,204000.5\n", &d)) << d.error;
  EXPECT_EQ(d.points[0].pressure, 240000);
  EXPECT_EQ(d.points[1].pressure, 204000.5);
  EXPECT_TRUE(KMeasuredHasPressure(d));
  d.points[1].pressure = 2e5 / 3;  // not short in decimal
  const std::string text = KMeasuredFormat(d);
  EXPECT_EQ(text.substr(0, text.find('\n')), "fz,kappa,alpha,gamma,fy,pressure");
  KMeasuredData back;
  ASSERT_TRUE(Parse(text, &back)) << back.error;
  EXPECT_EQ(back.points[1].pressure, d.points[1].pressure);
  EXPECT_EQ(KMeasuredFormat(back), text);
  // without pressure: no column, and the text of before
  for (KMeasuredPoint &p : d.points) p.pressure = 0;
  EXPECT_FALSE(KMeasuredHasPressure(d));
  EXPECT_EQ(KMeasuredFormat(d).substr(0, KMeasuredFormat(d).find('\n')), "fz,kappa,alpha,gamma,fy");
  ReportCapture cap;
  EXPECT_FALSE(Parse("fz,fy,pressure\n4000,1,-2\n", &d));
  EXPECT_EQ(d.error, "d.csv:2: column 3 (pressure): '-2' is not a pressure (Pa; 0 where it is unknown)");
}

TEST(MeasuredRead, BadInputIsRefusedWithWhereAndWhat) {
  struct Row { const char *text, *message; };
  const Row rows[] = {
      {"fz,fy,fzz\n1,2,3\n", "d.csv:1: column 3: unknown name 'fzz' (known: fz, kappa, alpha, gamma, fx, fy, mz)"},
      {"fz,fy,fz\n", "d.csv:1: column 3: 'fz' is already column 1"},
      {"kappa,fx\n0,1\n", "d.csv:1: no 'fz' column (the load, N)"},
      {"fz,kappa\n1,0\n", "d.csv:1: no force column (fx, fy or mz)"},
      {"fz,fy\n1,2\n# note\n3,abc\n", "d.csv:4: column 2 (fy): 'abc' is not a number"},
      {"fz,fy\n1,\n", "d.csv:2: column 2 (fy): '' is not a number"},
      {"fz,fy,mz\n1,2,3\n1,2\n", "d.csv:3: 2 fields where the header has 3"},
      {"fz,fy\n1,2,3\n", "d.csv:2: 3 fields where the header has 2"},
      {"fz,fy\nnan,2\n", "d.csv:2: column 1 (fz): 'nan' is not a finite number"},
      {"fz,fy\n1,1e999\n", "d.csv:2: column 2 (fy): '1e999' is not a finite number"},
      {"fz,fy\n# nothing\n\n", "d.csv: no data rows after the header"},
      {"", "d.csv: no header line (expected names such as fz,kappa,alpha,gamma,fx,fy,mz)"},
  };
  for (const Row &r : rows) {
    ReportCapture cap;
    KMeasuredData d;
    EXPECT_FALSE(Parse(r.text, &d)) << r.text;
    EXPECT_EQ(d.error, r.message);
    EXPECT_EQ(cap.errors, std::string(r.message) + "\n");
    EXPECT_TRUE(d.points.empty()) << r.text;
  }
  ReportCapture cap;
  KMeasuredData d;
  EXPECT_FALSE(Parse(std::string("fz,fy\n1,2\0\n", 11), &d));
  EXPECT_EQ(d.error, "d.csv:2: a NUL byte in the line");
}

using MeasuredFile = TyreFileTest;

TEST_F(MeasuredFile, ReadsAFileAndNamesAMissingOne) {
  KMeasuredData d;
  ASSERT_TRUE(KMeasuredRead(Write("a.csv", "fz,fx\n4000,100\n").c_str(), &d)) << d.error;
  EXPECT_EQ(d.points.size(), 1u);
  ReportCapture cap;
  const std::string missing = dir + "/none.csv";
  EXPECT_FALSE(KMeasuredRead(missing.c_str(), &d));
  EXPECT_EQ(d.error, missing + ": cannot open: No such file or directory");
  // the line is counted in the file as written
  EXPECT_FALSE(KMeasuredRead(Write("b.csv", "# one\nfz,fx\n\n4000,x\n").c_str(), &d));
  EXPECT_EQ(d.error, dir + "/b.csv:4: column 2 (fx): 'x' is not a number");
}
