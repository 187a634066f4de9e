// The analysis report "reppac.txt". The analysis itself is not done yet; the
// report says so, and that text is what the tool writes.
#pragma once

// The report's file name, written in the current folder.
constexpr const char *ANALYSE_REPORT_FILE = "reppac.txt";

// The report's exact bytes (40, bare line feeds).
const char *AnalyseReportText();
// Writes the report to `path` (truncating it). False when the file cannot be
// opened or written; nothing is reported here, the caller tells the user.
bool AnalyseWriteReport(const char *path);
