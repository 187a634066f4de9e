// The headless backend's script: tests feed events and message-box answers
// here, then step QApp::Run1 and read the pixels back with glReadPixels.
// The GL context is real (SDL's offscreen driver), so drawing is exact.
#pragma once

#include "ui/qevent.h"

// Appends an event (pwin null = the main window).
void qpsPushEvent(const QEvent &ev);
void qpsKeyPress(int code);
void qpsKeyRelease(int code);
// Press then release.
void qpsKeyTap(int code);
// One QEVENT_CHAR per byte of the text.
void qpsType(const char *text);
void qpsMouseMove(int x, int y);
void qpsButtonPress(int x, int y, int button = QMB_LEFT);
void qpsButtonRelease(int x, int y, int button = QMB_LEFT);
// Move, press and release at (x, y).
void qpsClick(int x, int y, int button = QMB_LEFT);
void qpsClose();
// Number of queued events; Clear drops them.
int qpsPendingCount();
void qpsClear();

// The answer every following message box returns (QPMB_ID*; default OK).
void qpsSetMessageBoxAnswer(int answer);
// Boxes shown so far, and the title and text of the last one.
int qpsMessageBoxCount();
const char *qpsLastMessageBoxTitle();
const char *qpsLastMessageBoxText();
