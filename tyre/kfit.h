// Fitting a tyre model to measured data: staged, bounded least squares.
//
// The stages run in a fixed order (kFitStages in kfit_stages.cpp): pure
// longitudinal force, pure lateral force, aligning moment, then, for the
// Magic Formula models, the combined-slip weighting of each. A stage varies
// only the coefficients of its own group of the member table (family, group,
// fitMin/fitMax of KPacejkaMember) and keeps everything the earlier stages
// found. The function fitted is the model itself, in single precision, at
// the operating point `tyrograph-cli eval` sets, evaluated through the
// vector batch (tyre/kpacejka_batch.h: within a few ulps of Calculate); the
// Jacobian's columns (forward differences) run in parallel over the
// parameters. The figures of the result come from the exact core, so they
// are what `eval` gives for the fitted tyre.
//
// Worker threads only evaluate; what the evaluations found is reported on
// the calling thread.
//
// Lateral force and aligning moment whose slope at small slip angle has the
// opposite sign to the usual one (Fy rising, Mz falling with the slip angle,
// as the Pacejka89/96 sets and most TIR files have it) are fitted mirrored
// and the fitted tyre mirrored back (kfit_mirror.cpp); the result says so.
//
// No printing here: progress goes to a callback, problems to the reporters
// and into KFitResult::error.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "tyre/kmeasured.h"
#include "tyre/kpacejka.h"

// One stage of the fit.
struct KFitStage {
  KPacejkaMember::Group group;  // the coefficients it varies (named by KPacejkaGroupName)
  int channel;                  // the channel it fits (KCH_FX ...)
  bool combined;                // fits the points with both slips non-zero
};

// The stages that run for `model`, in order; returns their number.
int KFitStagesFor(int model, const KFitStage *stages[], int maxStages);
// The pressure stages (Fx, Fy, Mz: ppx, ppy, ppz), run after the pure
// stages when the data holds two or more pressure set points; returns
// their number (0 for a model without pressure terms).
int KFitPressureStagesFor(int model, const KFitStage *stages[], int maxStages);
// The pressures (Pa) of the data's points, clustered within 2 %: the
// set points, each with its point count, most points first. Points without
// a pressure are left out; of two with as many points the higher first.
struct KFitPressureSetPoint {
  double pressure;
  int points;
};
std::vector<KFitPressureSetPoint> KFitPressureSetPoints(const KMeasuredData &data);
// The pressure (Pa) the pure stages fit at, whose points are those within
// 2 % of it: with two or more pressure set points and a tyre with a nominal
// pressure, the set point nearest that pressure (a start tyre's NOMPRES
// need not be one the rig ran at); else 0, every point.
double KFitStagePressure(const KMeasuredData &data, const KTyreParams &tyre);
// Whether stage `s` of a fit to `model` varies member `m`, and its bounds.
bool KFitVaries(int model, const KFitStage &s, const KPacejkaMember &m, float *lo, float *hi);

// A report from a running fit: once per solver iteration.
struct KFitProgress {
  const char *stage;
  int stageIndex, stageCount;
  int iteration;  // within the stage
  double cost;    // half the sum of squared residuals, each divided by the channel's peak
};
typedef void (*KFitProgressFn)(void *user, const KFitProgress &progress);
// Called at the start of each stage with the tyre as the earlier stages left it.
typedef void (*KFitStageFn)(void *user, const KFitStage &stage, const KPacejka &tyre);

// How the residuals (each divided by its channel's peak) count.
enum KFitLoss : int {
  KFIT_LOSS_NONE,    // plain least squares
  KFIT_LOSS_HUBER,   // squares within lossScale, linear beyond: outliers pull less
  KFIT_LOSS_CAUCHY,  // log(1 + (r/lossScale)²): outliers pull hardly at all
};
// "none", "huber", "cauchy" (any case) -> loss; false for anything else.
bool KFitLossByName(const char *name, KFitLoss *loss);
const char *KFitLossKey(KFitLoss loss);

