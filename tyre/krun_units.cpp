// The channels of a rig run, the names they go by, and the units they come
// in: one table each.
#include <cctype>
#include <cmath>
#include <cstring>
#include <string>

#include "tyre/krun.h"

namespace {

struct ChannelRow {
  const char *key;
  KRunUnitKind kind;
  const char *si;     // its SI unit as printed
  const char *names;  // the usual column names, '|' between them (compared in any case)
};

const ChannelRow kChannels[KRUN_CHANNELS] = {
    {"time", KUNIT_TIME, "s", "time|t|et|runtime|elapsed_time"},
    {"fz", KUNIT_FORCE, "N", "fz|fzw|load|normal_force"},
    {"kappa", KUNIT_SLIP, "ratio", "kappa|sl|sr|longslip|slip_ratio|slipratio"},
    {"alpha", KUNIT_ANGLE, "rad", "alpha|sa|slipangl|slip_angle|slipangle"},
    {"gamma", KUNIT_ANGLE, "rad", "gamma|ia|inclangl|camber|inclination"},
    {"fx", KUNIT_FORCE, "N", "fx|fxw"},
    {"fy", KUNIT_FORCE, "N", "fy|fyw"},
    {"mz", KUNIT_MOMENT, "N·m", "mz|mzw"},
    {"mx", KUNIT_MOMENT, "N·m", "mx|mxw"},
    {"pressure", KUNIT_PRESSURE, "Pa", "pressure|p|inflpres"},
    {"speed", KUNIT_SPEED, "m/s", "speed|v|velocity|longvel|runspeed"},
};

struct UnitRow {
  KRunUnitKind kind;
  const char *names;  // '|' between spellings, compared in any case; the first is the one listed
  double factor, offset;
};

// si = value * factor + offset
const UnitRow kUnits[] = {
    {KUNIT_TIME, "s|sec", 1, 0},
    {KUNIT_TIME, "ms", 1e-3, 0},
    {KUNIT_TIME, "min", 60, 0},
    {KUNIT_FORCE, "N", 1, 0},
    {KUNIT_FORCE, "kN", 1e3, 0},
    {KUNIT_FORCE, "lbf|lb", 4.4482216152605, 0},
    {KUNIT_SLIP, "ratio|-|1|none", 1, 0},
    {KUNIT_SLIP, "%|percent|pct", 0.01, 0},
    {KUNIT_ANGLE, "rad|radian|radians", 1, 0},
    {KUNIT_ANGLE, "deg|degree|degrees|°", M_PI / 180, 0},
    {KUNIT_MOMENT, "N·m|Nm|N*m|N.m|N-m", 1, 0},
    {KUNIT_MOMENT, "kN·m|kNm|kN*m|kN.m|kN-m", 1e3, 0},
    {KUNIT_MOMENT, "lbf·ft|lbfft|lbf*ft|lbf.ft|lbf-ft|ft·lbf|ftlbf|ft*lbf|ft-lbf|lb-ft|ft-lb", 1.3558179483314, 0},
    {KUNIT_PRESSURE, "Pa|N/m2|N/m^2", 1, 0},
    {KUNIT_PRESSURE, "kPa", 1e3, 0},
    {KUNIT_PRESSURE, "bar", 1e5, 0},
    {KUNIT_PRESSURE, "psi", 6894.757293168, 0},
    {KUNIT_SPEED, "m/s|mps", 1, 0},
    {KUNIT_SPEED, "km/h|kph|kmh|km/hr", 1 / 3.6, 0},
    {KUNIT_SPEED, "mph|mi/h", 0.44704, 0},
};

bool SameText(const std::string &a, const char *b, size_t n) {
  if (a.size() != n) return false;
  for (size_t i = 0; i < n; i++)
    if (tolower(static_cast<unsigned char>(a[i])) != tolower(static_cast<unsigned char>(b[i]))) return false;
  return true;
}

// Whether `text` is one of the '|'-separated spellings.
bool OneOf(const std::string &text, const char *spellings) {
  for (const char *p = spellings;;) {
    const char *bar = strchr(p, '|');
    const size_t n = bar ? size_t(bar - p) : strlen(p);
    if (SameText(text, p, n)) return true;
    if (!bar) return false;
    p = bar + 1;
  }
}

}  // namespace

