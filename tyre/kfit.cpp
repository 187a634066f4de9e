// KFitTyre: the staged fit, one bounded least-squares problem per stage,
// solved by Ceres (Levenberg-Marquardt with bounds).
//
//   [1] model names, a stage's points as the batch takes them
//   [2] the stage problem: residuals and their forward differences
//   [3] one stage: its points, a grid of shape factors, the solver
//   [4] ranges
//   public: names, copying, figures, KFitTyre (signs, start, stages, ranges)
#include "tyre/kfit.h"

#include <ceres/ceres.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <strings.h>
#include <thread>
#include <vector>

#include "diag/qdebug.h"
#include "tyre/kpacejka_batch.h"

namespace {

// Set while a quiet fit runs on this thread: the batch's issues go unreported.
thread_local bool t_quiet = false;

void Report(const KBatchIssues &issues) {
  if (!t_quiet) KBatchReport(issues);
}

bool Cancelled(const KFitOptions &o) { return o.cancel && o.cancel->load(std::memory_order_relaxed); }

// ---- [1] model names, evaluation at a point ------------------------------------

struct ModelKey {
  const char *key;
  int model;
};
const ModelKey kModelKeys[] = {
    {"pac96", KPacejka::PAC96}, {"mf52", KPacejka::MF52}, {"mf61", KPacejka::MF61}};

// Points of one channel as the batch takes them (the operating point
// rounded to float, as tyrograph-cli eval reads it), with the measured values.
struct ChannelPoints {
  int channel = KCH_FX;
  std::vector<float> fz, kappa, alpha, gamma;
  std::vector<float> pressure;  // Pa; empty when no point has one
  std::vector<double> measured;
  size_t size() const { return fz.size(); }
};

template <class Points, class Get>
ChannelPoints MakeChannelPoints(const Points &points, int channel, Get get) {
  ChannelPoints c;
  c.channel = channel;
  for (const auto &item : points) {
    const KMeasuredPoint &p = get(item);
    c.fz.push_back(float(p.fz)), c.kappa.push_back(float(p.kappa));
    c.alpha.push_back(float(p.alpha)), c.gamma.push_back(float(p.gamma));
    c.measured.push_back(p.force[channel]);
    c.pressure.push_back(float(p.pressure));
  }
  if (std::all_of(c.pressure.begin(), c.pressure.end(), [](float p) { return p == 0; })) c.pressure.clear();
  return c;
}

// The channel of `tyre` at every point into `out`; what went wrong into
// `issues`, for the calling thread to report (this may run on a worker).
void EvaluateChannel(const KTyreParams &tyre, const ChannelPoints &c, float *out, KBatchIssues *issues,
                     KBatchMode mode = KBATCH_FAST) {
  KTyreEvaluateBatchAtPressure(tyre, c.size(), c.fz.data(), c.kappa.data(), c.alpha.data(), c.gamma.data(),
                               c.pressure.empty() ? nullptr : c.pressure.data(), c.channel == KCH_FX ? out : nullptr,
                               c.channel == KCH_FY ? out : nullptr, c.channel == KCH_MZ ? out : nullptr, mode,
                               issues);
}

// ---- [2] the stage problem ------------------------------------------------------------

// Step of the forward differences, in scaled units (a parameter's start
// magnitude, see RunStage). The model works in single precision: a step of
// 1e-3 changes the outputs by a few thousand float epsilons, far above the
// rounding, and is still small against the curvature of the curves.
constexpr double DIFF_STEP = 1e-3;

// Threads for the Jacobian's columns: KFitOptions::threads, 0 one per core.
int JacobianThreads(const KFitOptions &o) {
  if (o.threads > 0) return o.threads;
  const unsigned cores = std::thread::hardware_concurrency();
  return cores ? int(cores) : 1;
}

// The residuals of one stage: (model − measured) / peak for each of its
// points, over the scaled parameters x (member value = x · scale), with
// the Jacobian by forward differences. Each evaluation takes its own copy of
// the tyre's coefficients, so the columns can run side by side.
class StageCost : public ceres::CostFunction {
 public:
  // `pointWeight` (empty: all 1) multiplies each point's residual.
  StageCost(const KTyreParams &tyre, const std::vector<const KPacejkaMember *> &members,
            const std::vector<double> &scale, const ChannelPoints &points, double peak, int threads,
            const std::vector<double> &pointWeight = {})
      : tyre_(tyre), members_(members), scale_(scale), points_(points), peak_(peak),
        threads_(std::max(1, std::min(threads, int(members.size())))), pointWeight_(pointWeight) {
    factor_.resize(points.size());
    slope_.resize(points.size());
    for (size_t i = 0; i < points.size(); i++) {
      factor_[i] = Weight(i) / peak_;
      slope_[i] = factor_[i] / DIFF_STEP;
    }
    set_num_residuals(int(points.size()));
    mutable_parameter_block_sizes()->push_back(int(members.size()));
  }