struct KFitOptions {
  int model = KPacejka::MF61;       // PAC96, MF52 or MF61
  // null: KFitBuiltinStart. A start of the fitted model's family is taken as
  // it is; a stage whose channel it already reproduces exactly leaves it so.
  const KPacejka *start = nullptr;
  int maxIterations = 200;          // per stage
  int threads = 0;                  // for the Jacobian: 0 one per core, 1 the calling thread alone
  KFitLoss loss = KFIT_LOSS_HUBER;
  double lossScale = 0.05;          // of the channel's peak: residuals beyond it are outliers
  // Each channel's residuals are multiplied by its weight; 0 leaves the
  // channel unfitted (its coefficients stay at the start). The stages fit one
  // channel each, so a weight otherwise shifts only where the robust loss
  // takes a residual for an outlier.
  double weight[KCH_COUNT] = {1, 1, 1};
  // Data without combined points leaves the combined-slip terms at generic
  // values (each force falls as the other slip grows); false: at none (the
  // forces ignore the other slip, as a Pacejka89/96 source's do).
  bool genericCombined = true;
  KFitProgressFn progress = nullptr;
  KFitStageFn stageStart = nullptr;
  void *user = nullptr;
  // Only the stages that fit this channel (KCH_FX ...); -1 every stage.
  int channel = -1;
  // Set from another thread, it stops the fit at the solver's next
  // iteration; KFitTyre then returns false with the error "cancelled".
  const std::atomic<bool> *cancel = nullptr;
  // Reports nothing (a fit on a worker thread): problems only in the result.
  bool quiet = false;
};

// How well a tyre reproduces one channel of the data.
struct KFitChannelStats {
  int points = 0;          // 0: the data has no such channel
  double rms = 0;          // N or N·m
  double peak = 0;         // largest |value| in the data
  double rmsPercent = 0;   // rms / peak × 100
  double r2 = 0;           // 1 − residual / total sum of squares
};

struct KFitResult {
  KFitChannelStats channel[KCH_COUNT];
  int iterations = 0;                       // solver iterations, all stages
  double seconds = 0;                       // wall time of the fit
  bool mirrored[KCH_COUNT] = {false, false, false};  // Fy / Mz fitted mirrored
  // Only pure slip was fitted: the model has no combined-slip terms
  // (Pacejka89/96: Fx ignores the slip angle, Fy and Mz the slip ratio), or
  // the data has no combined points. Each channel's figures then cover only
  // the points where its other slip is zero.
  bool pureOnly = false;
  // The model has combined-slip terms but the data no combined points: they
  // keep generic values (KFIT_COMBINED_NOT_IDENTIFIED says so).
  bool combinedNotIdentified = false;
  // Coefficients not fitted because the data cannot tell them (kept at the
  // start's value: generic for the built-in start), each with the reason.
  struct Held {
    std::string name;  // member name, lower case
    const char *why;   // KFIT_HELD_CAMBER or KFIT_HELD_LOAD
  };
  std::vector<Held> held;
  // Fitted coefficients that ended their stage at a bound of their range.
  struct AtBound {
    std::string name;
    double value;
    bool upper;
  };
  std::vector<AtBound> atBound;
  // Inflation pressure: the data's pressure set points (empty when no point
  // has a pressure), the pressure stages that ran (0: one pressure only, or
  // a model without pressure terms), and the nominal pressure the pure
  // stages fitted at, taken from the start tyre's NOMPRES when it has one,
  // else the set point with the most points.
  std::vector<KFitPressureSetPoint> pressures;
  int pressureStages = 0;
  double nominalPressure = 0;     // Pa; 0 when no pressure stage ran
  bool nominalFromStart = false;  // NOMPRES was the start tyre's
  double stagePressure = 0;       // Pa: the set point the pure stages fitted at (KFitStagePressure)
  std::string error;
};

