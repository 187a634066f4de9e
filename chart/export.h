// The two exports of the current tyre, as text: an ASCII table of Fx and Fy
// curves normalised by their own peaks, and a car.ini-style `pacejka` block.
// No dialogs here; the window's commands and tyrograph-cli both call these.
#pragma once

#include <string>

class KPacejka;

// Defaults the window proposes.
constexpr int EXPORT_ASCII_DEFAULT_STEPS = 134;
constexpr float EXPORT_ASCII_DEFAULT_MAX = 2.0f;

// The ASCII table: `steps` values of Fx over slip ratio 0 .. maximum from
// `fxTyre`, then of Fy over slip angle 0 .. maximum radians from `fyTyre`,
// each divided by its own largest positive value (1.0 when there is none).
// Changes the tyres' slip. A negative step count counts as 0.
std::string ExportAsciiText(const KPacejka *fxTyre, const KPacejka *fyTyre, int steps, float maximum);

// The car.ini-style block of `tyre`. Models 1 and 3 give the scaling-factor
// block; every other model the Pacejka89/96 block, whose statistics come from
// the drawn curves: the Fx peak's slip ratio and the Fy peak's slip angle in
// degrees (written in radians).
std::string ExportCarIniText(const KPacejka &tyre, float fxPeakX, float fyPeakXDeg);

// Writes `text` to `path` in binary mode (bare line feeds), truncating it.
// False when the file cannot be opened or written; the caller tells the user.
bool ExportWriteFile(const char *path, const std::string &text);
