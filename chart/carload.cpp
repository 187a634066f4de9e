// Car and tyre-file loading.
#include "chart/carload.h"

#include <sys/stat.h>

#include <cctype>
#include <cstdio>
#include <cstring>

#include "base/qinfo.h"
#include "tyre/kpacejka.h"

std::string CarWheelSection(int wheel) {
  char buf[32];
  snprintf(buf, sizeof buf, "wheel%d.pacejka", wheel);
  return buf;
}

std::string CarIniPath(const char *car) {
  std::string path = "data/cars/";
  path += car ? car : "";
  path += "/car.ini";
  return path;
}

void CarLoadTyres(const char *car, KPacejka *const tyres[CAR_WHEELS]) {
  // Silent: a car that is not there leaves the tyres at their reset values,
  // and the window shows flat curves rather than an error.
  QInfo *info = new QInfo(CarIniPath(car).c_str(), QINFO_SILENT);
  for (int w = 0; w < CAR_WHEELS; w++) tyres[w]->Load(info, CarWheelSection(w).c_str());
  delete info;
}

unsigned CarWheelsWithoutTyre(const char *car, bool *carFound) {
  const std::string path = CarIniPath(car);
  struct stat st;
  *carFound = stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
  if (!*carFound) return (1u << CAR_WHEELS) - 1;
  QInfo *info = new QInfo(path.c_str(), QINFO_SILENT);
  unsigned without = 0;
  for (int w = 0; w < CAR_WHEELS; w++)
    if (!info->FindNode(CarWheelSection(w).c_str())) without |= 1u << w;
  delete info;
  return without;
}

std::string CarNoteText(const char *car, bool carFound, unsigned withoutTyre) {
  const std::string name = std::string("car \"") + (car ? car : "") + "\"";
  if (!carFound) return name + " not found (" + CarIniPath(car) + "): no tyre on any wheel";
  std::string wheels;
  int count = 0, last = 0;
  for (int w = 0; w < CAR_WHEELS; w++) {
    if (!(withoutTyre & (1u << w))) continue;
    wheels += std::string(count ? ", " : "") + WHEEL_NAMES[w];
    count++;
    last = w;
  }
  if (!count) return "";
  if (count == 1) return name + " has no tyre on " + wheels + " (no " + CarWheelSection(last) + " section)";
  return name + " has no tyre on " + wheels + " (no pacejka sections)";
}

std::string CarResolveSource(const std::string &source, const std::string &base) {
  struct stat st;
  if (source.empty() || stat(source.c_str(), &st) == 0 || source.find('/') != std::string::npos) return source;
  for (const char *folder : {"/data/cars/", "/data/tyres/"}) {
    std::string path = base + folder + source;
    if (stat(path.c_str(), &st) == 0) return path;
  }
  return source;
}

static bool EndsWith(const char *name, const char *ext) {
  size_t n = strlen(name), e = strlen(ext);
  if (n < e) return false;
  for (size_t i = 0; i < e; i++)
    if (tolower((unsigned char)name[n - e + i]) != ext[i]) return false;
  return true;
}

static bool EndsWithTir(const char *name) { return EndsWith(name, ".tir"); }

// The first line of `text` that is neither blank nor a comment (';' in info
// files, '#' in measured data), without its line end.
static std::string FirstContentLine(const std::string &text) {
  size_t at = 0;
  while (at < text.size()) {
    size_t end = text.find('\n', at);
    if (end == std::string::npos) end = text.size();
    size_t b = text.find_first_not_of(" \t\r", at);
    if (b < end && text[b] != ';' && text[b] != '#') return text.substr(b, end - b);
    at = end + 1;
  }
  return "";
}

std::string CarNotATyre(const char *path, int wheel) {
  static const char kTyres[] = "a tyre is a .tir file, a car.ini or a car folder";
  const std::string name = path;
  std::string text;
  if (FILE *f = fopen(path, "rb")) {
    char buf[4096];
    size_t n;
    while (text.size() < (1u << 20) && (n = fread(buf, 1, sizeof buf, f)) > 0) text.append(buf, n);
    fclose(f);
  }
  // TYDEX files mark their sections with "**" at the start of a line.
  if (EndsWith(path, ".tdx") || text.rfind("**", 0) == 0 || text.find("\n**") != std::string::npos)
    return name + ": a TYDEX measurement file, not a tyre (" + kTyres + "; `fit` makes one from measured data)";
  const std::string first = FirstContentLine(text);
  if (EndsWith(path, ".csv") ||
      (first.find(',') != std::string::npos && first.find_first_of("={}") == std::string::npos))
    return name + ": measured data (CSV), not a tyre (" + kTyres + "; `fit` makes one from measured data)";
  // Every tyre section is named "pacejka"; a file without the word holds none.
  if (text.find("pacejka") == std::string::npos)
    return name + ": holds no tyre (no " + CarWheelSection(wheel) + " section; " + kTyres + ")";
  return "";
}

bool CarLoadTyreSource(const char *source, int wheel, KPacejka *tyre, std::string *error) {
  if (wheel < 0 || wheel >= CAR_WHEELS) {
    *error = "wheel " + std::to_string(wheel) + " is not 0..3";
    return false;
  }
  std::string path = source;
  struct stat st;
  if (stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) {
    path += "/car.ini";
    if (stat(path.c_str(), &st) != 0) {
      *error = std::string(source) + ": folder holds no car.ini";
      return false;
    }
  } else if (stat(path.c_str(), &st) != 0) {
    *error = path + ": no such file";
    return false;
  }
  if (EndsWithTir(path.c_str())) {
    tyre->LoadFromTirFile(path.c_str());
    return true;
  }
  // A file of another kind gets one message here rather than the info
  // reader's warnings about each of its lines.
  *error = CarNotATyre(path.c_str(), wheel);
  if (!error->empty()) return false;
  QInfo *info = new QInfo(path.c_str());
  const bool found = info->FindNode(CarWheelSection(wheel).c_str()) != nullptr;
  if (found) tyre->Load(info, CarWheelSection(wheel).c_str());
  delete info;
  if (!found)
    *error = path + ": holds no tyre for wheel " + std::to_string(wheel) + " (no " + CarWheelSection(wheel) + " section)";
  return found;
}
