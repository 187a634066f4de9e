// The fitter: stage order and membership, that each stage moves only its own
// group, mirroring, refusals, the built-in start's curvature over the load,
// and recovery of known tyres on a small set
// (tests/fitaccuracy sweeps every bundled tyre).
#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <string>
#include <vector>

#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"
#include "tyre/kfit.h"
#include "tyre/ksample.h"

namespace {

using G = KPacejkaMember;

// A small sample of `t`: three loads around 4 kN, three cambers, coarse sweeps.
KMeasuredData Sample(KPacejka &t, bool combined) {
  KSamplePlan plan;
  plan.loads = {2500, 4000, 5500};
  plan.cambers = {-0.05, 0, 0.05};
  plan.steps = 21;
  plan.combined = combined;
  plan.combinedSteps = 11;
  KMeasuredData d;
  KSampleTyre(t, plan, &d);
  return d;
}

std::vector<double> Members(const KPacejka &t) {
  std::vector<double> v;
  for (int i = 0; i < kpacejkaMemberCount; i++) v.push_back(KPacejkaGetMember(t, kpacejkaMembers[i]));
  return v;
}

// What the stage callback saw: each stage's group and the tyre at its start.
struct StageLog {
  std::vector<G::Group> groups;
  std::vector<std::vector<double>> tyres;
  static void Record(void *user, const KFitStage &s, const KPacejka &t) {
    auto *log = static_cast<StageLog *>(user);
    log->groups.push_back(s.group);
    log->tyres.push_back(Members(t));
  }
};

}  // namespace

TEST(FitStages, OrderAndMembersComeFromTheTable) {
  const KFitStage *st[8];
  ASSERT_EQ(KFitStagesFor(KPacejka::MF61, st, 8), 6);
  const G::Group order[] = {G::PURE_FX, G::PURE_FY, G::PURE_MZ, G::COMBINED_FX, G::COMBINED_FY, G::COMBINED_MZ};
  for (int i = 0; i < 6; i++) EXPECT_EQ(st[i]->group, order[i]) << i;
  ASSERT_EQ(KFitStagesFor(KPacejka::PAC96, st, 8), 3);  // no combined-slip terms
  for (int i = 0; i < 3; i++) EXPECT_EQ(st[i]->group, order[i]) << i;
  // a stage varies exactly the table's fitted members of its group for the model
  for (int model : {KPacejka::PAC96, KPacejka::MF52, KPacejka::MF61}) {
    const int n = KFitStagesFor(model, st, 8);
    for (int i = 0; i < n; i++) {
      int varied = 0;
      for (int m = 0; m < kpacejkaMemberCount; m++) {
        float lo, hi;
        if (!KFitVaries(model, *st[i], kpacejkaMembers[m], &lo, &hi)) continue;
        varied++;
        EXPECT_EQ(kpacejkaMembers[m].group, st[i]->group) << kpacejkaMembers[m].name;
        EXPECT_LT(lo, hi) << kpacejkaMembers[m].name;
      }
      EXPECT_EQ(varied, KPacejkaFittedMembers(model, st[i]->group, nullptr, 0)) << model << " " << i;
    }
  }
  int model;
  EXPECT_TRUE(KFitModelByName("MF61", &model) && model == KPacejka::MF61);
  EXPECT_FALSE(KFitModelByName("pac2006", &model));
}

TEST(FitTyre, StagesRunInOrderAndEachMovesOnlyItsGroup) {
  KPacejka source, fitted;
  SetTestMF(source, KPacejka::MF61);
  const KMeasuredData data = Sample(source, true);
  StageLog log;
  KFitOptions o;
  o.model = KPacejka::MF61;
  o.maxIterations = 15;
  o.stageStart = StageLog::Record;
  o.user = &log;
  KFitResult r;
  ASSERT_TRUE(KFitTyre(data, o, &fitted, &r)) << r.error;
  ASSERT_EQ(log.groups.size(), 6u);
  EXPECT_EQ(log.groups[2], G::PURE_MZ);  // the moment after both forces it takes
  EXPECT_EQ(log.groups[3], G::COMBINED_FX);
  // between one stage's start and the next (or the end), only that stage's
  // group changed; at the end the ranges follow the data as well
  log.tyres.push_back(Members(fitted));
  for (size_t s = 0; s < log.groups.size(); s++) {
    int moved = 0;
    for (int m = 0; m < kpacejkaMemberCount; m++) {
      if (log.tyres[s][m] == log.tyres[s + 1][m]) continue;
      const G::Group g = kpacejkaMembers[m].group;
      if (s + 1 == log.groups.size() && g == G::RANGES) continue;
      EXPECT_EQ(g, log.groups[s]) << kpacejkaMembers[m].name << " moved in stage " << s;
      moved++;
    }
    EXPECT_GT(moved, 0) << "stage " << s;
  }
}