  bool Evaluate(double const *const *parameters, double *residuals, double **jacobians) const override {
    const double *x = parameters[0];
    const size_t P = members_.size(), N = points_.size();
    // 1. the residuals at x
    KTyreParams at = tyre_;
    for (size_t j = 0; j < P; j++) Set(&at, j, x[j]);
    std::vector<float> out(N);
    KBatchIssues issues;
    EvaluateChannel(at, points_, out.data(), &issues);
    for (size_t i = 0; i < N; i++) residuals[i] = (double(out[i]) - points_.measured[i]) * factor_[i];
    Report(issues);
    // 2. the Jacobian, a column per parameter: column j on worker j % threads
    //    (worker 0 is this thread); the workers only evaluate
    if (jacobians && jacobians[0]) {
      double *jac = jacobians[0];
      std::vector<KBatchIssues> found(P);
      auto columns = [&](size_t first) {
        std::vector<float> plus(N);
        for (size_t j = first; j < P; j += size_t(threads_)) {
          KTyreParams moved = at;
          Set(&moved, j, x[j] + DIFF_STEP);
          EvaluateChannel(moved, points_, plus.data(), &found[j]);
          // (model + change − model) · factor / step: the measured value drops out
          for (size_t i = 0; i < N; i++) jac[i * P + j] = (double(plus[i]) - double(out[i])) * slope_[i];
        }
      };
      std::vector<std::thread> workers;
      for (int w = 1; w < threads_; w++) workers.emplace_back(columns, size_t(w));
      columns(0);
      for (std::thread &t : workers) t.join();
      for (const KBatchIssues &f : found) Report(f);
    }
    for (size_t i = 0; i < N; i++)
      if (!std::isfinite(residuals[i])) return false;  // the solver shortens its step
    return true;
  }

 private:
  void Set(KTyreParams *t, size_t j, double x) const { *KPacejkaFloat(*t, *members_[j]) = float(x * scale_[j]); }
  double Weight(size_t i) const { return pointWeight_.empty() ? 1.0 : pointWeight_[i]; }

  const KTyreParams tyre_;
  std::vector<const KPacejkaMember *> members_;
  std::vector<double> scale_;
  const ChannelPoints &points_;
  double peak_;
  int threads_;
  std::vector<double> pointWeight_;
  std::vector<double> factor_, slope_;  // per point: weight / peak, and that over the step
};

// Forwards the solver's iterations to the caller's progress callback.
class ProgressRelay : public ceres::IterationCallback {
 public:
  ProgressRelay(const KFitOptions &o, const KFitStage &s, int index, int count)
      : options_(o), stage_(s), index_(index), count_(count) {}
  ceres::CallbackReturnType operator()(const ceres::IterationSummary &summary) override {
    if (options_.progress)
      options_.progress(options_.user,
                        {KPacejkaGroupName(stage_.group), index_, count_, summary.iteration, summary.cost});
    return Cancelled(options_) ? ceres::SOLVER_ABORT : ceres::SOLVER_CONTINUE;
  }

 private:
  const KFitOptions &options_;
  const KFitStage &stage_;
  int index_, count_;
};

// ---- [3] one stage ------------------------------------------------------------------

// The points a stage fits: those measuring its channel, pure slip for the
// pure stages (the other slip exactly 0; all points when the data has no
// pure sweep), both slips non-zero for the combined ones. With a `nominal`
// pressure (data at several pressures) the pure stages take the points at
// that pressure only, the pressure stages the pure points at every pressure.
std::vector<const KMeasuredPoint *> StagePoints(const KMeasuredData &data, const KFitStage &s, double nominal) {
  std::vector<const KMeasuredPoint *> out;
  if (!data.has[s.channel]) return out;
  const bool split = nominal > 0 && !s.combined && s.group != KPacejkaMember::PRESSURE;
  for (const KMeasuredPoint &p : data.points) {
    const bool pure = s.channel == KCH_FX ? p.alpha == 0 : p.kappa == 0;
    const bool combined = p.alpha != 0 && p.kappa != 0;
    if (split && std::fabs(p.pressure - nominal) > 0.02 * nominal) continue;
    if (s.combined ? combined : pure) out.push_back(&p);
  }
  if (out.empty() && !s.combined)
    for (const KMeasuredPoint &p : data.points) out.push_back(&p);
  return out;
}

// The shape factor C and curvature E of each pure-slip curve. The fit of a
// curve has local minima in these two (a low C with a strongly negative E
// looks like a high C with a positive one over part of the range), so each
// pure stage first tries a grid of them and starts from the best.
// The member table marks the pair of each curve (KPacejkaMember::shape).
const KPacejkaMember *ShapeMember(int model, KPacejkaMember::Group group, KPacejkaMember::Shape role) {
  const bool pac96 = model == KPacejka::PAC96;
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    if (m.shape == role && m.group == group && (m.family == KPacejkaMember::PAC96_FAMILY) == pac96) return &m;
  }
  return nullptr;
}
const float kGridC[] = {1.1f, 1.3f, 1.5f, 1.7f, 1.9f, 2.2f, 2.6f};
const float kGridE[] = {-2.0f, -1.0f, -0.5f, 0.0f, 0.3f, 0.6f, 0.9f};

double SumOfSquares(const KTyreParams &tyre, const ChannelPoints &points) {
  std::vector<float> out(points.size());
  KBatchIssues issues;
  EvaluateChannel(tyre, points, out.data(), &issues);
  Report(issues);
  double sum = 0;
  for (size_t i = 0; i < points.size(); i++) {
    const double e = double(out[i]) - points.measured[i];
    sum += e * e;
  }
  return std::isfinite(sum) ? sum : HUGE_VAL;
}

