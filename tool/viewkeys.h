// The window's keys for the views: F2 cycles the graph area through the
// plot kinds (chart/plot.h), F3 overlays a reference tyre in grey (asked for
// through the file dialog) or, pressed again, drops it, F4 saves the shown
// view as a PNG file beside the screenshots (view00001.png, ...).
#pragma once

#include <cstdint>
#include <string>

struct QEvent;
struct ToolEnv;

constexpr int VIEWKEY_CYCLE = 113;  // F2
constexpr int VIEWKEY_REFERENCE = 114;  // F3
constexpr int VIEWKEY_SAVE = 115;  // F4

// Handles the three keys; true when the event was one of them.
bool ViewKeyDispatch(const QEvent *ev, const ToolEnv &env);
// The next plot kind, after the last the first again.
void ViewCycle();
// Loads a reference tyre from `path` (a .tir file, a car.ini or a car
// folder; wheel 0) into its own graphs. False, with the reason reported,
// when it cannot be read.
bool ViewLoadReference(const char *path);
void ViewDropReference();
// Writes the shown view into `path` at the graph area's size (width x
// height). False with the reason reported.
bool ViewSavePng(const std::string &path, int width, int height);
// The first free "view%05d.png" in the screenshot folder; empty when all are taken.
std::string ViewNextPngName();
// Forgets the saved view's name once `nowMs` has reached the time the hint
// lines show it until; called every frame.
void ViewExpireSavedNote(uint64_t nowMs);