const char *KRunChannelKey(int channel) {
  return channel >= 0 && channel < KRUN_CHANNELS ? kChannels[channel].key : "?";
}

KRunUnitKind KRunChannelUnitKind(int channel) { return kChannels[channel].kind; }

const char *KRunSiUnit(int channel) { return kChannels[channel].si; }

int KRunChannelByName(const std::string &name) {
  for (int c = 0; c < KRUN_CHANNELS; c++)
    if (OneOf(name, kChannels[c].names)) return c;
  return -1;
}

int KRunChannelByKey(const std::string &key) {
  for (int c = 0; c < KRUN_CHANNELS; c++)
    if (SameText(key, kChannels[c].key, strlen(kChannels[c].key))) return c;
  return -1;
}

bool KRunUnitToSi(KRunUnitKind kind, const std::string &unit, double *factor, double *offset) {
  if (unit.empty()) {
    *factor = 1;
    *offset = 0;
    return true;
  }
  for (const UnitRow &u : kUnits)
    if (u.kind == kind && OneOf(unit, u.names)) {
      *factor = u.factor;
      *offset = u.offset;
      return true;
    }
  return false;
}

std::string KRunUnitList(KRunUnitKind kind) {
  std::string out;
  for (const UnitRow &u : kUnits)
    if (u.kind == kind) {
      if (!out.empty()) out += ", ";
      out.append(u.names, strcspn(u.names, "|"));
    }
  return out;
}

namespace {

// "key=value,key=value" into `out` (indexed by channel).
bool ParsePairs(const std::string &text, const char *what, std::string out[KRUN_CHANNELS], std::string *error) {
  size_t at = 0;
  while (at <= text.size()) {
    size_t end = text.find(',', at);
    if (end == std::string::npos) end = text.size();
    const std::string pair = text.substr(at, end - at);
    const size_t eq = pair.find('=');
    if (eq == std::string::npos || eq == 0 || eq + 1 == pair.size()) {
      *error = std::string(what) + ": '" + pair + "' is not KEY=VALUE";
      return false;
    }
    const int c = KRunChannelByKey(pair.substr(0, eq));
    if (c < 0) {
      std::string keys;
      for (int k = 0; k < KRUN_CHANNELS; k++) keys += std::string(k ? ", " : "") + kChannels[k].key;
      *error = std::string(what) + ": unknown key '" + pair.substr(0, eq) + "' (known: " + keys + ")";
      return false;
    }
    out[c] = pair.substr(eq + 1);
    at = end + 1;
  }
  return true;
}

}  // namespace

bool KRunParseColumns(const std::string &text, KRunOptions *options, std::string *error) {
  return ParsePairs(text, "--columns", options->columns, error);
}

bool KRunParseUnits(const std::string &text, KRunOptions *options, std::string *error) {
  std::string units[KRUN_CHANNELS];
  if (!ParsePairs(text, "--units", units, error)) return false;
  for (int c = 0; c < KRUN_CHANNELS; c++) {
    if (units[c].empty()) continue;
    double f, o;
    if (!KRunUnitToSi(kChannels[c].kind, units[c], &f, &o)) {
      *error = "--units: '" + units[c] + "' is not a unit of " + kChannels[c].key + " (known: " +
               KRunUnitList(kChannels[c].kind) + ")";
      return false;
    }
    options->units[c] = units[c];
  }
  return true;
}

bool KRunParseAxes(const std::string &text, int *axes) {
  if (text == "auto") *axes = KAXES_AUTO;
  else if (text == "iso") *axes = KAXES_ISO;
  else if (text == "sae") *axes = KAXES_SAE;
  else return false;
  return true;
}
