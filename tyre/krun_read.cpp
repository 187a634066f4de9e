// Reading a rig run: the choice of reader, the columns matched to channels,
// the numbers, and the messages both readers give.
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "diag/qdebug.h"
#include "tyre/krun.h"
#include "tyre/krun_columns.h"

std::string KRunTrim(const std::string &s) {
  size_t a = 0, b = s.size();
  auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (a < b && blank(s[a])) a++;
  while (b > a && blank(s[b - 1])) b--;
  return s.substr(a, b - a);
}

void KRunSplitUnit(const std::string &field, std::string *name, std::string *unit) {
  const std::string f = KRunTrim(field);
  unit->clear();
  *name = f;
  if (f.size() < 3) return;
  const char close = f.back();
  const char open = close == ']' ? '[' : close == ')' ? '(' : 0;
  if (!open) return;
  const size_t at = f.rfind(open);
  if (at == std::string::npos || at == 0) return;
  *name = KRunTrim(f.substr(0, at));
  *unit = KRunTrim(f.substr(at + 1, f.size() - at - 2));
}

KRunReader::KRunReader(const char *fileName, const KRunOptions &options, KRunData *run)
    : fileName(fileName), options(options), run(run) {}

bool KRunReader::Fail(int line, int col, const char *fmt, ...) {
  char msg[768];
  va_list ap;
  va_start(ap, fmt);
  vsnprintf(msg, sizeof msg, fmt, ap);
  va_end(ap);
  char where[48] = "";
  if (line > 0 && col > 0) snprintf(where, sizeof where, ":%d:%d", line, col);
  else if (line > 0) snprintf(where, sizeof where, ":%d", line);
  const std::string error = std::string(fileName) + where + ": " + msg;
  const std::string name = run->fileName;
  *run = KRunData();
  run->fileName = name;
  run->error = error;
  if (!options.quiet) QERR_IN("KRunParse", "%s", error.c_str());
  return false;
}

namespace {

std::string ColumnList(const std::vector<KRunDeclared> &columns) {
  std::string out;
  for (const KRunDeclared &c : columns) out += (out.empty() ? "" : ", ") + c.name;
  return out;
}

}  // namespace

