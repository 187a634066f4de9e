// The fit's worker thread and its mailbox.
#include "tool/fitworker.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <memory>
#include <mutex>
#include <thread>

#include "chart/fitrun.h"

namespace {

struct Job {
  KMeasuredData data;
  std::unique_ptr<KPacejka> start, out;
  KFitOptions options;  // as tyrograph-cli fit sets them (loss, weights)
  int channel = -1;
  std::atomic<bool> cancel{false};
  std::atomic<bool> done{false};
  std::thread worker;
  // The mailbox.
  std::mutex mutex;
  FitWorkerProgress progress;
  FitWorkerOutcome outcome;
  // The worker's own: the point count of the running stage, and when it
  // last left progress in the mailbox.
  size_t stagePoints = 1;
  std::chrono::steady_clock::time_point published{};
  int publishedStage = -1;
  // The window's own: the progress it read last.
  FitWorkerProgress shown;
};

// The worker leaves progress in the mailbox at most this often (and at each
// new stage): the window reads it once a frame, and a busy mailbox costs
// the window's thread a wait.
constexpr std::chrono::milliseconds PROGRESS_EVERY{50};

std::unique_ptr<Job> g_job;

// The points a stage fits, counted as the fitter picks them (RMS % of the
// progress line).
size_t StagePointCount(const KMeasuredData &data, const KFitStage &s) {
  if (!data.has[s.channel]) return 0;
  size_t pure = 0, combined = 0;
  for (const KMeasuredPoint &p : data.points) {
    const double other = s.channel == KCH_FX ? p.alpha : p.kappa;
    if (other == 0) pure++;
    if (p.alpha != 0 && p.kappa != 0) combined++;
  }
  return s.combined ? combined : (pure ? pure : data.points.size());
}

void OnStage(void *user, const KFitStage &stage, const KPacejka &) {
  Job *job = static_cast<Job *>(user);
  job->stagePoints = StagePointCount(job->data, stage);
}

void OnProgress(void *user, const KFitProgress &p) {
  Job *job = static_cast<Job *>(user);
  const auto now = std::chrono::steady_clock::now();
  if (p.stageIndex == job->publishedStage && now - job->published < PROGRESS_EVERY) return;
  job->published = now;
  job->publishedStage = p.stageIndex;
  const double n = double(job->stagePoints ? job->stagePoints : 1);
  std::lock_guard<std::mutex> lock(job->mutex);
  job->progress.stage = p.stage;
  job->progress.stageIndex = p.stageIndex;
  job->progress.stageCount = p.stageCount;
  job->progress.iteration = p.iteration;
  job->progress.rmsPercent = 100.0 * std::sqrt(2.0 * p.cost / n);
}

void Work(Job *job) {
  // Below the window's thread: on a busy machine the frames come first.
  setpriority(PRIO_PROCESS, id_t(syscall(SYS_gettid)), 10);
  KFitOptions o = job->options;
  o.start = job->start.get();
  o.channel = job->channel;
  o.cancel = &job->cancel;
  o.quiet = true;
  // One core is the window's: the Jacobian takes the others (one thread on
  // two cores). Its threads start below the window too, as this one.
  const unsigned cores = std::thread::hardware_concurrency();
  o.threads = cores > 2 ? int(cores) - 1 : 1;
  o.progress = OnProgress;
  o.stageStart = OnStage;
  o.user = job;
  KFitResult r;
  const bool ok = KFitTyre(job->data, o, job->out.get(), &r);
  {
    std::lock_guard<std::mutex> lock(job->mutex);
    job->outcome.ok = ok;
    job->outcome.cancelled = job->cancel.load();
    job->outcome.error = r.error;
    job->outcome.tyre = *job->out;
    job->outcome.result = r;
    job->outcome.channel = job->channel;
  }
  job->done = true;
}

}  // namespace

bool FitWorkerStart(const KMeasuredData &data, const KTyreParams &start, int model, int channel) {
  if (g_job) return false;
  auto job = std::make_unique<Job>();
  job->data = data;
  job->start = std::make_unique<KPacejka>();
  static_cast<KTyreParams &>(*job->start) = start;
  job->out = std::make_unique<KPacejka>();
  FitJob cli;  // the command line's defaults for a fit of `model`
  cli.model = model;
  job->options = FitJobOptions(cli);
  job->channel = channel;
  Job *j = job.get();
  g_job = std::move(job);
  j->worker = std::thread(Work, j);
  return true;
}

bool FitWorkerRunning() { return g_job != nullptr; }

void FitWorkerCancel() {
  if (g_job) g_job->cancel = true;
}

FitWorkerProgress FitWorkerGetProgress() {
  if (!g_job) return FitWorkerProgress();
  // The window never waits for the worker: while the worker holds the
  // mailbox (and may have lost its core there, being below the window in
  // priority), the frame shows what it read before.
  std::unique_lock<std::mutex> lock(g_job->mutex, std::try_to_lock);
  if (lock.owns_lock()) g_job->shown = g_job->progress;
  return g_job->shown;
}

bool FitWorkerTake(FitWorkerOutcome *out) {
  if (!g_job || !g_job->done) return false;
  g_job->worker.join();
  *out = g_job->outcome;
  g_job.reset();
  return true;
}

void FitWorkerWait() {
  if (!g_job) return;
  g_job->worker.join();
  g_job.reset();
}
