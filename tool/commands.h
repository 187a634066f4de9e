// The six commands of the button row: "Open tire", "Revert", "Save*",
// "Export ASCII", "Export for Car.Ini" and "Analyse". Each asks what it
// needs through the framework's dialogs, then works through the session
// (tool/session.h) and the UI-free export and report code.
#pragma once

struct ToolEnv;

enum ToolCommand {
  CMD_OPEN_TIRE = 0,
  CMD_REVERT = 1,
  CMD_SAVE = 2,
  CMD_EXPORT_ASCII = 3,
  CMD_EXPORT_CARINI = 4,
  CMD_ANALYSE = 5,
  CMD_COUNT = 6,
};

// Runs command `index` (the button's position in the row); nothing for an
// index outside the row.
void CommandRun(int index, const ToolEnv &env);

// Import TIR: the file goes into every tyre of every graph; the controls go
// back to their start-up state. False when cancelled.
bool CommandOpenTire(const ToolEnv &env);
// Asks, then reloads the current car into the graphs, which keep the
// panel's operating point. False when not confirmed.
bool CommandRevert();
// Saving edited coefficients is not offered; says so.
void CommandSave();
// ASCII table of Fx and Fy: steps, maximum and file asked for, then shown.
// False when cancelled or the file cannot be written.
bool CommandExportAscii(const ToolEnv &env);
// car.ini-style block of the current tyre into a file asked for, then shown.
bool CommandExportCarIni(const ToolEnv &env);
// Writes the analysis report "reppac.txt" in the working folder and, with
// `show`, shows it. False when it cannot be written.
bool CommandAnalyse(bool show);