TEST(FitMirror, NegatesOneOutputAndKeepsTheOthers) {
  KPacejka pac, mf;
  SetTouringPac96(pac);
  SetTestMF(mf, KPacejka::MF61);
  for (KPacejka *t : {&pac, &mf}) {
    for (int which = 1; which <= 3; which++) {
      const bool fy = which & 1, mz = which & 2;
      KPacejka m;
      KFitCopy(*t, &m);
      KFitMirror(m, fy, mz);
      for (double kappa : {0.0, 0.08}) {
        for (double alpha : {-0.1, 0.02, 0.2}) {
          for (double gamma : {-0.05, 0.03}) {
            Evaluate(*t, 4500, kappa, alpha, gamma);
            Evaluate(m, 4500, kappa, alpha, gamma);
            const std::string at = std::string(t->GetModelName()) + " " + std::to_string(which);
            EXPECT_FLOAT_EQ(m.Fx, t->Fx) << at;
            EXPECT_NEAR(m.Fy, fy ? -t->Fy : t->Fy, 1e-3 + 1e-5 * fabsf(t->Fy)) << at;
            EXPECT_NEAR(m.Mz, mz ? -t->Mz : t->Mz, 1e-3 + 1e-5 * fabsf(t->Mz)) << at;
          }
        }
      }
    }
  }
  // the usual signs: the touring set is the reference
  EXPECT_EQ(KFitTyreSlopeSign(pac, 4000, KCH_FY), KFitUsualSign(KCH_FY));
  EXPECT_EQ(KFitTyreSlopeSign(pac, 4000, KCH_MZ), KFitUsualSign(KCH_MZ));
}

TEST(FitTyre, RecoversKnownTyresFromTheBuiltinStart) {
  // Pacejka89/96 and a mirrored Magic Formula 6.1 file, with 1 % noise,
  // checked noise-free at loads between the fitted ones
  struct Case { const char *file; int model; };
  const Case cases[] = {{nullptr, KPacejka::PAC96}, {"MagicFormula61_Parameters.tir", KPacejka::MF61}};
  for (const Case &c : cases) {
    KPacejka source, fitted;
    if (c.file) {
      ReportCapture quiet;
      source.LoadFromTirFile((std::string(TYRO_SOURCE_DIR "/data/tyres/") + c.file).c_str());
    } else {
      SetTouringPac96(source);
    }
    KMeasuredData data = Sample(source, c.model != KPacejka::PAC96);
    std::mt19937 rng(7);
    std::normal_distribution<double> noise(0.0, 0.01);
    for (KMeasuredPoint &p : data.points)
      for (double &f : p.force) f += noise(rng) * (fabs(f) + 1.0);
    KFitOptions o;
    o.model = c.model;
    KFitResult r;
    ASSERT_TRUE(KFitTyre(data, o, &fitted, &r)) << r.error;
    EXPECT_EQ(r.mirrored[KCH_FY], c.file != nullptr);
    KSamplePlan plan;
    plan.loads = {3250, 4750};
    plan.cambers = {-0.05, 0, 0.05};
    plan.combined = c.model != KPacejka::PAC96;
    KMeasuredData check;
    KSampleTyre(source, plan, &check);
    KFitChannelStats s[KCH_COUNT];
    KFitEvaluate(fitted, check, s, !KFitHasCombined(c.model));
    EXPECT_LE(s[KCH_FX].rmsPercent, 2.0) << c.model;
    EXPECT_LE(s[KCH_FY].rmsPercent, 2.0) << c.model;
    EXPECT_LE(s[KCH_MZ].rmsPercent, 5.0) << c.model;
    // signs included: the fitted tyre points where the source does
    Evaluate(source, 4000, 0, 0.05, 0);
    const float fy = source.Fy;
    Evaluate(fitted, 4000, 0, 0.05, 0);
    EXPECT_EQ(fitted.Fy > 0, fy > 0);
  }
}

TEST(FitStart, CurvatureFollowsTheLoad) {
  // a Pacejka89/96 tyre whose Fx and Fy curvature grow with the load: the
  // built-in start carries the trend into the load terms of E of both
  // families (Pacejka89/96 per kN, Magic Formula per (Fz − Fz0)/Fz0, Fz0 at
  // the mean load of 4 kN)
  KPacejka source, start;
  SetTouringPac96(source);
  source.b6 = 0, source.b7 = 0.15f, source.b8 = -0.2f;  // E of Fx 0.18 ... 0.63 over 2.5 ... 5.5 kN
  source.a6 = 0.1f, source.a7 = 0.0f;                   // E of Fy 0.25 ... 0.55
  const KMeasuredData data = Sample(source, false);
  KFitBuiltinStart(KPacejka::PAC96, data, &start);
  EXPECT_NEAR(start.b7, 0.15, 0.05);
  EXPECT_NEAR(start.a6, 0.1, 0.04);
  KFitBuiltinStart(KPacejka::MF61, data, &start);
  EXPECT_NEAR(start.pex2, 0.6, 0.2);
  EXPECT_NEAR(start.pey2, 0.4, 0.16);
}

