// Tyrograph's start-up, frame and exit: the application-wide objects that
// the start-up sequence creates and the callbacks it installs.
#pragma once

// Runs the whole start-up sequence and enters the event loop; never returns.
[[noreturn]] void TyroRun(int argc, char **argv);

// Rewrites the title bar: the product text and the last imported TIR file.
void TyroUpdateTitle();
// Loads the session's car into the three graphs (start-up and "Revert").
void TyroLoadCar();
