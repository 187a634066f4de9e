// The tool's own settings, read once at start-up from "pacejka.ini", and the
// one value written back at exit (last.car).
#pragma once

#include <string>

class QInfo;

constexpr const char *SETTINGS_FILE = "pacejka.ini";
// The graph area's margins; fixed, not settings.
constexpr int GRAPH_LEFT_MARGIN = 15;
constexpr int GRAPH_TOP_MARGIN = 32;

struct ToolSettings {
  int width = 910, height = 714;  // resolution.width / .height
  int x = -1, y = -1;             // resolution.x / .y
  bool fullscreen = false;        // resolution.fullscreen (any non-zero integer)
  int bits = 16;                  // resolution.bits
  int viewWidth = 700, viewHeight = 500;  // view.width / .height: the graph area
  std::string lastCar;            // last.car
};

// Reads every key with its default; a missing file gives all defaults.
ToolSettings SettingsRead(QInfo *info);
// Stores `car` under last.car and writes the tree to its file. False when
// the file cannot be written (reported by QInfo).
bool SettingsStoreLastCar(QInfo *info, const char *car);