// The stage's shape pair (C, E), if it has one: the members and the grid's
// pairs ranked by the cost they give with everything else as it is (the
// current pair ranks too); at most `keep` of them.
struct ShapePair {
  float C, E;
  double cost;
};
std::vector<ShapePair> RankShapes(KPacejka *tyre, const KFitStage &s, const ChannelPoints &points, size_t keep,
                                  float **C, float **E) {
  std::vector<ShapePair> ranked;
  const KPacejkaMember *mc = ShapeMember(tyre->model, s.group, KPacejkaMember::SHAPE_C);
  const KPacejkaMember *me = ShapeMember(tyre->model, s.group, KPacejkaMember::SHAPE_E);
  *C = mc ? KPacejkaFloat(*tyre, *mc) : nullptr, *E = me ? KPacejkaFloat(*tyre, *me) : nullptr;
  if (!*C || !*E) return ranked;
  const float c0 = **C, e0 = **E;
  ranked.push_back({c0, e0, SumOfSquares(*tyre, points)});
  for (float c : kGridC) {
    for (float e : kGridE) {
      **C = std::clamp(c, mc->fitMin, mc->fitMax);
      **E = std::clamp(e, me->fitMin, me->fitMax);
      ranked.push_back({**C, **E, SumOfSquares(*tyre, points)});
    }
  }
  **C = c0, **E = e0;
  // a total order, so ties rank the same everywhere (and no stable sort's
  // scratch buffer is needed)
  std::sort(ranked.begin(), ranked.end(), [](const ShapePair &a, const ShapePair &b) {
    return a.cost != b.cost ? a.cost < b.cost : a.C != b.C ? a.C < b.C : a.E < b.E;
  });
  if (ranked.size() > keep) ranked.resize(keep);
  return ranked;
}

// The members stage `s` varies in `tyre`, each scaled by its start magnitude
// (or a hundredth of its range when it starts at or near zero).
struct StageMembers {
  std::vector<const KPacejkaMember *> member;
  std::vector<float *> value;  // the member in the tyre
  std::vector<double> scale, lo, hi;
};

// `held`: members the data cannot tell (KFitHeldTerms), left out.
StageMembers MembersOf(KPacejka *tyre, const KFitStage &s, const std::vector<KFitResult::Held> &held) {
  StageMembers m;
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    float l, h;
    if (!KFitVaries(tyre->model, s, kpacejkaMembers[i], &l, &h)) continue;
    if (std::any_of(held.begin(), held.end(), [&](const KFitResult::Held &x) { return x.name == kpacejkaMembers[i].name; }))
      continue;
    float *p = KPacejkaFloat(*tyre, kpacejkaMembers[i]);
    m.member.push_back(&kpacejkaMembers[i]);
    m.value.push_back(p);
    m.scale.push_back(std::max(std::fabs(double(*p)), 0.01 * (double(h) - double(l))));
    m.lo.push_back(l);
    m.hi.push_back(h);
  }
  return m;
}

// The solver stops when an iteration lowers the cost by less than this
// fraction: SEARCH_TOLERANCE while starts are compared (a start that loses
// need not be followed to its end), SETTLE_TOLERANCE for the result kept.
constexpr double SEARCH_TOLERANCE = 1e-6, SETTLE_TOLERANCE = 1e-8;

// One bounded least-squares solve of the stage from the members' current
// values; leaves the best values found in the tyre. Returns the iterations;
// `cost` gets the final cost.
int Solve(const KFitOptions &o, const KFitStage &s, int index, int count, KPacejka *tyre, const StageMembers &m,
          const ChannelPoints &points, double peak, double *cost, const std::vector<double> &pointWeight = {},
          double tolerance = SETTLE_TOLERANCE) {
  // 1. scaled parameters within their bounds
  std::vector<double> x;
  for (size_t j = 0; j < m.value.size(); j++)
    x.push_back(std::clamp(double(*m.value[j]), m.lo[j], m.hi[j]) / m.scale[j]);
  // 2. the problem (the cost function is the problem's to delete)
  ceres::Problem problem;
  problem.AddResidualBlock(new StageCost(*tyre, m.member, m.scale, points, peak / o.weight[s.channel],
                                         JacobianThreads(o), pointWeight),
                           nullptr, x.data());
  for (size_t j = 0; j < x.size(); j++) {
    problem.SetParameterLowerBound(x.data(), int(j), m.lo[j] / m.scale[j]);
    problem.SetParameterUpperBound(x.data(), int(j), m.hi[j] / m.scale[j]);
  }
  // 3. solve; one thread, no output of the solver's own
  ceres::Solver::Options so;
  so.linear_solver_type = ceres::DENSE_QR;
  so.max_num_iterations = o.maxIterations;
  so.num_threads = 1;
  so.logging_type = ceres::SILENT;
  so.minimizer_progress_to_stdout = false;
  // Small first steps: a long first step lands where a curvature is capped at
  // 1 and its coefficients lose their gradient, and the solver stops there.
  so.initial_trust_region_radius = 0.1;
  so.function_tolerance = tolerance;
  so.parameter_tolerance = 1e-8;
  ProgressRelay relay(o, s, index, count);
  so.callbacks.push_back(&relay);
  ceres::Solver::Summary summary;
  ceres::Solve(so, &problem, &summary);
  // 4. the tyre keeps the best parameters the solver found
  for (size_t j = 0; j < x.size(); j++) *m.value[j] = float(x[j] * m.scale[j]);
  if (!summary.IsSolutionUsable() && !o.quiet && !Cancelled(o))
    QWARN("stage %s: the solver stopped: %s", KPacejkaGroupName(s.group), summary.message.c_str());
  *cost = summary.IsSolutionUsable() ? summary.final_cost : HUGE_VAL;
  return int(summary.iterations.size());
}

