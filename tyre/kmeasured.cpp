// The measured-data CSV reader: header, rows, and the messages for bad input.
#include "tyre/kmeasured.h"

#include <cerrno>
#include <cstdarg>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/qdebug.h"

namespace {

// Column names in table order; the first four are the operating point, the
// next three the channels (column KCOL_FX + channel), then the optional
// inflation pressure.
const char *const kColumnNames[KMEASURED_COLUMNS + 1] = {"fz", "kappa", "alpha", "gamma",
                                                         "fx", "fy",    "mz",    "pressure"};
enum { KCOL_FZ = 0, KCOL_FX = 4, KCOL_PRESSURE = KMEASURED_COLUMNS, KCOL_ALL = KMEASURED_COLUMNS + 1 };

const char *const kChannelNames[KCH_COUNT] = {"Fx", "Fy", "Mz"};

double *Field(KMeasuredPoint &p, int column) {
  double *inputs[] = {&p.fz, &p.kappa, &p.alpha, &p.gamma};
  if (column == KCOL_PRESSURE) return &p.pressure;
  return column < KCOL_FX ? inputs[column] : &p.force[column - KCOL_FX];
}

// One line split into fields: at commas when the line has one (blanks
// around a field are dropped), otherwise at runs of blanks and tabs.
std::vector<std::string> SplitFields(const std::string &line) {
  std::vector<std::string> out;
  auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  if (line.find(',') != std::string::npos) {
    size_t start = 0;
    for (;;) {
      size_t end = line.find(',', start);
      if (end == std::string::npos) end = line.size();
      size_t a = start, b = end;
      while (a < b && blank(line[a])) a++;
      while (b > a && blank(line[b - 1])) b--;
      out.push_back(line.substr(a, b - a));
      if (end == line.size()) break;
      start = end + 1;
    }
    return out;
  }
  size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && blank(line[i])) i++;
    size_t b = i;
    while (i < line.size() && !blank(line[i])) i++;
    if (i > b) out.push_back(line.substr(b, i - b));
  }
  return out;
}

// Blank lines and '#' comments carry no data.
bool Skipped(const std::string &line) {
  for (char c : line) {
    if (c == '#') return true;
    if (c != ' ' && c != '\t' && c != '\r') return false;
  }
  return true;
}

// The reading state: source name, line number and the problem once found.
struct Reader {
  const char *fileName;
  KMeasuredData *data;
  bool quiet = false;
  int lineNo = 0;
  int columns[KCOL_ALL] = {};  // field index of each column, -1: absent
  int fieldCount = 0;

  bool Fail(const char *fmt, ...) QFMT(2, 3);
  bool Header(const std::vector<std::string> &fields);
  bool Row(const std::vector<std::string> &fields);
};

bool Reader::Fail(const char *fmt, ...) {
  char msg[512];
  va_list ap;
  va_start(ap, fmt);
  vsnprintf(msg, sizeof msg, fmt, ap);
  va_end(ap);
  char where[64] = "";
  if (lineNo > 0) snprintf(where, sizeof where, ":%d", lineNo);
  data->error = std::string(fileName) + where + ": " + msg;
  data->points.clear();
  if (!quiet) QERR_IN("KMeasuredParse", "%s", data->error.c_str());
  return false;
}

bool Reader::Header(const std::vector<std::string> &fields) {
  for (int &c : columns) c = -1;
  fieldCount = int(fields.size());
  for (int f = 0; f < fieldCount; f++) {
    int col = -1;
    for (int c = 0; c < KCOL_ALL; c++)
      if (!strcasecmp(fields[size_t(f)].c_str(), kColumnNames[c])) col = c;
    if (col < 0)
      return Fail("column %d: unknown name '%s' (known: fz, kappa, alpha, gamma, fx, fy, mz)", f + 1,
                  fields[size_t(f)].c_str());
    if (columns[col] >= 0)
      return Fail("column %d: '%s' is already column %d", f + 1, kColumnNames[col], columns[col] + 1);
    columns[col] = f;
  }
  if (columns[KCOL_FZ] < 0) return Fail("no 'fz' column (the load, N)");
  bool anyForce = false;
  for (int ch = 0; ch < KCH_COUNT; ch++) {
    data->has[ch] = columns[KCOL_FX + ch] >= 0;
    anyForce = anyForce || data->has[ch];
  }
  if (!anyForce) return Fail("no force column (fx, fy or mz)");
  return true;
}

