// The delimited-text run reader: a names row (units in brackets allowed),
// an optional units row, then one row of numbers per sample. Fields are
// separated by semicolons, commas, tabs or runs of blanks, whichever the
// names row uses first in that order; with semicolons a decimal comma is
// read as a point. Blank lines and lines starting with '#' are skipped.
#include <cstdlib>
#include <cstring>

#include "tyre/krun.h"
#include "tyre/krun_columns.h"

namespace {

enum Sep { SEP_SEMICOLON, SEP_COMMA, SEP_TAB, SEP_BLANKS };

struct Field {
  size_t at, n;  // within the line
};

// Splits a line; with blanks, a bracketed unit standing alone ("SA (deg)")
// stays with the name before it.
void Split(const std::string &line, Sep sep, std::vector<Field> *out) {
  out->clear();
  auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  if (sep != SEP_BLANKS) {
    const char d = sep == SEP_SEMICOLON ? ';' : sep == SEP_COMMA ? ',' : '\t';
    size_t start = 0;
    for (;;) {
      size_t end = line.find(d, start);
      if (end == std::string::npos) end = line.size();
      size_t a = start, b = end;
      while (a < b && blank(line[a])) a++;
      while (b > a && blank(line[b - 1])) b--;
      out->push_back({a, b - a});
      if (end == line.size()) break;
      start = end + 1;
    }
    // a trailing separator leaves an empty last field: not a column
    if (out->size() > 1 && out->back().n == 0) out->pop_back();
    return;
  }
  size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && blank(line[i])) i++;
    const size_t b = i;
    while (i < line.size() && !blank(line[i])) i++;
    if (i == b) continue;
    const char first = line[b], last = line[i - 1];
    if (!out->empty() && ((first == '(' && last == ')') || (first == '[' && last == ']')))
      out->back().n = i - out->back().at;
    else
      out->push_back({b, i - b});
  }
}

bool Skipped(const std::string &line) {
  for (char c : line) {
    if (c == '#') return true;
    if (c != ' ' && c != '\t' && c != '\r') return false;
  }
  return true;
}

bool LooksNumeric(const std::string &s) {
  if (s.empty()) return false;
  char *end = nullptr;
  std::string t = s;
  for (char &c : t)
    if (c == ',') c = '.';
  strtod(t.c_str(), &end);
  return *end == 0;
}

}  // namespace

bool KRunParseText(const char *text, size_t size, const char *fileName, const KRunOptions &options, KRunData *run) {
  *run = KRunData();
  run->fileName = fileName ? fileName : "<run>";
  run->format = "text";
  KRunReader r(run->fileName.c_str(), options, run);
  std::vector<KRunDeclared> columns;
  std::vector<Field> fields;
  Sep sep = SEP_BLANKS;
  int lineNo = 0, namesLine = 0;
  bool haveNames = false, unitsDecided = false;
  size_t at = 0;
  std::string line;
  while (at < size) {
    const char *nl = static_cast<const char *>(memchr(text + at, '\n', size - at));
    const size_t end = nl ? size_t(nl - text) : size;
    line.assign(text + at, end - at);
    at = end + 1;
    lineNo++;
    if (line.find('\0') != std::string::npos) return r.Fail(lineNo, int(line.find('\0')) + 1, "a NUL byte");
    if (Skipped(line)) continue;
    // 1. the names row decides the separator
    if (!haveNames) {
      sep = line.find(';') != std::string::npos   ? SEP_SEMICOLON
            : line.find(',') != std::string::npos ? SEP_COMMA
            : line.find('\t') != std::string::npos ? SEP_TAB
                                                  : SEP_BLANKS;
      Split(line, sep, &fields);
      for (const Field &f : fields) {
        KRunDeclared d;
        KRunSplitUnit(line.substr(f.at, f.n), &d.name, &d.unit);
        d.line = lineNo;
        d.col = int(f.at) + 1;
        if (d.name.empty()) return r.Fail(lineNo, d.col, "an empty column name");
        if (LooksNumeric(d.name))
          return r.Fail(lineNo, d.col, "'%s' is a number where the names row should be (a names row such as SA;SL;FZ;FY comes first)",
                        d.name.c_str());
        columns.push_back(d);
      }
      haveNames = true;
      namesLine = lineNo;
      r.SetDecimalComma(sep == SEP_SEMICOLON);
      continue;
    }
    Split(line, sep, &fields);
    // 2. a units row, when the row after the names is not all numbers
    if (!unitsDecided) {
      unitsDecided = true;
      bool numbers = true;
      for (const Field &f : fields) numbers = numbers && LooksNumeric(line.substr(f.at, f.n));
      if (!numbers) {
        if (fields.size() != columns.size())
          return r.Fail(lineNo, 0, "the units row has %zu fields where the names row (line %d) has %zu", fields.size(),
                        namesLine, columns.size());
        for (size_t f = 0; f < fields.size(); f++) {
          std::string u = KRunTrim(line.substr(fields[f].at, fields[f].n));
          if (u.size() >= 2 && ((u.front() == '[' && u.back() == ']') || (u.front() == '(' && u.back() == ')')))
            u = KRunTrim(u.substr(1, u.size() - 2));
          if (!columns[f].unit.empty() && !u.empty() && u != columns[f].unit)
            return r.Fail(lineNo, int(fields[f].at) + 1, "column '%s': unit '%s' here but '%s' in its name",
                          columns[f].name.c_str(), u.c_str(), columns[f].unit.c_str());
          if (!u.empty()) columns[f].unit = u;
        }
        if (!r.Assign(columns, namesLine)) return false;
        continue;
      }
      if (!r.Assign(columns, namesLine)) return false;
    }
    // 3. a row of numbers
    if (fields.size() != columns.size())
      return r.Fail(lineNo, 0, "%zu fields where the names row (line %d) has %zu", fields.size(), namesLine,
                    columns.size());
    for (size_t f = 0; f < fields.size(); f++)
      if (r.ChannelOf(f) >= 0 && !r.Value(f, line.data() + fields[f].at, fields[f].n, lineNo, int(fields[f].at) + 1))
        return false;
    run->rows++;
  }
  if (!haveNames) return r.Fail(0, 0, "no names row (such as SA;SL;FZ;FX;FY;MZ)");
  if (!unitsDecided && !r.Assign(columns, namesLine)) return false;
  return r.Finish(lineNo);
}
