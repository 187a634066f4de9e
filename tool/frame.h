// The per-frame paint callback: samples and draws the three graphs, the
// ghost curves of the focused graph and the texts of the selected
// coefficient, then the controls.
#pragma once

class QCanvas;

// Alphas of the ghost curves, as drawn: load ghost i of 0..4, camber ghost i
// of 0..5 (-10 ... 10 degrees).
float FrameLoadGhostAlpha(int i);
float FrameCamberGhostAlpha(int i);

// Draws everything that is not a control into `cv`, the canvas of the whole
// window, with the graph area given by the view size.
void FramePaintGraphs(QCanvas *cv, int viewWidth, int viewHeight);
