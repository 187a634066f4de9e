// The fit driver's problems come back as values, in order, with the place
// they are about; a refused job writes nothing.
#include "chart/fitrun.h"

#include <fstream>
#include <memory>

#include "base/qfile.h"

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
  job.report.clear();
  job.reportPdf = Write(dir.root + "/taken.pdf", "keep\n");
  o = FitRun(job);
  EXPECT_FALSE(o.started) << "an existing PDF report is kept too";
  ASSERT_EQ(o.problems.size(), 1u);
  EXPECT_EQ(o.problems[0].Text(), job.reportPdf + " exists; add --force to overwrite it");
  EXPECT_EQ(ReadFileBytes(job.reportPdf), "keep\n");
  for (FitJob bad : {FitJob{}, job}) {
    QProblem p;
    if (bad.model >= 0) bad.model = -1;
    EXPECT_FALSE(FitJobCheck(bad, &p));
    EXPECT_FALSE(p.message.empty());
  }
}

// The data as `fit` reads it: a rig run through its reader (units from
// the options), implausible data refused with the checks' messages before
// any fit, data already in memory fitted as it is, the tyre kept without
// an output when the caller allows it.
TEST(FitRun, RigRunsChecksAndDataInMemory) {
  ScratchDir dir;
  FitJob job;
  job.model = KPacejka::MF61;
  job.out = dir.root + "/out.tir";
  // a semicolon-separated run with its slip angles in degrees: only the rig
  // reader takes it, and the checks name the cause and the fix
  std::string run = "SA;FZ;FY\n";
  for (int i = -10; i <= 10; i++) run += std::to_string(i) + ";4000;" + std::to_string(-300 * i) + "\n";
  job.input = Write(dir.root + "/run.txt", run);
  FitOutcome o = FitRun(job);
  EXPECT_FALSE(o.ok);
  ASSERT_EQ(o.problems.size(), 1u);
  EXPECT_EQ(o.problems[0].Text(), "slip angles up to 10 rad (573°): looks like degrees: --units alpha=deg");
  ASSERT_TRUE(o.data);
  EXPECT_FALSE(o.data->tidy);
  EXPECT_TRUE(ReadFileBytes(job.out).empty());
  // told the unit, the run passes the checks and its points are fitted
  std::string error;
  ASSERT_TRUE(KRunParseUnits("alpha=deg", &job.run, &error)) << error;
  job.out = dir.root + "/run.tir";
  o = FitRun(job);
  ASSERT_TRUE(o.data);
  EXPECT_TRUE(o.data->problems.empty());
  EXPECT_EQ(o.result.channel[KCH_FY].points, 21);
  // a tidy file's negative loads: refused, nothing written
  job.run = KRunOptions();
  job.out = dir.root + "/out.tir";
  job.input = Write(dir.root + "/sae.csv", "fz,alpha,fy\n-4000,0.1,1000\n-4000,0.2,1500\n");
  o = FitRun(job);
  EXPECT_FALSE(o.ok);
  ASSERT_EQ(o.problems.size(), 1u);
  EXPECT_NE(o.problems[0].message.find("the loads look like SAE axes"), std::string::npos) << o.problems[0].message;
  EXPECT_TRUE(ReadFileBytes(job.out).empty());
  // data in memory, no output: fitted, kept, nothing read or written
  auto load = std::make_shared<KDataLoad>();
  ASSERT_TRUE(KDataLoadFile((std::string(TYRO_SOURCE_DIR) + "/data/measured/touring.csv").c_str(), KRunOptions(),
                            KConditionOptions(), false, load.get()));
  job.input = "<data>";
  job.data = load;
  job.out.clear();
  QProblem p;
  EXPECT_FALSE(FitJobCheck(job, &p)) << "an output is needed unless optional";
  job.outOptional = true;
  o = FitRun(job);
  ASSERT_TRUE(o.ok) << (o.problems.empty() ? "" : o.problems[0].Text());
  EXPECT_EQ(o.data, load);
  ASSERT_TRUE(o.tyre);
  EXPECT_EQ(o.tyre->model, KPacejka::MF61);
  // pure slip only (no combined points): Fy counted where the slip ratio is 0
  EXPECT_TRUE(o.result.pureOnly);
  EXPECT_EQ(o.result.channel[KCH_FY].points, 108);
  EXPECT_FALSE(QFileExists((dir.root + "/out.tir").c_str(), false));
}

}  // namespace
