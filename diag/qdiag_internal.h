// Shared between the files of the diagnostics library only.
#pragma once

// Logs an already formatted text. Used where a message is handed on after
// formatting, so that its '%' signs are not read as conversions again.
void qlogText(unsigned flags, const char *source, const char *text);

// Resets the writer to its state at process start (tests).
void qlogReset();