// The robust loss by reweighted least squares: each point's residual is
// weighted by the square root of the loss's slope at it (Ceres's Huber or
// Cauchy loss on the scaled residual), and the stage solved again, a few
// times. (The solver's own robust path barely moves from a least-squares
// solution in these problems.) Nothing to do while no residual lies beyond
// the loss scale. Returns the solver's iterations.
constexpr int ROBUST_ROUNDS = 3, ROBUST_ITERATIONS = 20;

int RobustRefit(const KFitOptions &o, const KFitStage &s, int index, int count, KPacejka *tyre,
                const StageMembers &m, const ChannelPoints &points, double peak) {
  if (o.loss == KFIT_LOSS_NONE) return 0;
  ceres::LossFunction *loss = nullptr;
  if (o.loss == KFIT_LOSS_HUBER) loss = new ceres::HuberLoss(o.lossScale);
  else loss = new ceres::CauchyLoss(o.lossScale);
  // each round starts next to the last one's solution: a few iterations do
  KFitOptions few = o;
  few.maxIterations = std::min(o.maxIterations, ROBUST_ITERATIONS);
  int iterations = 0;
  std::vector<double> weight(points.size());
  std::vector<float> out(points.size());
  for (int round = 0; round < ROBUST_ROUNDS; round++) {
    KBatchIssues issues;
    EvaluateChannel(*tyre, points, out.data(), &issues);
    Report(issues);
    double worst = 0;
    for (size_t i = 0; i < points.size(); i++) {
      const double r = (double(out[i]) - points.measured[i]) * o.weight[s.channel] / peak;
      double rho[3];
      loss->Evaluate(r * r, rho);
      weight[i] = std::sqrt(std::max(rho[1], 0.0));
      worst = std::max(worst, std::fabs(r));
    }
    if (!(worst > o.lossScale)) break;
    double cost;
    iterations += Solve(few, s, index, count, tyre, m, points, peak, &cost, weight);
  }
  delete loss;
  return iterations;
}

// Lists the members of `m` that sit at a bound of their range, replacing
// what was listed for `group` before.
void NoteBounds(const StageMembers &m, KPacejkaMember::Group group, KFitResult *result) {
  auto &list = result->atBound;
  list.erase(std::remove_if(list.begin(), list.end(),
                            [&](const KFitResult::AtBound &b) {
                              const KPacejkaMember *x = KPacejkaFindMember(b.name.c_str());
                              return x && x->group == group;
                            }),
             list.end());
  for (size_t j = 0; j < m.value.size(); j++) {
    const double v = *m.value[j], tol = 1e-5 * (m.hi[j] - m.lo[j]);
    if (m.member[j]->group == group && (v <= m.lo[j] + tol || v >= m.hi[j] - tol))
      list.push_back({m.member[j]->name, v, v >= m.hi[j] - tol});
  }
}

// Shape pairs a pure stage may start the solver from; the best result is
// kept. The next pair is tried only while the RMS residual is above
// GOOD_FIT of the channel's peak: a fit at the noise level has nothing to gain.
constexpr size_t SHAPE_STARTS = 3;
constexpr double GOOD_FIT = 0.015;

// Fits the members stage `s` varies; returns the solver's iteration count.
// `search` false: one solve from the members as they are (a polish of a
// solution found on fewer points), no grid of shape pairs.
int RunStage(const KMeasuredData &data, const KFitOptions &o, const KFitStage &s, int index, int count,
             KPacejka *tyre, KFitResult *result, bool search = true, double tolerance = SETTLE_TOLERANCE) {
  // 1. the points and the channel's scale; a channel weighted 0 is not fitted
  const ChannelPoints points =
      MakeChannelPoints(StagePoints(data, s, KFitStagePressure(data, *tyre)), s.channel, [](const KMeasuredPoint *p) -> const KMeasuredPoint & { return *p; });
  double peak = 0;
  for (double v : points.measured) peak = std::max(peak, std::fabs(v));
  if (points.size() == 0 || peak == 0 || !(o.weight[s.channel] > 0)) return 0;
  const StageMembers m = MembersOf(tyre, s, result->held);
  if (m.value.empty()) return 0;
  // a start that reproduces the points to float precision stays as it is
  // (a tyre fitted to samples of itself comes back unchanged)
  if (std::sqrt(SumOfSquares(*tyre, points) / double(points.size())) <= 1e-6 * peak) return 0;
  // 2. the starts: the best shape pairs of the grid (pure stages), or the
  //    members as they are
  float *C = nullptr, *E = nullptr;
  std::vector<ShapePair> starts;
  if (!s.combined && search) starts = RankShapes(tyre, s, points, SHAPE_STARTS, &C, &E);
  if (starts.empty()) starts.push_back({0, 0, 0});
  // 3. a solve from each; the lowest cost wins
  std::vector<float> first, best;
  for (float *v : m.value) first.push_back(*v);
  double bestCost = HUGE_VAL;
  int iterations = 0;
  for (const ShapePair &start : starts) {
    for (size_t j = 0; j < m.value.size(); j++) *m.value[j] = first[j];
    if (C && E) *C = start.C, *E = start.E;
    double cost;
    iterations += Solve(o, s, index, count, tyre, m, points, peak, &cost, {}, tolerance);
    if (best.empty() || cost < bestCost) {
      bestCost = cost;
      best.clear();
      for (float *v : m.value) best.push_back(*v);
    }
    if (std::sqrt(2 * bestCost / double(points.size())) <= GOOD_FIT || Cancelled(o)) break;
  }
  for (size_t j = 0; j < m.value.size(); j++) *m.value[j] = best[j];
  // 4. the robust loss, from the least-squares solution: the starts are
  //    searched with plain squares (a loss that flattens large residuals
  //    also flattens the way down from a poor start), then points far off
  //    that solution pull less. Without such points it changes nothing.
  iterations += RobustRefit(o, s, index, count, tyre, m, points, peak);
  // 5. what ended at a bound
  NoteBounds(m, s.group, result);
  return iterations;
}