constexpr const char *KFIT_COMBINED_NOT_IDENTIFIED = "combined slip not identified (no combined points)";
constexpr const char *KFIT_HELD_CAMBER = "camber term, the data has one camber";
constexpr const char *KFIT_HELD_LOAD = "load term, the data has one load";

// What the fit did with the data's pressures, in words (KFitResult: the
// set points, the stages, NOMPRES and how it was chosen, or why no
// pressure stage ran); "" when no point has a pressure.
std::string KFitPressureNote(const KFitResult &result, int model);

// "pac96", "mf52", "mf61" (any case) -> model number; false for anything else.
bool KFitModelByName(const char *name, int *model);
const char *KFitModelKey(int model);

// Fits `out` (any previous content replaced) to `data`. False with
// result->error when the model or data cannot be fitted.
bool KFitTyre(const KMeasuredData &data, const KFitOptions &options, KPacejka *out, KFitResult *result);

// The starting set for `model` when the caller gives none: generic shape
// factors, with friction, slip stiffness, trail and nominal load estimated
// from the data.
void KFitBuiltinStart(int model, const KMeasuredData &data, KPacejka *out);

// A second start for stage `stage` of a fit from the built-in start: the
// stage's coefficients read off `data` (in the usual signs) with the earlier
// stages' result in `tyre` (the aligning moment takes the fitted lateral
// force). False when it has none for the stage (`tyre` unchanged).
bool KFitStageStart(const KMeasuredData &data, const KFitStage &stage, KPacejka *tyre);

// Fits the members named `names` of `tyre` (bounds from the member table)
// to channel `channel` of `points` by plain least squares, from their
// current values; returns the RMS residual over the channel's peak.
double KFitMembers(KPacejka *tyre, const std::vector<const KMeasuredPoint *> &points, int channel,
                   const std::vector<const char *> &names, int maxIterations);

// Evaluates `tyre` at every point of `data` (as eval does) and compares;
// with `pureOnly`, Fx only where the slip angle is 0 and Fy, Mz only where
// the slip ratio is 0.
void KFitEvaluate(const KTyreParams &tyre, const KMeasuredData &data, KFitChannelStats stats[KCH_COUNT],
                  bool pureOnly = false);
// Whether `model` has combined-slip terms to fit.
bool KFitHasCombined(int model);

// Every named member of `from` into `to`, through the member table.
void KFitCopy(const KPacejka &from, KPacejka *to);

// The coefficients `data` cannot tell apart from the others for a fit from
// `start` (its model and values): camber terms when the data has one camber,
// Magic Formula load terms when it has one load.
void KFitHeldTerms(const KPacejka &start, const KMeasuredData &data, std::vector<KFitResult::Held> *held);

// ---- Sign conventions (kfit_mirror.cpp) ----------------------------------------
// +1 or −1: the sign of the slope of `channel` (KCH_FY or KCH_MZ) over small
// slip angles in the data's pure lateral points; 0 when it cannot be told.
int KFitDataSlopeSign(const KMeasuredData &data, int channel);
// The same for a tyre at load `fz` (N), no camber.
int KFitTyreSlopeSign(const KTyreParams &tyre, double fz, int channel);
// The usual sign of each channel's slope: Fy +1, Mz −1.
int KFitUsualSign(int channel);
// Changes the sign of Fy and/or Mz of `tyre` at every operating point,
// leaving the other outputs as they are.
void KFitMirror(KPacejka &tyre, bool fy, bool mz);

// ---- Converting (kfit_convert.cpp) -------------------------------------------------
// Loads of the samples convert fits.
constexpr int KFIT_CONVERT_LOADS = 5;
// Samples `source` over its own ranges (KSamplePlanFor with
// KFIT_CONVERT_LOADS loads) and fits the sample; `samples` (may be null)
// receives the points.
bool KFitConvert(const KTyreParams &source, const KFitOptions &options, KPacejka *out, KFitResult *result,
                 KMeasuredData *samples = nullptr);
