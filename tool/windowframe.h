// The window's frame: the session's state drawn through chart/plot.h into
// the graph area, then what only the window shows around it (the car note,
// the operating-point line, the selected coefficient's texts and the keys of
// the views). The window's per-frame paint callback.
#pragma once

#include <string>
#include <vector>

#include "chart/frame.h"
#include "render/qrect.h"

class QRenderer;

// The session's graphs, focus and ghost radio, with the reference tyre as an
// overlay when one is loaded.
FrameState FrameStateFromSession();
// Draws everything that is not a control into `r`, the canvas of the whole
// window, with the graph area given by the view size.
void FramePaintGraphs(QRenderer *r, int viewWidth, int viewHeight);

// A hint line under the "Wheel index" slider: its text, shortened in the
// middle to the room there, and the line's box (the room's width, one line
// high).
struct FrameHint {
  std::string text;
  QRect box;
};
// The hint lines the frame draws, top to bottom: the keys of the views, then
// the fitting keys (tool/fitkeys.h). None without a font.
std::vector<FrameHint> FrameHintLines(const QRenderer &r, int viewWidth, int viewHeight);
