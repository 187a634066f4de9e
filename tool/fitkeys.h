// The window's keys for fitting (beside the view keys, tool/viewkeys.h):
//   F5      measured data behind the curves (file dialog), read on a worker
//           thread (Escape meanwhile throws it away); pressed again: off
//   F6      fits the current wheel's tyre to the data on a worker thread:
//           the focused graph's stages, or every stage with "No focus";
//           Escape cancels it and leaves the tyre as it was
//   F7      writes the current wheel's tyre: a .tir name as a TIR file, any
//           other as a car.ini with four wheel blocks; asks before replacing
//   Ctrl+Z  undoes the current wheel's last fit or coefficient edit
//   Ctrl+Y  redoes it
#pragma once

#include <string>

#include "tyre/kfit.h"

struct QEvent;
struct ToolEnv;

constexpr int FITKEY_DATA = 116;   // F5
constexpr int FITKEY_FIT = 117;    // F6
constexpr int FITKEY_WRITE = 118;  // F7

// Handles the keys above, and Escape while a fit runs; true when the event
// was one of them.
bool FitKeyDispatch(const QEvent *ev, const ToolEnv &env);
// F6 without the key: starts the fit (false, with the reason reported, when
// there is no data, the model cannot be fitted or a fit runs).
bool FitStart();
// Once a frame: takes a finished fit's result into the tyre (an undo step).
// True when a fit ended.
bool FitPoll();
// The figures of the last fit that ended (RMS % and R² per fitted channel);
// none before the first, on another wheel, or after an undo or redo.
struct FitFigures {
  bool shown = false;
  int wheel = 0;
  bool fitted[KCH_COUNT] = {};
  KFitChannelStats channel[KCH_COUNT];
};
const FitFigures &FitLastFigures();
// Forgets the last fit's figures and message, and cancels a running fit
// (the tyres are being reloaded: its result would belong to none of them).
void FitForget();
// The message of the last fit that did not end well ("cancelled", ...).
const std::string &FitLastMessage();
// Writes the current wheel's tyre to `path`; with `ask`, an existing file is
// replaced only after Yes (F7's save dialog asks that itself). False when
// not written.
bool FitWriteTyre(const std::string &path, bool ask = true);
// Ctrl+Z / Ctrl+Y of the current wheel; false when there was nothing.
bool FitUndo();
bool FitRedo();
// The hint lines of these keys: with data loaded the data's set point, fit,
// write and undo; while F5 reads, "F5 reading NAME" alone; without data,
// only F5's line, FITHINT_NO_DATA.
constexpr const char *FITHINT_NO_DATA = "F5 load measured data";
void FitHintLines(std::string lines[4]);
// Fit figures of channel `ch`: "Fy fit: RMS 1.43 %, R2 0.99851"; empty when
// the channel was not fitted.
std::string FitFiguresText(int ch);