bool KRunReader::Assign(const std::vector<KRunDeclared> &columns, int line) {
  declared_ = columns;
  fieldChannel_.assign(columns.size(), -1);
  int fieldOf[KRUN_CHANNELS];
  for (int &f : fieldOf) f = -1;
  const std::string found = ColumnList(columns);
  // 1. the overrides name their columns exactly (any case)
  for (int c = 0; c < KRUN_CHANNELS; c++) {
    if (options.columns[c].empty()) continue;
    for (size_t f = 0; f < columns.size(); f++)
      if (!strcasecmp(columns[f].name.c_str(), options.columns[c].c_str())) {
        if (fieldOf[c] >= 0)
          return Fail(line, columns[f].col, "--columns %s=%s: more than one column is named '%s' (columns: %s)",
                      KRunChannelKey(c), options.columns[c].c_str(), columns[f].name.c_str(), found.c_str());
        if (fieldChannel_[f] >= 0)
          return Fail(line, columns[f].col, "--columns: column '%s' is given to both %s and %s",
                      columns[f].name.c_str(), KRunChannelKey(fieldChannel_[f]), KRunChannelKey(c));
        fieldOf[c] = int(f);
        fieldChannel_[f] = c;
      }
    if (fieldOf[c] < 0)
      return Fail(line, 0, "--columns %s=%s: no such column (columns: %s)", KRunChannelKey(c),
                  options.columns[c].c_str(), found.c_str());
  }
  // 2. the usual names for the rest; two columns for one channel is ambiguous
  for (size_t f = 0; f < columns.size(); f++) {
    if (fieldChannel_[f] >= 0) continue;
    const int c = KRunChannelByName(columns[f].name);
    if (c < 0 || !options.columns[c].empty()) continue;
    if (fieldOf[c] >= 0)
      return Fail(line, columns[f].col,
                  "'%s' and '%s' could both be %s (columns: %s); choose one with --columns %s=NAME",
                  columns[size_t(fieldOf[c])].name.c_str(), columns[f].name.c_str(), KRunChannelKey(c),
                  found.c_str(), KRunChannelKey(c));
    fieldOf[c] = int(f);
    fieldChannel_[f] = c;
  }
  // 3. what must be there
  if (fieldOf[KRUN_FZ] < 0 && !supplied_[KRUN_FZ])
    return Fail(line, 0, "no load column (fz: FZ, Fz, FZW or load) among the columns %s; name it with --columns fz=NAME",
                found.c_str());
  if (fieldOf[KRUN_FX] < 0 && fieldOf[KRUN_FY] < 0 && fieldOf[KRUN_MZ] < 0)
    return Fail(line, 0, "no force column (fx, fy or mz) among the columns %s; name one with --columns fy=NAME",
                found.c_str());
  // 4. units: --units first, then the file's; SI when neither says
  for (int c = 0; c < KRUN_CHANNELS; c++) {
    const int f = fieldOf[c];
    if (f < 0) continue;
    const KRunDeclared &d = columns[size_t(f)];
    KRunColumn &col = run->channel[c];
    col.present = true;
    col.name = d.name;
    col.unit = options.units[c].empty() ? d.unit : options.units[c];
    if (!options.units[c].empty() && !d.unit.empty() && strcasecmp(d.unit.c_str(), options.units[c].c_str()))
      run->notes.push_back(std::string("--units ") + KRunChannelKey(c) + "=" + options.units[c] + " overrides the file's '" +
                           d.unit + "' for " + d.name);
    if (!KRunUnitToSi(KRunChannelUnitKind(c), col.unit, &factor_[c], &offset_[c]))
      return Fail(line, d.col, "unit '%s' of column '%s' (%s) is not known (known: %s); give it with --units %s=UNIT",
                  col.unit.c_str(), d.name.c_str(), KRunChannelKey(c),
                  KRunUnitList(KRunChannelUnitKind(c)).c_str(), KRunChannelKey(c));
    // the file's own scaling comes first
    offset_[c] += d.offset * factor_[c];
    factor_[c] *= d.factor;
  }
  for (size_t f = 0; f < columns.size(); f++)
    if (fieldChannel_[f] < 0) run->ignored.push_back(columns[f].name);
  return true;
}

bool KRunReader::Value(size_t f, const char *text, size_t n, int line, int col) {
  const int c = fieldChannel_[f];
  char buf[64];
  if (n == 0 || n >= sizeof buf)
    return Fail(line, col, "column '%s' (%s): %s", declared_[f].name.c_str(), KRunChannelKey(c),
                n ? "a field too long to be a number" : "an empty field");
  memcpy(buf, text, n);
  buf[n] = 0;
  if (decimalComma_)
    for (char &ch : buf)
      if (ch == ',') ch = '.';
  char *end = nullptr;
  errno = 0;
  const double v = strtod(buf, &end);
  if (*end) return Fail(line, col, "column '%s' (%s): '%s' is not a number", declared_[f].name.c_str(), KRunChannelKey(c), buf);
  if (!std::isfinite(v) || errno == ERANGE)
    return Fail(line, col, "column '%s' (%s): '%s' is not a finite number", declared_[f].name.c_str(),
                KRunChannelKey(c), buf);
  run->channel[c].v.push_back(v * factor_[c] + offset_[c]);
  return true;
}

bool KRunReader::Number(size_t f, double v, size_t row) {
  const int c = fieldChannel_[f];
  if (!std::isfinite(v))
    return Fail(0, 0, "column '%s' (%s), row %zu: %g is not a finite number", declared_[f].name.c_str(), KRunChannelKey(c),
                row, v);
  run->channel[c].v.push_back(v * factor_[c] + offset_[c]);
  return true;
}

bool KRunReader::Finish(int line) {
  if (run->rows == 0) return Fail(line, 0, "no data rows");
  for (int c = 0; c < KRUN_CHANNELS; c++)
    if (run->channel[c].present && run->channel[c].v.size() != run->rows)
      return Fail(line, 0, "column '%s' has %zu values for %zu rows", run->channel[c].name.c_str(),
                  run->channel[c].v.size(), run->rows);
  if (!run->channel[KRUN_TIME].present) {
    run->channel[KRUN_TIME].v.resize(run->rows);
    for (size_t i = 0; i < run->rows; i++) run->channel[KRUN_TIME].v[i] = double(i);
    run->timeFromRows = true;
    run->notes.push_back("no time column: the rows taken as points, not a time series (no relaxation lag)");
  }
  bool anyUnit = false;
  for (int c = 0; c < KRUN_CHANNELS; c++) anyUnit = anyUnit || !run->channel[c].unit.empty();
  if (!anyUnit) run->notes.push_back("no units in the file: every column taken in SI units (rad, ratio, N, N·m); --units says otherwise");
  return true;
}