TEST(FitTyre, StartsFromAGivenTyreAndRefusesWhatItCannotFit) {
  KPacejka source, fitted;
  SetTouringPac96(source);
  const KMeasuredData data = Sample(source, false);
  KFitOptions o;
  o.model = KPacejka::PAC96;
  o.start = &source;  // already the answer: nothing to gain
  KFitResult r;
  ASSERT_TRUE(KFitTyre(data, o, &fitted, &r)) << r.error;
  for (int ch = 0; ch < KCH_COUNT; ch++) EXPECT_LT(r.channel[ch].rmsPercent, 1e-3) << ch;
  EXPECT_TRUE(r.pureOnly);
  EXPECT_EQ(fitted.fzMin, 2500.0f);  // the ranges follow the data
  EXPECT_EQ(fitted.fzMax, 5500.0f);

  ReportCapture cap;
  o.model = KPacejka::MF61;  // a Pacejka89/96 start for a Magic Formula fit
  EXPECT_FALSE(KFitTyre(data, o, &fitted, &r));
  EXPECT_EQ(r.error, "the start tyre is Pacejka89/96, not of the family of Magic Formula 6.1");
  o.start = nullptr;
  o.model = KPacejka::PAC2006;
  EXPECT_FALSE(KFitTyre(data, o, &fitted, &r));
  EXPECT_EQ(r.error, "model 2 cannot be fitted (pac96, mf52 or mf61)");
  o.model = KPacejka::PAC96;
  EXPECT_FALSE(KFitTyre(KMeasuredData(), o, &fitted, &r));
  EXPECT_EQ(r.error, "no data points");
  EXPECT_EQ(cap.errors, std::string("the start tyre is Pacejka89/96, not of the family of Magic Formula 6.1\n") +
                            "model 2 cannot be fitted (pac96, mf52 or mf61)\nno data points\n");
}

// The Jacobian's columns run side by side on worker threads; each column is
// formed alone, so any number of threads gives the same fit to the bit (a
// column written into another's place, or a worker sharing a tyre with the
// next, would not).
TEST(FitTyre, AnyNumberOfThreadsGivesTheSameFit) {
  KPacejka source;
  SetTestMF(source, KPacejka::MF61);
  const KMeasuredData data = Sample(source, true);
  std::vector<double> first;
  for (int threads : {1, 3}) {
    KPacejka fitted;
    KFitOptions o;
    o.model = KPacejka::MF61;
    o.maxIterations = 8;
    o.threads = threads;
    KFitResult r;
    ASSERT_TRUE(KFitTyre(data, o, &fitted, &r)) << r.error;
    if (first.empty()) first = Members(fitted);
    else EXPECT_TRUE(first == Members(fitted)) << threads << " threads";
  }
}

// A fit on another thread: one channel's stages alone, quiet (nothing to
// the reporters), and a cancel flag that stops it at the next iteration.
TEST(FitTyre, OneChannelQuietAndCancelled) {
  KPacejka source, fitted;
  SetTestMF(source, KPacejka::MF61);
  const KMeasuredData data = Sample(source, true);
  StageLog log;
  KFitOptions o;
  o.model = KPacejka::MF61;
  o.maxIterations = 10;
  o.channel = KCH_FY;
  o.stageStart = StageLog::Record;
  o.user = &log;
  KFitResult r;
  ASSERT_TRUE(KFitTyre(data, o, &fitted, &r)) << r.error;
  ASSERT_EQ(log.groups.size(), 2u);
  EXPECT_EQ(log.groups[0], G::PURE_FY);
  EXPECT_EQ(log.groups[1], G::COMBINED_FY);
  // Cancelled from the first iteration on: false, "cancelled", and quiet
  // says nothing, not even about a start it cannot use.
  std::atomic<bool> cancel{false};
  struct Stopper {
    static void At(void *user, const KFitProgress &) { static_cast<std::atomic<bool> *>(user)->store(true); }
  };
  o = KFitOptions();
  o.model = KPacejka::MF61;
  o.cancel = &cancel;
  o.progress = Stopper::At;
  o.user = &cancel;
  o.quiet = true;
  ReportCapture cap;
  EXPECT_FALSE(KFitTyre(data, o, &fitted, &r));
  EXPECT_EQ(r.error, "cancelled");
  EXPECT_LE(r.iterations, 3 * 2);  // a solve or two of the first stage's shape starts, one iteration each
  KPacejka pac96;
  SetTouringPac96(pac96);
  o.start = &pac96;
  EXPECT_FALSE(KFitTyre(data, o, &fitted, &r));
  EXPECT_EQ(cap.errors, "");
  EXPECT_EQ(cap.warnings, "");
}
