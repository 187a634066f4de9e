// The fitter: stage order and membership, that each stage moves only its own
// group, mirroring, refusals, the built-in start's curvature over the load,
// and recovery of known tyres on a small set
// (tests/fitaccuracy sweeps every bundled tyre).
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
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
  // group changed; at the end the ranges follow the data as well, and the
  // closing fit of the moment over all its points moves its pure terms
  log.tyres.push_back(Members(fitted));
  for (size_t s = 0; s < log.groups.size(); s++) {
    int moved = 0;
    for (int m = 0; m < kpacejkaMemberCount; m++) {
      if (log.tyres[s][m] == log.tyres[s + 1][m]) continue;
      const G::Group g = kpacejkaMembers[m].group;
      if (s + 1 == log.groups.size() && (g == G::RANGES || g == G::PURE_MZ)) continue;
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

// ---- What the data cannot tell, bounds, weights, the robust loss --------------

namespace {

// `d` with only the points whose `field` equals `value` (others dropped).
KMeasuredData Only(const KMeasuredData &d, double KMeasuredPoint::*field, double value) {
  KMeasuredData out = d;
  out.points.clear();
  for (const KMeasuredPoint &p : d.points)
    if (p.*field == value) out.points.push_back(p);
  return out;
}

bool Holds(const KFitResult &r, const char *name, const char *why) {
  for (const KFitResult::Held &h : r.held)
    if (h.name == name) return !strcmp(h.why, why);
  return false;
}

}  // namespace

TEST(FitHeld, OneCamberOrOneLoadHoldsWhatItCannotTell) {
  KPacejka source, fitted, start;
  SetTestMF(source, KPacejka::MF61);
  const KMeasuredData all = Sample(source, false);
  // 1. the terms themselves: camber terms change nothing at zero camber,
  //    Magic Formula load terms nothing at the nominal load
  KFitBuiltinStart(KPacejka::MF61, all, &start);
  std::vector<KFitResult::Held> held;
  KFitHeldTerms(start, all, &held);
  EXPECT_TRUE(held.empty());  // three loads, three cambers
  const KMeasuredData flat = Only(all, &KMeasuredPoint::gamma, 0.0);
  KFitBuiltinStart(KPacejka::MF61, flat, &start);
  KFitHeldTerms(start, flat, &held);
  std::vector<std::string> names;
  for (const KFitResult::Held &h : held) {
    names.push_back(h.name);
    EXPECT_STREQ(h.why, KFIT_HELD_CAMBER) << h.name;
  }
  for (const char *n : {"pdx3", "pdy3", "pky3", "phy3", "pvy3", "pvy4", "qbz5", "qdz3", "qdz8", "qhz3", "ssz3"})
    EXPECT_NE(std::find(names.begin(), names.end(), n), names.end()) << n;
  for (const char *n : {"pdx1", "pdx2", "pdy1", "pky1", "qbz1", "qdz1", "rbx1"})
    EXPECT_EQ(std::find(names.begin(), names.end(), n), names.end()) << n;
  // 2. one load: the load terms of a Magic Formula fit, none of Pacejka89/96's
  const KMeasuredData one = Only(all, &KMeasuredPoint::fz, 4000);
  KFitBuiltinStart(KPacejka::MF61, one, &start);
  KFitHeldTerms(start, one, &held);
  names.clear();
  for (const KFitResult::Held &h : held) names.push_back(h.name);
  for (const char *n : {"pdx2", "pkx2", "pdy2", "pey2", "qbz2", "qdz2", "qdz7"})
    EXPECT_NE(std::find(names.begin(), names.end(), n), names.end()) << n;
  EXPECT_EQ(std::find(names.begin(), names.end(), "pdx1"), names.end());
  KFitBuiltinStart(KPacejka::PAC96, one, &start);
  KFitHeldTerms(start, one, &held);
  EXPECT_TRUE(held.empty());
  // 3. a fit keeps them at the start (0) and says why
  KFitOptions o;
  o.model = KPacejka::MF61;
  o.maxIterations = 30;
  KFitResult r;
  ASSERT_TRUE(KFitTyre(flat, o, &fitted, &r)) << r.error;
  EXPECT_TRUE(Holds(r, "pdy3", KFIT_HELD_CAMBER));
  EXPECT_EQ(fitted.pdy3, 0.0f);
  EXPECT_EQ(fitted.qbz5, 0.0f);
  EXPECT_NE(fitted.pdy1, start.pdy1);
}

TEST(FitTyre, CombinedSlipWithoutCombinedPointsStaysGeneric) {
  KPacejka source, fitted;
  SetTestMF(source, KPacejka::MF61);
  KFitOptions o;
  o.model = KPacejka::MF61;
  o.maxIterations = 20;
  KFitResult r;
  ASSERT_TRUE(KFitTyre(Sample(source, false), o, &fitted, &r)) << r.error;
  EXPECT_TRUE(r.pureOnly);
  EXPECT_TRUE(r.combinedNotIdentified);
  EXPECT_GT(fitted.rbx1, 1.0f);
  EXPECT_GT(fitted.rby1, 1.0f);
  Evaluate(fitted, 4000, 0.05, 0, 0);
  const float pure = fitted.Fx;
  Evaluate(fitted, 4000, 0.05, 0.1, 0);
  EXPECT_LT(fitted.Fx, 0.95f * pure);  // Fx falls under side slip
  // a source without combined slip converts to a tyre without it
  o.genericCombined = false;
  ASSERT_TRUE(KFitTyre(Sample(source, false), o, &fitted, &r)) << r.error;
  EXPECT_FALSE(r.combinedNotIdentified);
  EXPECT_EQ(fitted.rbx1, 0.0f);
  // with combined points they are fitted
  o.genericCombined = true;
  ASSERT_TRUE(KFitTyre(Sample(source, true), o, &fitted, &r)) << r.error;
  EXPECT_FALSE(r.pureOnly);
  EXPECT_FALSE(r.combinedNotIdentified);
}

TEST(FitTyre, BoundsWeightsAndTheRobustLoss) {
  // 1. friction beyond the range of pdx1 (3): the fit ends at the bound and says so
  KPacejka source, fitted;
  SetTestMF(source, KPacejka::MF61);
  source.pdx1 = 3.6f, source.pdx2 = 0, source.pdx3 = 0;
  KMeasuredData fx = Sample(source, false);
  fx.has[KCH_FY] = fx.has[KCH_MZ] = false;
  KFitOptions o;
  o.model = KPacejka::MF61;
  o.maxIterations = 40;
  KFitResult r;
  ASSERT_TRUE(KFitTyre(fx, o, &fitted, &r)) << r.error;
  bool pdx1 = false;
  for (const KFitResult::AtBound &b : r.atBound) pdx1 = pdx1 || (b.name == "pdx1" && b.upper && b.value == 3.0);
  EXPECT_TRUE(pdx1);
  // 2. a channel weighted 0 keeps its start
  KPacejka start;
  SetTestMF(source, KPacejka::MF61);
  const KMeasuredData data = Sample(source, false);
  KFitBuiltinStart(KPacejka::MF61, data, &start);
  o.weight[KCH_MZ] = 0;
  ASSERT_TRUE(KFitTyre(data, o, &fitted, &r)) << r.error;
  EXPECT_EQ(fitted.qdz1, start.qdz1);
  EXPECT_EQ(fitted.qbz1, start.qbz1);
  EXPECT_NE(fitted.pdy1, start.pdy1);
  o.weight[KCH_MZ] = -1;
  {
    ReportCapture quiet;
    EXPECT_FALSE(KFitTyre(data, o, &fitted, &r));
  }
  EXPECT_EQ(r.error, "a channel weight is negative");
  o.weight[KCH_MZ] = 1;
  // 3. lateral force with a few wild points (half the peak off): the robust
  //    losses stay near the tyre, plain squares are pulled away
  KPacejka pac;
  SetTouringPac96(pac);
  KMeasuredData fy = Sample(pac, false);
  fy.has[KCH_FX] = fy.has[KCH_MZ] = false;
  KMeasuredData wild = fy;
  std::mt19937 rng(3);
  for (int i = 0; i < 12; i++) {
    KMeasuredPoint &p = wild.points[rng() % wild.points.size()];
    p.force[KCH_FY] += (i % 2 ? 1 : -1) * 3000.0;
  }
  o.model = KPacejka::PAC96;
  o.maxIterations = 200;
  double err[3];
  const KFitLoss losses[] = {KFIT_LOSS_NONE, KFIT_LOSS_HUBER, KFIT_LOSS_CAUCHY};
  for (int l = 0; l < 3; l++) {
    o.loss = losses[l];
    ASSERT_TRUE(KFitTyre(wild, o, &fitted, &r)) << r.error;
    KFitChannelStats s[KCH_COUNT];
    KFitEvaluate(fitted, fy, s, true);
    err[l] = s[KCH_FY].rmsPercent;
  }
  EXPECT_LT(err[1], 0.5 * err[0]) << err[0] << " " << err[1];
  EXPECT_LT(err[2], 0.5 * err[0]) << err[0] << " " << err[2];
  KFitLoss loss;
  EXPECT_TRUE(KFitLossByName("Cauchy", &loss) && loss == KFIT_LOSS_CAUCHY);
  EXPECT_STREQ(KFitLossKey(KFIT_LOSS_HUBER), "huber");
  EXPECT_FALSE(KFitLossByName("l1", &loss));
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

// The aligning moment from the built-in start: a Magic Formula 6.1 file with
// its main coefficients scaled by 0.9 ... 1.1, noise-free pure sweeps at
// four loads and two cambers, fitted and checked at the loads between (the
// case where the moment used to stop at 3.6 % of its peak).
TEST(FitStart, TheMomentReachesTheDataFromTheBuiltinStart) {
  KPacejka source, fitted;
  {
    ReportCapture quiet;
    ASSERT_TRUE(source.LoadFromTirFile(TYRO_SOURCE_DIR "/data/tyres/MagicFormula61_Parameters.tir"));
  }
  const NamedValue scale[] = {{"pdy1", 1.06}, {"pky1", 0.93}, {"pcx1", 1.04}, {"pdx1", 0.95},
                              {"qbz1", 1.08}, {"pey1", 0.92}, {"qdz1", 1.1},  {"pkx1", 0.9}};
  for (const NamedValue &v : scale) {
    const KPacejkaMember *m = KPacejkaFindMember(v.name);
    KPacejkaSetMember(source, *m, KPacejkaGetMember(source, *m) * v.value);
  }
  KSamplePlan plan;
  plan.loads = {2000, 3500, 5000, 6500};
  plan.cambers = {0, 0.05};
  plan.steps = 25;
  KMeasuredData data, check;
  KSampleTyre(source, plan, &data);
  KFitOptions o;
  o.model = KPacejka::MF61;
  KFitResult r;
  ASSERT_TRUE(KFitTyre(data, o, &fitted, &r)) << r.error;
  plan.loads = {2750, 4250, 5750};
  KSampleTyre(source, plan, &check);
  KFitChannelStats s[KCH_COUNT];
  KFitEvaluate(fitted, check, s, true);
  EXPECT_LE(s[KCH_FX].rmsPercent, 1.0);
  EXPECT_LE(s[KCH_FY].rmsPercent, 1.0);
  EXPECT_LE(s[KCH_MZ].rmsPercent, 1.0);
}