// The aligning moment's pure and combined terms together, on every point
// with a moment; returns the solver's iterations.
constexpr int POLISH_ITERATIONS = 20;
constexpr size_t POLISH_POINTS = 6000;

int PolishMoment(const KMeasuredData &data, const KFitOptions &o, int count, KPacejka *tyre, KFitResult *result) {
  const KFitStage pure = {KPacejkaMember::PURE_MZ, KCH_MZ, false}, comb = {KPacejkaMember::COMBINED_MZ, KCH_MZ, true};
  StageMembers m = MembersOf(tyre, pure, result->held);
  const StageMembers c = MembersOf(tyre, comb, result->held);
  m.member.insert(m.member.end(), c.member.begin(), c.member.end());
  m.value.insert(m.value.end(), c.value.begin(), c.value.end());
  m.scale.insert(m.scale.end(), c.scale.begin(), c.scale.end());
  m.lo.insert(m.lo.end(), c.lo.begin(), c.lo.end());
  m.hi.insert(m.hi.end(), c.hi.begin(), c.hi.end());
  // dense data thinned evenly: the terms are settled, not searched for
  std::vector<const KMeasuredPoint *> used;
  const size_t step = (data.points.size() + POLISH_POINTS - 1) / POLISH_POINTS;
  for (size_t i = 0; i < data.points.size(); i += std::max<size_t>(step, 1)) used.push_back(&data.points[i]);
  const ChannelPoints points =
      MakeChannelPoints(used, KCH_MZ, [](const KMeasuredPoint *p) -> const KMeasuredPoint & { return *p; });
  double peak = 0;
  for (double v : points.measured) peak = std::max(peak, std::fabs(v));
  if (peak == 0 || m.value.empty()) return 0;
  // the stages have done the search: a few iterations settle the terms together
  KFitOptions few = o;
  few.maxIterations = std::min(o.maxIterations, POLISH_ITERATIONS);
  double cost;
  int iterations = Solve(few, comb, count - 1, count, tyre, m, points, peak, &cost);
  iterations += RobustRefit(few, comb, count - 1, count, tyre, m, points, peak);
  NoteBounds(m, KPacejkaMember::PURE_MZ, result);
  NoteBounds(m, KPacejkaMember::COMBINED_MZ, result);
  return iterations;
}

// A stage of a fit from the built-in start runs from the start as it is and
// from the one read off the data for it (KFitStageStart), if there is one,
// and keeps the better fit; returns the solver's iterations. (Both always:
// taking the second start alone once it reaches the noise saves a third of
// the time, but one perturbed copy of sample.tir then fits its three loads
// to 1.03 % and misses the moment by 40 % between them.)
//
// Dense data (a stage of more than twice SEARCH_POINTS): both starts run on
// an even selection of SEARCH_POINTS of the stage's points with plain
// squares, and the better one is then settled on all points (with the robust
// loss). The search is what costs; the settling starts next to the solution.
// Very dense data (more than VERY_DENSE): the search on DENSE_SEARCH_POINTS,
// the settling in at most SETTLE_ITERATIONS (each iteration there costs
// what a search on a fraction of the points does). Data at several
// pressures keeps the wider search and the full settling: with the narrower
// one the slip stiffness ended 8 % off at the other pressure.
constexpr size_t SEARCH_POINTS = 1500, VERY_DENSE = 6000, DENSE_SEARCH_POINTS = 1000;
constexpr int SETTLE_ITERATIONS = 30;

int SearchBothStarts(const KMeasuredData &data, const KFitOptions &o, const KFitStage &s, int index, int count,
                     KPacejka *tyre, KFitResult *result);

