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

static bool EndsWithTir(const char *name) {
  size_t n = strlen(name);
  if (n < 4) return false;
  const char *ext = name + n - 4;
  return ext[0] == '.' && tolower((unsigned char)ext[1]) == 't' && tolower((unsigned char)ext[2]) == 'i' &&
         tolower((unsigned char)ext[3]) == 'r';
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
  QInfo *info = new QInfo(path.c_str());
  tyre->Load(info, CarWheelSection(wheel).c_str());
  delete info;
  return true;
}
