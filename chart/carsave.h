// Writing a tyre as a car: a car.ini whose four wheel sections
// ("wheel%d.pacejka") each hold the whole tyre, so that tyrograph-cli and the
// window (as data/cars/<name>/car.ini) load it without any other file.
#pragma once

#include <string>

class KPacejka;

// The keys written: `model`, then every float member the tyre's model reads,
// in table order, each in the fewest digits that read back to the same float.
// Writes through the configuration writer (base/qinfo.h), replacing `path`.
// False, with the problem in `error`, when the file cannot be written.
bool CarWriteTyre(const char *path, const KPacejka &tyre, std::string *error);