int RunStageFromBothStarts(const KMeasuredData &data, const KFitOptions &o, const KFitStage &s, int index, int count,
                           KPacejka *tyre, KFitResult *result) {
  // the pressure stages fit a few terms over every pressure's points: as
  // they are (their search on fewer points misses the slip stiffness's
  // pressure trend by a few percent)
  if (o.start || !(o.weight[s.channel] > 0) || s.group == KPacejkaMember::PRESSURE)
    return RunStage(data, o, s, index, count, tyre, result);
  const std::vector<const KMeasuredPoint *> stagePoints = StagePoints(data, s, KFitStagePressure(data, *tyre));
  if (stagePoints.size() > 2 * SEARCH_POINTS) {
    const bool veryDense = stagePoints.size() > VERY_DENSE && !(KFitStagePressure(data, *tyre) > 0);
    const size_t keep = veryDense ? DENSE_SEARCH_POINTS : SEARCH_POINTS;
    KMeasuredData few;
    std::copy(std::begin(data.has), std::end(data.has), std::begin(few.has));
    for (size_t k = 0; k < keep; k++) few.points.push_back(*stagePoints[k * stagePoints.size() / keep]);
    int iterations = SearchBothStarts(few, o, s, index, count, tyre, result);
    KFitOptions settle = o;
    if (veryDense) settle.maxIterations = std::min(o.maxIterations, SETTLE_ITERATIONS);
    return iterations + RunStage(data, settle, s, index, count, tyre, result, false);
  }
  return SearchBothStarts(data, o, s, index, count, tyre, result) + RunStage(data, o, s, index, count, tyre, result, false);
}

// Both starts of a stage with plain squares and SEARCH_TOLERANCE; the better
// is left in `tyre`. Returns the solver's iterations.
int SearchBothStarts(const KMeasuredData &data, const KFitOptions &o, const KFitStage &s, int index, int count,
                     KPacejka *tyre, KFitResult *result) {
  KFitOptions plain = o;
  plain.loss = KFIT_LOSS_NONE;
  KPacejka *other = new KPacejka;
  KFitCopy(*tyre, other);
  other->model = tyre->model;
  int iterations = 0;
  if (!KFitStageStart(data, s, other)) {
    iterations = RunStage(data, plain, s, index, count, tyre, result, true, SEARCH_TOLERANCE);
  } else {
    KFitResult alt;
    alt.held = result->held;
    alt.atBound = result->atBound;
    iterations += RunStage(data, plain, s, index, count, other, &alt, true, SEARCH_TOLERANCE);
    iterations += RunStage(data, plain, s, index, count, tyre, result, true, SEARCH_TOLERANCE);
    const ChannelPoints points = MakeChannelPoints(StagePoints(data, s, KFitStagePressure(data, *tyre)), s.channel,
                                                   [](const KMeasuredPoint *p) -> const KMeasuredPoint & { return *p; });
    if (SumOfSquares(*other, points) < SumOfSquares(*tyre, points)) {
      KFitCopy(*other, tyre);
      result->atBound = alt.atBound;
    }
  }
  delete other;
  return iterations;
}

// ---- [4] ranges --------------------------------------------------------

// The ranges a fit works in: wide open, so no setter clamps a trial point.
void OpenRanges(KPacejka *t) {
  t->slipAngleMin = t->slipRatioMin = t->camberMin = -99.0f;
  t->slipAngleMax = t->slipRatioMax = t->camberMax = 99.0f;
  t->fzMin = 0.0f;
  t->fzMax = 999999.0f;
}

// The fitted tyre's ranges: what the data covers (a quantity the data holds
// at one value only keeps the open range).
void RangesFromData(const KMeasuredData &data, KPacejka *t) {
  struct Range { double KMeasuredPoint::*field; float *lo, *hi; };
  const Range ranges[] = {{&KMeasuredPoint::fz, &t->fzMin, &t->fzMax},
                          {&KMeasuredPoint::kappa, &t->slipRatioMin, &t->slipRatioMax},
                          {&KMeasuredPoint::alpha, &t->slipAngleMin, &t->slipAngleMax},
                          {&KMeasuredPoint::gamma, &t->camberMin, &t->camberMax}};
  for (const Range &r : ranges) {
    double lo = HUGE_VAL, hi = -HUGE_VAL;
    for (const KMeasuredPoint &p : data.points) lo = std::min(lo, p.*r.field), hi = std::max(hi, p.*r.field);
    if (lo < hi) *r.lo = float(lo), *r.hi = float(hi);
  }
}

bool IsMagic(int model) { return model == KPacejka::MF52 || model == KPacejka::MF61; }

double MeanLoad(const KMeasuredData &data) {
  double sum = 0;
  for (const KMeasuredPoint &p : data.points) sum += p.fz;
  return data.points.empty() ? 0 : sum / double(data.points.size());
}

}  // namespace

// ---- public -----------------------------------------------------------------------------

bool KFitLossByName(const char *name, KFitLoss *loss) {
  const KFitLoss all[] = {KFIT_LOSS_NONE, KFIT_LOSS_HUBER, KFIT_LOSS_CAUCHY};
  for (KFitLoss l : all)
    if (name && !strcasecmp(name, KFitLossKey(l))) return *loss = l, true;
  return false;
}

const char *KFitLossKey(KFitLoss loss) {
  return loss == KFIT_LOSS_HUBER ? "huber" : loss == KFIT_LOSS_CAUCHY ? "cauchy" : "none";
}

