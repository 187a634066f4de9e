// PTirFile: the TIR property reader (see ptirfile.h).
#include "tyre/ptirfile.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/qfile.h"
#include "base/qstring.h"
#include "diag/qdebug.h"

#undef QDIAG_TAG
#define QDIAG_TAG "tir"

static char *Copy(const char *s) {
  const size_t n = strlen(s) + 1;
  char *p = static_cast<char *>(malloc(n));
  if (p) memcpy(p, s, n);
  return p;
}

static void LowerAscii(std::string &s) {
  for (char &c : s)
    if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
}

// Spaces only: a tab next to a value stays in it (atof skips it).
static std::string TrimSpaces(const std::string &s) {
  size_t b = 0, e = s.size();
  while (b < e && s[b] == ' ') b++;
  while (e > b && s[e - 1] == ' ') e--;
  return s.substr(b, e - b);
}

PTirFile::PTirFile(const char *name) : fileName(Copy(name ? name : "")), count(0) { Load(); }

PTirFile::~PTirFile() {
  for (int i = 0; i < count; i++) {
    free(names[i]);
    free(values[i]);
  }
  free(fileName);
}

// One line without its line end (LF or CRLF); false at the end of the file.
static bool ReadLine(FILE *fp, std::string &line) {
  line.clear();
  int c;
  while ((c = fgetc(fp)) != EOF && c != '\n') line += char(c);
  if (c == EOF && line.empty()) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

bool PTirFile::Load() {
  // 1.
  FILE *fp = qfopen(fileName, "rb");
  if (!fp) {
    QWARN("PTirFile:Load(%s); can't open file", fileName);
    return false;
  }
  // 2.
  std::string section, line;
  while (ReadLine(fp, line)) {
    if (line.empty()) continue;
    // 3. comments
    const char first = line[0];
    if (first == '$' || first == '\'' || first == '!') continue;
    // 4. "[NAME]" -> "NAME."
    if (first == '[') {
      qstring s(line.c_str());
      s.CutTrailingSpaces();
      section = s.Length() >= 2 ? std::string(s.c_str() + 1, size_t(s.Length() - 2)) : "";
      section += ".";
      continue;
    }
    // 5. properties; 6. everything else is ignored
    if (line.find('=') != std::string::npos) AddProperty(section.c_str(), line.c_str());
  }
  qfclose(fp);
  return true;
}

void PTirFile::AddProperty(const char *section, const char *text) {
  // 5.1 a fixed table: report what does not fit rather than grow it
  if (count >= MAX_PROPERTIES) {
    QERR_IN("PTirFile::Load", "PTirFile:Load(); too many properties - skipping");
    return;
  }
  // 5.2-5.3
  std::string line(text, strnlen(text, MAX_LINE));
  const size_t eq = line.find('=');
  if (eq == std::string::npos) return;  // the "=" lay beyond the kept characters
  size_t b = eq + 1;
  while (b < line.size() && line[b] == ' ') b++;
  size_t e = line.find(' ', b);
  std::string value = line.substr(b, (e == std::string::npos ? line.size() : e) - b);
  // 5.4 section + key, trailing blanks cut, lower case; leading blanks of the key stay
  qstring key(line.substr(0, eq).c_str());
  key.CutTrailingSpaces();
  std::string name = std::string(section) + key.c_str();
  LowerAscii(name);
  // 5.5 some files write the load scaling with the letter O
  if (name.size() >= 5 && name.compare(name.size() - 5, 5, ".lfzo") == 0) name.back() = '0';
  // 5.6
  names[count] = Copy(name.c_str());
  values[count] = Copy(TrimSpaces(value).c_str());
  if (!names[count] || !values[count]) {
    free(names[count]);
    free(values[count]);
    QERR_IN("PTirFile::Load", "PTirFile:Load(%s); out of memory", fileName);
    return;
  }
  count++;
}

int PTirFile::FindIndex(const char *name) const {
  for (int i = 0; i < count; i++)
    if (!strcmp(names[i], name)) return i;
  return -1;
}

static std::string Lower(const char *name) {
  std::string s(name ? name : "");
  LowerAscii(s);
  return s;
}

float PTirFile::GetFloat(const char *name, float def) const {
  const int i = FindIndex(Lower(name).c_str());
  return i < 0 ? def : float(atof(values[i]));
}

int PTirFile::GetInt(const char *name, int def) const {
  const int i = FindIndex(Lower(name).c_str());
  return i < 0 ? def : atoi(values[i]);
}
