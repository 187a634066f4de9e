// The fit driver's problems come back as values, in order, with the place
// they are about; a refused job writes nothing.
#include "chart/fitrun.h"

#include <fstream>

#include "golden.h"

namespace {

std::string Write(const std::string &path, const std::string &text) {
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

TEST(FitRun, ProblemsAreValuesWithTheirPlace) {
  ScratchDir dir;
  FitJob job;
  job.model = KPacejka::MF61;
  job.out = dir.root + "/out.tir";
  // bad data: the reader's file, line and column, nothing printed or written
  job.input = Write(dir.root + "/bad.csv", "fz,alpha,fy\n4000,0.1,1\n4000,0.2,abc\n");
  FitOutcome o = FitRun(job);
  EXPECT_FALSE(o.ok);
  ASSERT_EQ(o.problems.size(), 1u);
  EXPECT_EQ(o.problems[0].file, job.input);
  EXPECT_EQ(o.problems[0].line, 3);
  EXPECT_EQ(o.problems[0].message, "column 3 (fy): 'abc' is not a number");
  EXPECT_TRUE(ReadFileBytes(job.out).empty());
  // no such data file: about that file
  job.input = dir.root + "/none.csv";
  o = FitRun(job);
  ASSERT_FALSE(o.problems.empty());
  EXPECT_EQ(o.problems[0].file, job.input);
  // a start tyre that is not there
  job.input = Write(dir.root + "/ok.csv", "fz,alpha,fy\n4000,0.1,1000\n");
  job.start = dir.root + "/nope.tir";
  o = FitRun(job);
  ASSERT_EQ(o.problems.size(), 1u);
  EXPECT_EQ(o.problems[0].Text(), "--start: " + job.start + ": no such file");
}

TEST(FitRun, RefusedJobsWriteNothing) {
  ScratchDir dir;
  FitJob job;
  job.convert = true;
  job.input = TirFile("MagicFormula61_Parameters.tir");
  job.model = KPacejka::PAC96;
  job.out = dir.root + "/x.TIR";
  FitOutcome o = FitRun(job);
  ASSERT_EQ(o.problems.size(), 1u);
  EXPECT_FALSE(o.started);
  EXPECT_EQ(o.problems[0].Text(), job.out + ": a TIR file holds a Magic Formula tyre; use mf52 or mf61, or a car.ini");
  job.out = Write(dir.root + "/taken.ini", "keep\n");
  o = FitRun(job);
  ASSERT_EQ(o.problems.size(), 1u);
  EXPECT_EQ(o.problems[0].Text(), job.out + " exists; add --force to overwrite it");
  EXPECT_EQ(ReadFileBytes(job.out), "keep\n");
  job.out = dir.root + "/free.ini";
  job.report = job.out.substr(0, job.out.size() - 8) + "taken.ini";
  EXPECT_FALSE(FitRun(job).started) << "an existing report is kept too";
  for (FitJob bad : {FitJob{}, job}) {
    QProblem p;
    if (bad.model >= 0) bad.model = -1;
    EXPECT_FALSE(FitJobCheck(bad, &p));
    EXPECT_FALSE(p.message.empty());
  }
}

}  // namespace