bool Reader::Row(const std::vector<std::string> &fields) {
  if (int(fields.size()) != fieldCount)
    return Fail("%zu fields where the header has %d", fields.size(), fieldCount);
  KMeasuredPoint p;
  for (int c = 0; c < KCOL_ALL; c++) {
    const int f = columns[c];
    if (f < 0) continue;
    const std::string &text = fields[size_t(f)];
    char *end = nullptr;
    errno = 0;
    const double v = strtod(text.c_str(), &end);
    if (text.empty() || *end)
      return Fail("column %d (%s): '%s' is not a number", f + 1, kColumnNames[c], text.c_str());
    if (!std::isfinite(v) || errno == ERANGE)
      return Fail("column %d (%s): '%s' is not a finite number", f + 1, kColumnNames[c], text.c_str());
    if (c == KCOL_PRESSURE && v < 0)
      return Fail("column %d (pressure): '%s' is not a pressure (Pa; 0 where it is unknown)", f + 1, text.c_str());
    *Field(p, c) = v;
  }
  data->points.push_back(p);
  return true;
}

}  // namespace

const char *KMeasuredColumnName(int column) {
  return column >= 0 && column < KMEASURED_COLUMNS ? kColumnNames[column] : "?";
}

const char *KChannelName(int channel) {
  return channel >= 0 && channel < KCH_COUNT ? kChannelNames[channel] : "?";
}

bool KMeasuredParse(const char *text, size_t size, const char *fileName, KMeasuredData *data, bool quiet) {
  *data = KMeasuredData();
  Reader r{fileName ? fileName : "<data>", data, quiet};
  bool haveHeader = false;
  size_t at = 0;
  while (at < size) {
    // 1. the next line, without its end
    const char *nl = static_cast<const char *>(memchr(text + at, '\n', size - at));
    const size_t end = nl ? size_t(nl - text) : size;
    const std::string line(text + at, end - at);
    at = end + 1;
    r.lineNo++;
    if (line.find('\0') != std::string::npos) return r.Fail("a NUL byte in the line");
    if (Skipped(line)) continue;
    // 2. the header, then rows
    const std::vector<std::string> fields = SplitFields(line);
    if (!haveHeader) {
      if (!r.Header(fields)) return false;
      haveHeader = true;
    } else if (!r.Row(fields)) {
      return false;
    }
  }
  r.lineNo = 0;
  if (!haveHeader) return r.Fail("no header line (expected names such as fz,kappa,alpha,gamma,fx,fy,mz)");
  if (data->points.empty()) return r.Fail("no data rows after the header");
  return true;
}

bool KMeasuredRead(const char *fileName, KMeasuredData *data) {
  *data = KMeasuredData();
  FILE *f = fopen(fileName, "rb");
  if (!f) {
    data->error = std::string(fileName) + ": cannot open: " + strerror(errno);
    QERR("%s", data->error.c_str());
    return false;
  }
  std::string text;
  char buf[65536];
  size_t n;
  while ((n = fread(buf, 1, sizeof buf, f)) > 0) text.append(buf, n);
  const bool readError = ferror(f) != 0;
  fclose(f);
  if (readError) {
    data->error = std::string(fileName) + ": read error";
    QERR("%s", data->error.c_str());
    return false;
  }
  return KMeasuredParse(text.data(), text.size(), fileName, data);
}

bool KMeasuredHasPressure(const KMeasuredData &data) {
  for (const KMeasuredPoint &p : data.points)
    if (p.pressure > 0) return true;
  return false;
}

std::string KMeasuredFormat(const KMeasuredData &data) {
  const bool pressure = KMeasuredHasPressure(data);
  auto written = [&data, pressure](int c) {
    return c == KCOL_PRESSURE ? pressure : c < KCOL_FX || data.has[c - KCOL_FX];
  };
  std::string out;
  for (int c = 0; c < KCOL_ALL; c++) {
    if (!written(c)) continue;
    out += c ? "," : "";
    out += kColumnNames[c];
  }
  out += "\n";
  char buf[32];
  for (const KMeasuredPoint &p : data.points) {
    KMeasuredPoint q = p;
    for (int c = 0; c < KCOL_ALL; c++) {
      if (!written(c)) continue;
      snprintf(buf, sizeof buf, "%s%.17g", c ? "," : "", *Field(q, c));
      out += buf;
    }
    out += "\n";
  }
  return out;
}