bool KFitModelByName(const char *name, int *model) {
  for (const ModelKey &k : kModelKeys)
    if (name && !strcasecmp(name, k.key)) return *model = k.model, true;
  return false;
}

const char *KFitModelKey(int model) {
  for (const ModelKey &k : kModelKeys)
    if (k.model == model) return k.key;
  return "?";
}

void KFitCopy(const KPacejka &from, KPacejka *to) {
  for (int i = 0; i < kpacejkaMemberCount; i++)
    KPacejkaSetMember(*to, kpacejkaMembers[i], KPacejkaGetMember(from, kpacejkaMembers[i]));
}

bool KFitHasCombined(int model) {
  using G = KPacejkaMember;
  for (G::Group g : {G::COMBINED_FX, G::COMBINED_FY, G::COMBINED_MZ})
    if (KPacejkaFittedMembers(model, g, nullptr, 0) > 0) return true;
  return false;
}

void KFitEvaluate(const KTyreParams &tyre, const KMeasuredData &data, KFitChannelStats stats[KCH_COUNT],
                  bool pureOnly) {
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    KFitChannelStats &s = stats[ch];
    s = KFitChannelStats();
    if (!data.has[ch]) continue;
    auto counted = [&](const KMeasuredPoint &p) { return !pureOnly || (ch == KCH_FX ? p.alpha : p.kappa) == 0; };
    std::vector<const KMeasuredPoint *> used;
    for (const KMeasuredPoint &p : data.points)
      if (counted(p)) used.push_back(&p);
    if (used.empty()) continue;
    const ChannelPoints c =
        MakeChannelPoints(used, ch, [](const KMeasuredPoint *p) -> const KMeasuredPoint & { return *p; });
    double mean = 0;
    for (double v : c.measured) {
      mean += v;
      s.peak = std::max(s.peak, std::fabs(v));
    }
    s.points = int(c.size());
    mean /= double(s.points);
    // the exact core: the figures are what eval gives for this tyre
    std::vector<float> out(c.size());
    KBatchIssues issues;
    EvaluateChannel(tyre, c, out.data(), &issues, KBATCH_EXACT);
    Report(issues);
    double ssRes = 0, ssTot = 0;
    for (size_t i = 0; i < c.size(); i++) {
      const double e = double(out[i]) - c.measured[i];
      ssRes += e * e;
      ssTot += (c.measured[i] - mean) * (c.measured[i] - mean);
    }
    s.rms = std::sqrt(ssRes / double(s.points));
    s.rmsPercent = s.peak > 0 ? 100.0 * s.rms / s.peak : 0;
    s.r2 = ssTot > 0 ? 1.0 - ssRes / ssTot : (ssRes == 0 ? 1.0 : 0.0);
  }
}

double KFitMembers(KPacejka *tyre, const std::vector<const KMeasuredPoint *> &pts, int channel,
                   const std::vector<const char *> &names, int maxIterations) {
  const ChannelPoints points =
      MakeChannelPoints(pts, channel, [](const KMeasuredPoint *p) -> const KMeasuredPoint & { return *p; });
  double peak = 0;
  for (double v : points.measured) peak = std::max(peak, std::fabs(v));
  StageMembers m;
  for (const char *n : names) {
    const KPacejkaMember *member = KPacejkaFindMember(n);
    float *v = member ? KPacejkaFloat(*tyre, *member) : nullptr;
    if (!v || !(member->fitMin < member->fitMax)) continue;
    m.member.push_back(member);
    m.value.push_back(v);
    m.scale.push_back(std::max(std::fabs(double(*v)), 0.01 * (double(member->fitMax) - double(member->fitMin))));
    m.lo.push_back(member->fitMin);
    m.hi.push_back(member->fitMax);
  }
  if (points.size() == 0 || peak == 0 || m.value.empty()) return HUGE_VAL;
  KFitOptions o;
  o.loss = KFIT_LOSS_NONE;
  o.maxIterations = maxIterations;
  o.threads = 1;  // small problems: a thread per column costs more than it saves
  const KFitStage s = {KPacejkaMember::OTHER, channel, false};
  double cost;
  Solve(o, s, 0, 1, tyre, m, points, peak, &cost);
  return std::sqrt(2 * cost / double(points.size()));
}

double KFitStagePressure(const KMeasuredData &data, const KTyreParams &tyre) {
  if (!(tyre.nompres > 0)) return 0.0;
  const std::vector<KFitPressureSetPoint> sets = KFitPressureSetPoints(data);
  if (sets.size() < 2) return 0.0;
  double nearest = sets.front().pressure;
  for (const KFitPressureSetPoint &p : sets)
    if (std::fabs(p.pressure - tyre.nompres) < std::fabs(nearest - tyre.nompres)) nearest = p.pressure;
  return nearest;
}

