// A fit on a worker thread (F6). The job owns copies of the data and of the
// start tyre; the worker only fits (quietly: no reporters) and leaves its
// progress and result in a mailbox under a mutex, which the window's loop
// reads once a frame. Cancelling sets a flag the fitter checks every solver
// iteration.
#pragma once

#include <string>

#include "tyre/kfit.h"

struct FitWorkerProgress {
  std::string stage;     // "pure Fy", ...; empty before the first iteration
  int stageIndex = 0, stageCount = 0;
  int iteration = 0;
  double rmsPercent = 0;  // of the stage's channel peak
};

struct FitWorkerOutcome {
  bool ok = false;         // the fit ran to its end
  bool cancelled = false;
  std::string error;       // why not
  KTyreParams tyre{};      // the fitted tyre (when ok)
  KFitResult result;
  int channel = -1;        // the channel fitted alone, or -1
};

// Starts a fit of `model` to `data` from `start`, with the options
// `tyrograph-cli fit` takes by default (chart/fitrun.h); `channel` -1 fits
// every stage, else only that channel's. False when a fit is still running.
bool FitWorkerStart(const KMeasuredData &data, const KTyreParams &start, int model, int channel);
bool FitWorkerRunning();
void FitWorkerCancel();
// The progress the worker left last (it does so at most every 50 ms and at
// each stage); never waits for the worker.
FitWorkerProgress FitWorkerGetProgress();
// Once the worker has ended: its outcome, once (the worker is joined). False
// while it runs or when there is nothing to take.
bool FitWorkerTake(FitWorkerOutcome *out);
// Waits for the worker and drops its outcome (exit, tests).
void FitWorkerWait();
