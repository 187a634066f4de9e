// Loading tyres into the graphs' KPacejka objects: a car's four wheels from
// "data/cars/%s/car.ini", or one tyre from a file named on a command line.
#pragma once

#include <string>

class KPacejka;
class QInfo;

constexpr int CAR_WHEELS = 4;
// Names of the wheels as the wheel slider shows them.
constexpr const char *WHEEL_NAMES[CAR_WHEELS] = {"FL", "FR", "RL", "RR"};

// The section of a wheel's tyre in a car.ini: "wheel%d.pacejka".
std::string CarWheelSection(int wheel);
// "data/cars/%s/car.ini" for a car folder name.
std::string CarIniPath(const char *car);

// Loads wheels 0..3 of car `car` into tyres[0..3] with KPacejka::Load. A
// missing car or section is not reported: the tyres keep what Load leaves in
// them (the reset coefficients).
void CarLoadTyres(const char *car, KPacejka *const tyres[CAR_WHEELS]);

// Which wheels of car `car` have no tyre to load: bit w set when the car.ini
// holds no "wheel<w>.pacejka" section (all four when the car.ini is
// missing, which `carFound` tells).
unsigned CarWheelsWithoutTyre(const char *car, bool *carFound);
// The line that says so, empty when every wheel has its tyre:
//   car "nosuch" not found (data/cars/nosuch/car.ini): no tyre on any wheel
//   car "nowheel2" has no tyre on RL (no wheel2.pacejka section)
//   car "odd" has no tyre on FL, RR (no pacejka sections)
std::string CarNoteText(const char *car, bool carFound, unsigned withoutTyre);

// A TYRE argument as given when it names a file or folder; otherwise a bare
// name (no '/') that the base folder `base` holds as data/cars/<name> or
// data/tyres/<name>, in that order, becomes that path.
std::string CarResolveSource(const std::string &source, const std::string &base);

// Loads one tyre from `source` the way tyrograph-cli reads a TYRE argument:
// a name ending in ".tir" (any case) is a TIR file; a folder stands for the
// car.ini inside it; anything else is a car.ini-style file whose section
// "wheel<wheel>.pacejka" is loaded. False, with a message naming the file and
// the problem in `error`, when the file is missing, the wheel is not 0..3, or
// the file holds no such section (measured data, say: see CarNotATyre); the
// tyre is then left as it was.
bool CarLoadTyreSource(const char *source, int wheel, KPacejka *tyre, std::string *error);

// Why the file `path`, read as a car.ini-style file, can hold no tyre for
// `wheel`, judged from its name and text alone: measured data (a ".csv"
// name, or a first line of comma-separated fields), a TYDEX file (a ".tdx"
// name or "**" sections), or no "pacejka" section at all. Empty when it may
// hold one. The text names the file.
std::string CarNotATyre(const char *path, int wheel);