bool KFitTyre(const KMeasuredData &data, const KFitOptions &o, KPacejka *out, KFitResult *result) {
  *result = KFitResult();
  const auto t0 = std::chrono::steady_clock::now();
  // 1. what can be fitted
  if (o.model != KPacejka::PAC96 && !IsMagic(o.model)) {
    result->error = "model " + std::to_string(o.model) + " cannot be fitted (pac96, mf52 or mf61)";
  } else if (!(o.weight[KCH_FX] >= 0 && o.weight[KCH_FY] >= 0 && o.weight[KCH_MZ] >= 0)) {
    result->error = "a channel weight is negative";
  } else if (o.loss != KFIT_LOSS_NONE && !(o.lossScale > 0)) {
    result->error = "the loss scale is not positive";
  } else if (data.points.empty()) {
    result->error = "no data points";
  } else if (o.start && (o.start->model == KPacejka::PAC96) != (o.model == KPacejka::PAC96)) {
    result->error = std::string("the start tyre is ") + o.start->GetModelName() + ", not of the family of " +
                    KPacejka::GetModelName(o.model);
  }
  if (!result->error.empty()) {
    if (!o.quiet) QERR("%s", result->error.c_str());
    return false;
  }
  struct Quiet {
    bool was = t_quiet;
    explicit Quiet(bool q) { t_quiet = t_quiet || q; }
    ~Quiet() { t_quiet = was; }
  } quiet(o.quiet);
  // 2. channels pointing the unusual way are fitted mirrored
  KMeasuredData work = data;
  for (int ch : {KCH_FY, KCH_MZ}) {
    const int sign = KFitDataSlopeSign(data, ch);
    result->mirrored[ch] = sign != 0 && sign != KFitUsualSign(ch);
    if (result->mirrored[ch])
      for (KMeasuredPoint &p : work.points) p.force[ch] = -p.force[ch];
  }
  // 3. the start, itself turned the usual way
  if (o.start) {
    KFitCopy(*o.start, out);
    out->model = o.model;
    out->flags = 0;  // the data's cambers are as eval takes them, not mirrored per wheel
    const double fz = MeanLoad(data);
    OpenRanges(out);
    const bool fy = KFitTyreSlopeSign(*out, fz, KCH_FY) == -KFitUsualSign(KCH_FY);
    const bool mz = KFitTyreSlopeSign(*out, fz, KCH_MZ) == -KFitUsualSign(KCH_MZ);
    KFitMirror(*out, fy, mz);
  } else {
    KFitBuiltinStart(o.model, work, out);
  }
  OpenRanges(out);
  // 4. what the data cannot tell is held; the stages, in order; data at two
  //    or more pressures fits the pressure terms after the pure curves (at
  //    the nominal pressure) and before the combined weightings
  const bool combinedPoints = std::any_of(data.points.begin(), data.points.end(),
                                          [](const KMeasuredPoint &p) { return p.kappa != 0 && p.alpha != 0; });
  if (!o.start && !combinedPoints && !o.genericCombined) out->rbx1 = out->rby1 = 0.0f;
  KFitHeldTerms(*out, work, &result->held);
  const KFitStage *listed[8], *pressure[4];
  const int listedCount = KFitStagesFor(o.model, listed, 8);
  const std::vector<KFitPressureSetPoint> pressures = KFitPressureSetPoints(work);
  const int pressureCount = pressures.size() >= 2 ? KFitPressureStagesFor(o.model, pressure, 4) : 0;
  if (pressureCount > 0) {
    result->nominalFromStart = out->nompres > 0;
    if (!(out->nompres > 0)) out->nompres = float(pressures.front().pressure);
    if (!(out->inflpres > 0)) out->inflpres = out->nompres;
    result->nominalPressure = out->nompres;
    result->stagePressure = KFitStagePressure(work, *out);
  }
  result->pressures = pressures;
  result->pressureStages = pressureCount;
  std::vector<const KFitStage *> stages;
  for (int i = 0; i < listedCount; i++) {
    if (listed[i]->combined && pressureCount > 0 && stages.size() == size_t(i))
      stages.insert(stages.end(), pressure, pressure + pressureCount);
    stages.push_back(listed[i]);
  }
  if (stages.size() == size_t(listedCount)) stages.insert(stages.end(), pressure, pressure + pressureCount);
  const int count = int(stages.size());
  for (int i = 0; i < count; i++) {
    if (o.channel >= 0 && stages[size_t(i)]->channel != o.channel) continue;
    if (Cancelled(o)) break;
    if (o.stageStart) o.stageStart(o.user, *stages[size_t(i)], *out);
    result->iterations += RunStageFromBothStarts(work, o, *stages[size_t(i)], i, count, out, result);
  }
  // 4b. the aligning moment once more over all its points, pure and combined
  //     slip together: its combined-slip terms were fitted on top of a
  //     pure-slip trail that the combined points then pull a little
  if (combinedPoints && KFitHasCombined(o.model) && o.weight[KCH_MZ] > 0 && (o.channel < 0 || o.channel == KCH_MZ) &&
      !Cancelled(o))
    result->iterations += PolishMoment(work, o, count, out, result);
  if (Cancelled(o)) {
    result->error = "cancelled";
    return false;
  }
  // 5. back to the data's signs, the data's ranges, and how well it fits
  KFitMirror(*out, result->mirrored[KCH_FY], result->mirrored[KCH_MZ]);
  RangesFromData(data, out);
  result->combinedNotIdentified = KFitHasCombined(o.model) && !combinedPoints && (o.start || o.genericCombined);
  result->pureOnly = !KFitHasCombined(o.model) || !combinedPoints;
  KFitEvaluate(*out, data, result->channel, result->pureOnly);
  result->seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
  return true;
}
