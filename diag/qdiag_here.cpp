// The tag and function name that the QERR family of macros fill in.
#include <cstring>

#include "diag/qdebug.h"

namespace {

void CopyCut(char *out, size_t cap, const char *from, size_t n) {
  if (n >= cap) n = cap - 1;
  memcpy(out, from, n);
  out[n] = 0;
}

// Removes every occurrence of `what` from the zero-terminated `s`.
void Erase(char *s, const char *what) {
  size_t n = strlen(what);
  for (char *p = strstr(s, what); p; p = strstr(p, what)) memmove(p, p + n, strlen(p + n) + 1);
}

}  // namespace

QDiagTag::QDiagTag(const char *file) {
  const char *base = strrchr(file, '/');
  base = base ? base + 1 : file;
  CopyCut(name, sizeof name, base, strcspn(base, "_."));
}

QDiagFunc::QDiagFunc(const char *signature) {
  // "const char* QInfo::GetString(const char*, const char*)" or, inside a
  // lambda, "QInfo::Read(const char*)::<lambda(int)>": the name is the last
  // blank-separated word before the first '('.
  size_t open = strcspn(signature, "(");
  size_t start = open;
  while (start > 0 && signature[start - 1] != ' ') start--;
  CopyCut(name, sizeof name, signature + start, open - start);
  Erase(name, "{anonymous}::");
  Erase(name, "(anonymous namespace)::");
}
