// Shared by both backends: the SDL display, window and GL context code.
// Each backend supplies its video driver choice and its event source.
#pragma once

#include <SDL2/SDL.h>

#include "ui/qplatform.h"

struct QPWindow {
  SDL_Window *win = nullptr;
  SDL_GLContext ctx = nullptr;
  bool fullScreen = false;
  bool shown = true;
};

// The video driver the backend wants ("offscreen"), or null for SDL's choice.
const char *qpsdlVideoDriver();
// True when frames must be finished before the swap (offscreen rendering
// queues work without bound otherwise).
bool qpsdlIsOffscreen();
// True when closing the display should only destroy the windows and keep
// SDL (and the GL driver it loaded) for the rest of the process.
bool qpsdlKeepDisplay();
// Finds our window for an SDL window id (null when unknown).
QPWindow *qpsdlFindWindow(Uint32 windowID);