bool KRunParse(const char *text, size_t size, const char *fileName, const KRunOptions &options, KRunData *run) {
  size_t i = 0;
  while (i < size && (text[i] == ' ' || text[i] == '\t' || text[i] == '\r' || text[i] == '\n')) i++;
  if (i + 1 < size && text[i] == '*' && text[i + 1] == '*') return KRunParseTydex(text, size, fileName, options, run);
  return KRunParseText(text, size, fileName, options, run);
}

bool KRunFromColumns(const std::vector<std::string> &names, const std::vector<const double *> &values, size_t rows,
                     const char *source, const KRunOptions &options, KRunData *run) {
  *run = KRunData();
  run->fileName = source ? source : "<columns>";
  run->format = "columns";
  KRunReader r(run->fileName.c_str(), options, run);
  std::vector<KRunDeclared> columns;
  for (const std::string &n : names) {
    KRunDeclared d;
    KRunSplitUnit(n, &d.name, &d.unit);
    columns.push_back(d);
  }
  if (!r.Assign(columns, 0)) return false;
  for (size_t f = 0; f < names.size(); f++) {
    if (r.ChannelOf(f) < 0) continue;
    for (size_t i = 0; i < rows; i++)
      if (!r.Number(f, values[f][i], i + 1)) return false;
  }
  run->rows = rows;
  return r.Finish(0);
}

bool KRunReadFile(const char *fileName, std::string *text, std::string *error) {
  FILE *f = fopen(fileName, "rb");
  if (!f) {
    *error = std::string(fileName) + ": cannot open: " + strerror(errno);
    return false;
  }
  text->clear();
  char buf[65536];
  size_t n;
  while ((n = fread(buf, 1, sizeof buf, f)) > 0) text->append(buf, n);
  const bool bad = ferror(f) != 0;
  fclose(f);
  if (bad) *error = std::string(fileName) + ": read error";
  return !bad;
}

bool KRunIsTidyCsv(const char *text, size_t size) {
  static const char *const tidy[] = {"fz", "kappa", "alpha", "gamma", "fx", "fy", "mz", "pressure"};
  size_t at = 0;
  int line = 0;
  while (at < size && line < 2) {
    const char *nl = static_cast<const char *>(memchr(text + at, '\n', size - at));
    const size_t end = nl ? size_t(nl - text) : size;
    const std::string t = KRunTrim(std::string(text + at, end - at));
    at = end + 1;
    if (t.empty() || t[0] == '#') continue;
    if (line++ == 0) {
      // the names: none of a rig's own, no units, no semicolons, not TYDEX
      if (t.compare(0, 2, "**") == 0 || t.find_first_of(";[(") != std::string::npos) return false;
      size_t p = 0;
      while (p < t.size()) {
        const size_t q = std::min(t.find_first_of(", \t", p), t.size());
        const std::string name = t.substr(p, q - p);
        p = q + 1;
        if (name.empty()) continue;
        bool isTidy = false;
        for (const char *n : tidy) isTidy = isTidy || !strcasecmp(name.c_str(), n);
        if (!isTidy && KRunChannelByName(name) >= 0) return false;
      }
      continue;
    }
    // the row after the names: a units row (no field a number) is not tidy;
    // a row with a bad number among good ones stays the tidy reader's
    size_t p = 0;
    int numbers = 0, fields = 0;
    while (p < t.size()) {
      const size_t q = std::min(t.find_first_of(", \t", p), t.size());
      const std::string field = t.substr(p, q - p);
      p = q + 1;
      if (field.empty()) continue;
      char *e = nullptr;
      strtod(field.c_str(), &e);
      fields++;
      numbers += *e == 0;
    }
    return fields == 0 || numbers > 0;
  }
  return true;
}
