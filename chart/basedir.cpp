// Finding the base folder of the tool.
#include "chart/basedir.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

static bool IsFolder(const std::string &path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

static bool IsFile(const std::string &path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

// The folder part of a path ("/a/b" -> "/a", "/a" -> "", "a" -> ".").
static std::string Parent(const std::string &path) {
  size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return path.substr(0, slash);
}

std::string BaseFolderFrom(const std::string &exePath) {
  std::string dir = Parent(exePath);
  // Walk up to the root; "" stands for "/" once the last name is cut.
  for (;;) {
    std::string probe = dir.empty() ? "/data" : dir + "/data";
    if (IsFolder(probe)) return dir.empty() ? "/" : dir;
    if (dir.empty() || dir == ".") return "";
    dir = Parent(dir);
  }
}

static std::string ExecutablePath() {
  char buf[4096];
  ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
  if (n <= 0) return "";
  buf[n] = 0;
  return buf;
}

std::string BaseFolderFind() {
  const char *home = getenv("TYROGRAPH_HOME");
  if (home && *home) return home;
  std::string base = BaseFolderFrom(ExecutablePath());
  if (!base.empty()) return base;
  return ".";
}

bool BaseFolderSeedSettings(const std::string &base) {
  std::string target = base + "/pacejka.ini";
  std::string source = base + "/data/pacejka.ini";
  if (IsFile(target) || !IsFile(source)) return true;
  FILE *in = fopen(source.c_str(), "rb");
  if (!in) return false;
  FILE *out = fopen(target.c_str(), "wb");
  if (!out) {
    fclose(in);
    return false;
  }
  char buf[4096];
  size_t n;
  bool ok = true;
  while ((n = fread(buf, 1, sizeof buf, in)) > 0) {
    if (fwrite(buf, 1, n, out) != n) ok = false;
  }
  fclose(in);
  if (fclose(out) != 0) ok = false;
  return ok;
}
