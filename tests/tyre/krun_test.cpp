// Rig runs: the text and TYDEX readers (names, units, overrides, every
// message), the axis mapping, and the plausibility checks.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/base/capture.h"
#include "tyre/kdataload.h"
#include "tyre/kplausible.h"
#include "tyre/krun.h"

namespace {

const double kDeg = M_PI / 180;

// Parses text; returns the error ("" when it read).
std::string Parse(const std::string &text, KRunData *run, const KRunOptions &o = KRunOptions()) {
  ReportCapture quiet;
  return KRunParse(text.data(), text.size(), "run.txt", o, run) ? "" : run->error;
}

std::string ParseError(const std::string &text, const KRunOptions &o = KRunOptions()) {
  KRunData run;
  return Parse(text, &run, o);
}

TEST(KRunText, SeparatorsUnitsAndNames) {
  // semicolons with decimal commas, units in the names, any case, an extra column
  KRunData run;
  ASSERT_EQ("", Parse("sa[deg];SL;Fz (kN);FY;Remark\n1,5;0,1;4;-1200;7\n-3;0;4,5;2400,5;8\n", &run));
  EXPECT_EQ(2u, run.rows);
  EXPECT_NEAR(1.5 * kDeg, run.channel[KRUN_ALPHA].v[0], 1e-15);
  EXPECT_DOUBLE_EQ(4500, run.channel[KRUN_FZ].v[1]);
  EXPECT_DOUBLE_EQ(2400.5, run.channel[KRUN_FY].v[1]);
  EXPECT_DOUBLE_EQ(0.1, run.channel[KRUN_KAPPA].v[0]);
  ASSERT_EQ(1u, run.ignored.size());
  EXPECT_EQ("Remark", run.ignored[0]);
  // tabs with a units row; blanks with a unit standing apart
  ASSERT_EQ("", Parse("ET\tSLIPANGL\tFZW\tMZ\tP\tV\ns\trad\tlbf\tlbf·ft\tpsi\tmph\n0\t0.1\t1000\t10\t30\t10\n", &run));
  EXPECT_NEAR(4448.2216152605, run.channel[KRUN_FZ].v[0], 1e-9);
  EXPECT_NEAR(13.558179483314, run.channel[KRUN_MZ].v[0], 1e-9);
  EXPECT_NEAR(206842.71879504, run.channel[KRUN_PRESSURE].v[0], 1e-6);
  EXPECT_NEAR(4.4704, run.channel[KRUN_SPEED].v[0], 1e-12);
  ASSERT_EQ("", Parse("alpha (deg)  kappa [%]  fz  fx\n2 5 3000 100\n", &run));
  EXPECT_NEAR(2 * kDeg, run.channel[KRUN_ALPHA].v[0], 1e-15);
  EXPECT_DOUBLE_EQ(0.05, run.channel[KRUN_KAPPA].v[0]);
  // no time column: the row number stands in, and says so
  EXPECT_DOUBLE_EQ(0, run.channel[KRUN_TIME].v[0]);
  EXPECT_NE(std::string::npos, run.notes.front().find("no time column"));
  EXPECT_TRUE(run.timeFromRows);
}

TEST(KRunText, Overrides) {
  KRunOptions o;
  std::string error;
  ASSERT_TRUE(KRunParseColumns("fz=Load2,alpha=Steer", &o, &error)) << error;
  ASSERT_TRUE(KRunParseUnits("alpha=deg,fz=kN", &o, &error)) << error;
  KRunData run;
  // Load2 and Steer are nobody's usual names; FZ would be, but fz is taken
  ASSERT_EQ("", Parse("Steer,Load2,FZ,FY\n2,3,99,10\n", &run, o));
  EXPECT_DOUBLE_EQ(3000, run.channel[KRUN_FZ].v[0]);
  EXPECT_NEAR(2 * kDeg, run.channel[KRUN_ALPHA].v[0], 1e-15);
  EXPECT_EQ(std::vector<std::string>{"FZ"}, run.ignored);
  // the option checks
  EXPECT_FALSE(KRunParseUnits("alpha=furlong", &o, &error));
  EXPECT_EQ("--units: 'furlong' is not a unit of alpha (known: rad, deg)", error);
  EXPECT_FALSE(KRunParseColumns("slip=SA", &o, &error));
  EXPECT_EQ(0u, error.find("--columns: unknown key 'slip'"));
  EXPECT_FALSE(KRunParseColumns("fz", &o, &error));
  EXPECT_EQ("--columns: 'fz' is not KEY=VALUE", error);
  KRunOptions missing;
  ASSERT_TRUE(KRunParseColumns("fz=Nope", &missing, &error));
  EXPECT_EQ("run.txt:1: --columns fz=Nope: no such column (columns: SA, FZ, FY)", ParseError("SA,FZ,FY\n1,2,3\n", missing));
}

TEST(KRunText, Messages) {
  // a bad number: file, line and column of the field
  EXPECT_EQ("run.txt:4:5: column 'SA' (alpha): 'x1' is not a number",
            ParseError("FZ;FY;SA\nN;N;deg\n1;2;3\n4;5;x1\n"));
  EXPECT_EQ("run.txt:3:1: column 'FZ' (fz): 'inf' is not a finite number", ParseError("FZ,FY\n1,2\ninf,3\n"));
  EXPECT_EQ("run.txt:3: 3 fields where the names row (line 1) has 2", ParseError("FZ,FY\n1,2\n1,2,3\n"));
  // ambiguous and missing names list the columns found
  EXPECT_EQ("run.txt:1:4: 'SA' and 'alpha' could both be alpha (columns: SA, alpha, FZ, FY); choose one with "
            "--columns alpha=NAME",
            ParseError("SA,alpha,FZ,FY\n1,2,3,4\n"));
  EXPECT_EQ("run.txt:1: no load column (fz: FZ, Fz, FZW or load) among the columns SA, FY; name it with --columns fz=NAME",
            ParseError("SA,FY\n1,2\n"));
  EXPECT_EQ("run.txt:1: no force column (fx, fy or mz) among the columns SA, FZ; name one with --columns fy=NAME",
            ParseError("SA,FZ\n1,2\n"));
  // units: unknown, disagreeing, a units row of the wrong width
  EXPECT_EQ("run.txt:1:1: unit 'grad' of column 'SA' (alpha) is not known (known: rad, deg); give it with --units alpha=UNIT",
            ParseError("SA[grad],FZ,FY\n1,2,3\n"));
  EXPECT_EQ("run.txt:2:1: column 'SA': unit 'rad' here but 'deg' in its name", ParseError("SA[deg],FZ,FY\nrad,N,N\n1,2,3\n"));
  EXPECT_EQ("run.txt:2: the units row has 2 fields where the names row (line 1) has 3", ParseError("SA,FZ,FY\ndeg,N\n1,2,3\n"));
  EXPECT_EQ("run.txt: no names row (such as SA;SL;FZ;FX;FY;MZ)", ParseError("# nothing\n\n"));
  EXPECT_EQ("run.txt:1: no data rows", ParseError("SA,FZ,FY\n"));
  EXPECT_EQ("run.txt:1:1: '1' is a number where the names row should be (a names row such as SA;SL;FZ;FY comes first)",
            ParseError("1,2,3\n"));
}

TEST(KRunText, MissingUnitsRowFoundByThePlausibilityChecks) {
  // degrees without a units row read as radians: the checks say what to do
  const std::string text = "SA,IA,SL,FZ,FY\n8,4,0,3000,100\n-8,4,0,3000,-100\n";
  KDataLoad load;
  {
    ReportCapture quiet;
    ASSERT_TRUE(KDataLoadText(text, "run.txt", KRunOptions(), KConditionOptions{0, 1, false}, false, &load)) << load.error;
  }
  ASSERT_EQ(2u, load.problems.size());
  EXPECT_EQ("slip angles up to 8 rad (458.4°): looks like degrees: --units alpha=deg", load.problems[0]);
  EXPECT_EQ("cambers up to 4 rad (229.2°): looks like degrees: --units gamma=deg", load.problems[1]);
  bool noted = false;
  for (const std::string &n : load.run.notes) noted = noted || n.find("no units in the file") == 0;
  EXPECT_TRUE(noted);
  KRunOptions o;
  std::string error;
  ASSERT_TRUE(KRunParseUnits("alpha=deg,gamma=deg", &o, &error));
  {
    ReportCapture quiet;
    ASSERT_TRUE(KDataLoadText(text, "run.txt", o, KConditionOptions{0, 1, false}, true, &load)) << load.error;
  }
  EXPECT_TRUE(load.problems.empty()) << load.problems.front();
  EXPECT_NEAR(8 * kDeg, std::fabs(load.data.points[0].alpha), 1e-12);
}

// Quiet loading (a worker thread's) says nothing to the reporters, whatever
// goes wrong, and leaves the same message in the error as a loud one says.
TEST(KDataLoad, QuietLoadsLeaveTheirMessageAndReportNothing) {
  const std::string bad[] = {
      "FZ;FY;SA\nN;N;deg\n1;2;3\n4;5;x1\n",          // the run's reader
      "fz,alpha,fy\n4000,0.01,x\n",                     // the tidy reader
  };
  for (const std::string &text : bad)
    for (bool quiet : {false, true}) {
      KRunOptions ro;
      ro.quiet = quiet;
      KConditionOptions co;
      co.quiet = quiet;
      KDataLoad load;
      ReportCapture reports;
      EXPECT_FALSE(KDataLoadText(text, "run.txt", ro, co, false, &load)) << text;
      EXPECT_EQ(load.error.rfind("run.txt", 0), 0u) << load.error;
      if (quiet) {
        EXPECT_EQ(reports.joined, "") << text;
      } else {
        EXPECT_NE(reports.errors.find(load.error), std::string::npos) << text << reports.joined;
      }
    }
  // Conditioning that keeps no point.
  KRunData empty;
  empty.fileName = "run.txt";
  for (bool quiet : {false, true}) {
    KConditionOptions co;
    co.quiet = quiet;
    KConditioned out;
    ReportCapture reports;
    EXPECT_FALSE(KConditionRun(empty, co, &out));
    EXPECT_NE(out.data.error.find("no points left"), std::string::npos) << out.data.error;
    EXPECT_EQ(reports.errors.empty(), quiet) << reports.joined;
  }
  KRunOptions ro;
  ro.quiet = true;
  KDataLoad load;
  ReportCapture reports;
  EXPECT_FALSE(KDataLoadFile("/nonexistent/run.txt", ro, KConditionOptions(), false, &load));
  EXPECT_NE(load.error.find("/nonexistent/run.txt"), std::string::npos) << load.error;
  EXPECT_EQ(reports.joined, "");
}

TEST(KPlausible, EachCheckNamesItsCauseAndFix) {
  KMeasuredData d;
  KMeasuredPoint p;
  p.fz = 3000, p.alpha = 0.1, p.kappa = 0.1, p.gamma = 0.02;
  d.points = {p, p};
  std::vector<std::string> problems;
  EXPECT_TRUE(KPlausibleCheck(d, &problems));
  d.points[1].fz = -3000;
  d.points[0].kappa = 12;
  EXPECT_FALSE(KPlausibleCheck(d, &problems));
  ASSERT_EQ(2u, problems.size());
  EXPECT_EQ("1 of 2 loads are zero or negative (down to -3000 N): the loads look like SAE axes (z down); read the file "
            "with --axes sae (or --axes auto)",
            problems[0]);
  EXPECT_EQ("slip ratios up to 12: looks like percent: --units kappa=%", problems[1]);
  // at the limits themselves nothing is said
  d.points[1].fz = 1, d.points[0].kappa = KPLAUSIBLE_KAPPA_MAX, d.points[0].alpha = KPLAUSIBLE_ALPHA_MAX;
  d.points[0].gamma = KPLAUSIBLE_GAMMA_MAX;
  problems.clear();
  EXPECT_TRUE(KPlausibleCheck(d, &problems));
}

// A TYDEX file with the given channel lines and data rows.
std::string Tydex(const std::string &channels, const std::string &data, const std::string &tail = "**END\n") {
  return "**HEADER\nRELEASE   Release of TYDEX format                 1.3\n**COMMENTS\nmade by hand\n"
         "**CONSTANTS\nINFLPRES  Inflation pressure            kPa       250\n**MEASURCHANNELS\n" +
         channels + "**MEASURDATA\n" + data + tail;
}

const char *const kChannels =
    "SLIPANGL  Slip angle                    deg       1         0\n"
    "FZW       Vertical load                 kN        1         0\n"
    "FYW       Lateral force                 N         10        5\n"
    "! a comment\n"
    "MZW Aligning moment Nm\n";

TEST(KRunTydex, ChannelsFactorsConstants) {
  KRunData run;
  ASSERT_EQ("", Parse(Tydex(kChannels, "2 4 100 7\n-2 4.5 -100 -7\n"), &run));
  EXPECT_EQ("TYDEX", run.format);
  EXPECT_EQ(2u, run.rows);
  EXPECT_NEAR(2 * kDeg, run.channel[KRUN_ALPHA].v[0], 1e-15);
  EXPECT_DOUBLE_EQ(4500, run.channel[KRUN_FZ].v[1]);
  EXPECT_DOUBLE_EQ(1005, run.channel[KRUN_FY].v[0]);   // raw × factor + offset
  EXPECT_DOUBLE_EQ(-995, run.channel[KRUN_FY].v[1]);
  EXPECT_DOUBLE_EQ(-7, run.channel[KRUN_MZ].v[1]);     // a short line: words, unit last
  ASSERT_TRUE(run.channel[KRUN_PRESSURE].present);     // a constant becomes a channel
  EXPECT_DOUBLE_EQ(250000, run.channel[KRUN_PRESSURE].v[1]);
}

TEST(KRunTydex, BlocksMissingOrMalformed) {
  EXPECT_EQ("run.txt: no **MEASURCHANNELS block",
            ParseError("**HEADER\n**MEASURDATA2\n**END\n"));
  EXPECT_EQ("run.txt:2:1: **MEASURDATA before any **MEASURCHANNELS block", ParseError("**HEADER\n**MEASURDATA\n1 2\n**END\n"));
  EXPECT_EQ("run.txt:1:1: '**COMMENTS' where the file should start with **HEADER", ParseError("**COMMENTS\n**END\n"));
  EXPECT_EQ("run.txt:14: no **END line: the file may be cut short", ParseError(Tydex(kChannels, "2 4 100 7\n", "")));
  EXPECT_EQ("run.txt:14: 3 values where **MEASURCHANNELS (line 7) has 4 channels",
            ParseError(Tydex(kChannels, "2 4 100\n")));
  EXPECT_EQ("run.txt:14:3: column 'FZW' (fz): 'NOTAVAIL' is not a number", ParseError(Tydex(kChannels, "2 NOTAVAIL 100 7\n")));
  EXPECT_EQ("run.txt:9:1: **MEASURCHANNELS: channel 'FYW' has a conversion factor of 0",
            ParseError(Tydex("SLIPANGL  Slip angle                    deg       1         0\n"
                             "FYW       Lateral force                 N         0         0\n"
                             "FZW       Vertical load                 N         1         0\n",
                             "1 2 3\n")));
  EXPECT_EQ("run.txt:8:1: **MEASURCHANNELS: 'x' is not a number",
            ParseError(Tydex("FZW       Vertical load                 N         1         x\n", "1\n")));
  EXPECT_EQ("run.txt:15:1: a second **MEASURDATA block",
            ParseError(Tydex(kChannels, "2 4 100 7\n**MEASURDATA\n")));
}

TEST(KRunAxes, SaeTurnsExactlyTheFourChannels) {
  // one row with every channel non-zero, read as SAE: load, slip angle,
  // Fy and Mz change sign, nothing else does
  const std::string text = "FZ,SA,SL,IA,FX,FY,MZ,MX\n-3000,0.1,0.05,0.02,500,-800,-30,7\n";
  KRunData run;
  ASSERT_EQ("", Parse(text, &run));
  KRunMapAxes(&run, KAXES_SAE);
  const double want[] = {3000, -0.1, 0.05, 0.02, 500, 800, 30, 7};
  const int ch[] = {KRUN_FZ, KRUN_ALPHA, KRUN_KAPPA, KRUN_GAMMA, KRUN_FX, KRUN_FY, KRUN_MZ, KRUN_MX};
  for (int i = 0; i < 8; i++) EXPECT_DOUBLE_EQ(want[i], run.channel[ch[i]].v[0]) << KRunChannelKey(ch[i]);
  // iso keeps every sign; auto takes sae for negative loads and says so
  ASSERT_EQ("", Parse(text, &run));
  KRunMapAxes(&run, KAXES_ISO);
  EXPECT_DOUBLE_EQ(-3000, run.channel[KRUN_FZ].v[0]);
  ASSERT_EQ("", Parse(text, &run));
  KRunMapAxes(&run, KAXES_AUTO);
  EXPECT_DOUBLE_EQ(3000, run.channel[KRUN_FZ].v[0]);
  EXPECT_EQ(0u, run.notes.back().find("axes auto: the loads are negative, so SAE"));
}

// A slip-angle sweep of `rows` rows (±0.1 rad, load `fz`) with Fy and Mz
// of the given slopes at small slip (as the file has them: a half turn
// keeps both) (tanh curves, so larger angles bend
// over), plus a camber offset and pseudo-random noise of `noise` N and
// N·m; read through the columns reader as a rig's file would be.
KRunData Sweep(double fz, double fySlope, double mzSlope, double noise, int rows = 400, double camberOffset = 0) {
  std::vector<double> sa, fzv, fy, mz, ia;
  unsigned seed = 12345;
  auto rnd = [&seed] {  // uniform in [-1, 1), the same every run
    seed = seed * 1103515245u + 12345u;
    return double((seed >> 8) & 0xffff) / 32768.0 - 1;
  };
  for (int i = 0; i < rows; i++) {
    const double a = 0.1 * std::sin(2 * M_PI * i / 100.0);
    sa.push_back(a);
    fzv.push_back(fz);
    // two camber set points, each with its own Fy and Mz offset
    const double side = 2 * i < rows ? -1 : 1;
    ia.push_back(side * 0.05);
    fy.push_back(0.1 * fySlope * std::tanh(a / 0.1) + 40 + 10 * side * camberOffset + noise * rnd());
    mz.push_back(0.05 * mzSlope * std::tanh(a / 0.05) + 3 + side * camberOffset + noise * rnd());
  }
  KRunData run;
  ReportCapture quiet;
  EXPECT_TRUE(KRunFromColumns({"SA", "FZ", "FY", "MZ", "IA"}, {sa.data(), fzv.data(), fy.data(), mz.data(), ia.data()},
                              size_t(rows), "sweep", KRunOptions(), &run))
      << run.error;
  return run;
}

double MzSlopeSign(const KRunData &run) {
  double s = 0;
  for (size_t i = 0; i < run.rows; i++)
    if (std::fabs(run.channel[KRUN_ALPHA].v[i]) < 0.03) s += run.channel[KRUN_ALPHA].v[i] * run.channel[KRUN_MZ].v[i];
  return s > 0 ? 1 : -1;
}

// --axes auto: the load sign picks ISO or SAE, then Fy is checked against
// Mz: slopes of one sign (which no positive trail gives) turn Mz back;
// opposite slopes, and slopes too flat to tell, keep it; iso and sae never
// look at the slopes.
TEST(KRunAxes, AutoTurnsMzBackWhenItSlopesAsFyDoes) {
  struct Case {
    const char *what;
    double fz, fySlope, mzSlope, noise;
    int axes;
    bool turned;
    const char *note;  // a part of the note
  };
  const Case cases[] = {
      // a TIR-like tyre in ISO (Fy falls, Mz rises) and in SAE: kept
      {"iso normal", 4000, -80000, 2400, 20, KAXES_AUTO, false, "axes auto: the loads are positive, so ISO (signs kept); Fy falls"},
      {"sae normal", -4000, -80000, 2400, 20, KAXES_AUTO, false, "so SAE (fz, alpha, fy, mz turned round); Fy falls"},
      // a Pacejka89/96-like tyre (Fy rises, Mz falls): kept
      {"fy rising", 4000, 80000, -2400, 20, KAXES_AUTO, false, "; Fy rises with the slip angle"},
      // Mz logged turned round, in ISO and in SAE: turned back
      {"iso mz turned", 4000, -80000, -2400, 20, KAXES_AUTO, true,
       "; Fy and Mz both fall with the slip angle (within set points Fy -7.89"},
      {"sae mz turned", -4000, -80000, -2400, 20, KAXES_AUTO, true, "which a positive trail never gives: Mz turned round"},
      // Mz no more than noise: too flat to tell
      {"mz flat", 4000, -80000, -5, 200, KAXES_AUTO, false, "too flat or noisy to check one against the other"},
      // explicit axes keep the file's Mz whatever the slopes say
      {"iso given", 4000, -80000, -2400, 20, KAXES_ISO, false, "axes iso: signs kept; Fy falls"},
      {"sae given", -4000, -80000, -2400, 20, KAXES_SAE, false, "axes sae: fz, alpha, fy, mz turned round; Fy falls"},
  };
  for (const Case &c : cases) {
    KRunData run = Sweep(c.fz, c.fySlope, c.mzSlope, c.noise);
    const double mzSign = c.mzSlope > 0 ? 1 : -1;  // a half turn keeps the slopes
    KRunMapAxes(&run, c.axes);
    EXPECT_EQ(c.turned, run.mzTurned) << c.what;
    EXPECT_EQ(c.turned ? -mzSign : mzSign, MzSlopeSign(run)) << c.what;
    EXPECT_NE(std::string::npos, run.notes.back().find(c.note)) << c.what << ": " << run.notes.back();
    EXPECT_GT(run.channel[KRUN_FZ].v[0], 0) << c.what;
  }
  // camber offsets between the set points are not scatter about the slope:
  // Mz turned round still shows through them
  KRunData offsets = Sweep(4000, -80000, -2400, 20, 400, 100);
  KRunMapAxes(&offsets, KAXES_AUTO);
  EXPECT_TRUE(offsets.mzTurned) << offsets.notes.back();
  // too few rows at small slip to tell
  KRunData few = Sweep(4000, -80000, -2400, 20, 8);
  KRunMapAxes(&few, KAXES_AUTO);
  EXPECT_FALSE(few.mzTurned);
  EXPECT_NE(std::string::npos, few.notes.back().find("too few rows at small slip (")) << few.notes.back();
}

TEST(KRunAxes, SlopesTurnedNeedsBothClearAndOfOneSign) {
  EXPECT_TRUE(KRunAxesSlopesTurned(-1, -50, -2, -12));
  EXPECT_TRUE(KRunAxesSlopesTurned(3, 10, 2, 10));
  EXPECT_FALSE(KRunAxesSlopesTurned(-1, -50, 2, 12));  // opposite: as it should be
  EXPECT_FALSE(KRunAxesSlopesTurned(-1, -50, -2, -9));  // Mz within noise
  EXPECT_FALSE(KRunAxesSlopesTurned(-1, -9, -2, -50));  // Fy within noise
}

TEST(KRunText, TidyFilesStayWithTheTidyReader) {
  auto tidy = [](const std::string &t) { return KRunIsTidyCsv(t.data(), t.size()); };
  EXPECT_TRUE(tidy("fz,kappa,alpha,gamma,fx,fy,mz\n4000,0,0.1,0,1,2,3\n"));
  EXPECT_TRUE(tidy("# made by hand\nfz fy\n4000 1\n"));
  EXPECT_TRUE(tidy("fz fy fzz\n"));          // a bad tidy file keeps its own message
  EXPECT_TRUE(tidy("fz,fy\n4000,1\n"));
  EXPECT_TRUE(tidy("fz,alpha,fy\n4000,0.1,abc\n"));  // a bad number, not a units row
  EXPECT_TRUE(tidy("fz,alpha,fy,pressure\n4000,0.1,2,240000\n"));  // what data -o writes for a run with pressure
  EXPECT_FALSE(tidy("fz,alpha,fy,P\n4000,0.1,2,240000\n"));        // a rig's name for it
  EXPECT_FALSE(tidy("FZ,SA,FY\n4000,1,2\n"));  // a rig's name
  EXPECT_FALSE(tidy("fz;fy\n4000;1\n"));       // semicolons
  EXPECT_FALSE(tidy("fz,fy\nN,N\n4000,1\n"));  // a units row
  EXPECT_FALSE(tidy("fz[kN],fy\n4,1\n"));
  EXPECT_FALSE(tidy("**HEADER\n"));
}

}  // namespace
