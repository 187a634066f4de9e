// The TYDEX run reader. A file is a sequence of blocks, each opened by a
// keyword line starting with "**":
//   **HEADER          first; name, description, value lines (kept as notes)
//   **COMMENTS        free text
//   **CONSTANTS       name, description, unit, value: a quantity held for
//                     the whole measurement (a channel missing from the
//                     measured ones takes it in every row)
//   **MEASURCHANNELS  name, description, unit, conversion factor, offset
//                     (a third number, a further offset, is added too):
//                     value = raw × factor + offsets
//   **MEASURDATA      one row of numbers per sample, a field per channel
//   **END             the end; anything after it is not read
// Other blocks (**MODELDEFINITION, **MODELPARAMETERS, ...) are skipped.
// Lines starting with '!' are comments. Name, description and unit stand in
// columns 1-10, 11-40 and 41-50 when the line is that long and column 40 is
// blank; otherwise the name is the first word, the numbers the last words
// and the unit the word before them.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "tyre/krun.h"
#include "tyre/krun_columns.h"

namespace {

enum Block { B_NONE, B_HEADER, B_COMMENTS, B_CONSTANTS, B_CHANNELS, B_DATA, B_OTHER };

struct Word {
  size_t at, n;
};

void Words(const std::string &line, std::vector<Word> *out) {
  out->clear();
  size_t i = 0;
  auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (i < line.size()) {
    while (i < line.size() && blank(line[i])) i++;
    const size_t b = i;
    while (i < line.size() && !blank(line[i])) i++;
    if (i > b) out->push_back({b, i - b});
  }
}

bool Number(const std::string &s, double *v) {
  if (s.empty()) return false;
  char *end = nullptr;
  *v = strtod(s.c_str(), &end);
  return *end == 0;
}

// A definition line: name, unit and the trailing numbers.
struct Definition {
  std::string name, unit;
  std::vector<double> numbers;
  int unitCol = 0;
};

bool ParseDefinition(const std::string &line, Definition *d, std::string *problem, bool columns = true) {
  std::vector<Word> w;
  Words(line, &w);
  if (w.empty()) return false;
  d->name = line.substr(w[0].at, w[0].n);
  d->numbers.clear();
  d->unit.clear();
  const bool fixed = columns && line.size() > 40 && (line[39] == ' ' || line[39] == '\t') && w[0].at < 10;
  if (fixed) {
    d->unit = KRunTrim(line.substr(40, 10));
    d->unitCol = 41;
    std::vector<Word> rest;
    const std::string tail = line.size() > 50 ? line.substr(50) : "";
    Words(tail, &rest);
    for (const Word &r : rest) {
      double v;
      if (!Number(tail.substr(r.at, r.n), &v)) {
        char buf[96];
        snprintf(buf, sizeof buf, "'%.*s' is not a number", int(std::min<size_t>(r.n, 64)), tail.c_str() + r.at);
        *problem = buf;
        return false;
      }
      d->numbers.push_back(v);
    }
    double v;
    // a number in the unit's columns: the line is not in columns after all
    if (!d->unit.empty() && Number(d->unit, &v)) return ParseDefinition(line, d, problem, false);
    return true;
  }
  size_t k = w.size();
  while (k > 1) {
    double v;
    if (!Number(line.substr(w[k - 1].at, w[k - 1].n), &v)) break;
    k--;
  }
  for (size_t i = k; i < w.size(); i++) d->numbers.push_back(strtod(line.substr(w[i].at, w[i].n).c_str(), nullptr));
  if (k >= 3) {  // name, description..., unit
    d->unit = line.substr(w[k - 1].at, w[k - 1].n);
    d->unitCol = int(w[k - 1].at) + 1;
  } else if (k == 2) {
    d->unit = line.substr(w[1].at, w[1].n);
    d->unitCol = int(w[1].at) + 1;
  }
  return true;
}

const char *BlockName(Block b) {
  switch (b) {
    case B_HEADER: return "**HEADER";
    case B_COMMENTS: return "**COMMENTS";
    case B_CONSTANTS: return "**CONSTANTS";
    case B_CHANNELS: return "**MEASURCHANNELS";
    case B_DATA: return "**MEASURDATA";
    default: return "a block";
  }
}

}  // namespace

bool KRunParseTydex(const char *text, size_t size, const char *fileName, const KRunOptions &options,
                    KRunData *run) {
  *run = KRunData();
  run->fileName = fileName ? fileName : "<run>";
  run->format = "TYDEX";
  KRunReader r(run->fileName.c_str(), options, run);
  std::vector<KRunDeclared> columns;
  struct Constant {
    Definition d;
    int line;
  };
  std::vector<Constant> constants;
  Block block = B_NONE;
  bool seen[B_OTHER + 1] = {};
  bool ended = false, assigned = false;
  int lineNo = 0, channelsLine = 0;
  std::vector<Word> words;
  std::string line;
  size_t at = 0;
  while (at < size && !ended) {
    const char *nl = static_cast<const char *>(memchr(text + at, '\n', size - at));
    const size_t end = nl ? size_t(nl - text) : size;
    line.assign(text + at, end - at);
    at = end + 1;
    lineNo++;
    if (line.find('\0') != std::string::npos) return r.Fail(lineNo, int(line.find('\0')) + 1, "a NUL byte");
    const std::string t = KRunTrim(line);
    if (t.empty() || t[0] == '!') continue;
    // 1. a block keyword
    if (t.compare(0, 2, "**") == 0) {
      std::string key = t.substr(2);
      const size_t sp = key.find_first_of(" \t");
      if (sp != std::string::npos) key.resize(sp);
      Block next = B_OTHER;
      if (!strcasecmp(key.c_str(), "HEADER")) next = B_HEADER;
      else if (!strcasecmp(key.c_str(), "COMMENTS")) next = B_COMMENTS;
      else if (!strcasecmp(key.c_str(), "CONSTANTS")) next = B_CONSTANTS;
      else if (!strcasecmp(key.c_str(), "MEASURCHANNELS")) next = B_CHANNELS;
      else if (!strcasecmp(key.c_str(), "MEASURDATA")) next = B_DATA;
      else if (!strcasecmp(key.c_str(), "END")) {
        ended = true;
        break;
      }
      if (block == B_NONE && next != B_HEADER)
        return r.Fail(lineNo, 1, "'%s' where the file should start with **HEADER", t.c_str());
      if (next != B_OTHER && seen[next]) return r.Fail(lineNo, 1, "a second %s block", BlockName(next));
      if (next == B_DATA && !seen[B_CHANNELS])
        return r.Fail(lineNo, 1, "**MEASURDATA before any **MEASURCHANNELS block");
      if (next == B_DATA) {
        // the channels are all known: constants fill the channels not measured
        for (const Constant &c : constants) {
          const int ch = KRunChannelByName(c.d.name);
          if (ch < 0) continue;
          bool measured = false;
          for (const KRunDeclared &d : columns) measured = measured || KRunChannelByName(d.name) == ch;
          if (!measured) run->notes.push_back("constant " + c.d.name + " taken as a channel held for the whole run");
        }
        for (const Constant &c : constants) {
          const int ch = KRunChannelByName(c.d.name);
          if (ch >= 0 && !c.d.numbers.empty()) r.Supplied(ch);
        }
        if (!r.Assign(columns, channelsLine)) return false;
        assigned = true;
      }
      seen[next] = true;
      block = next;
      if (next == B_CHANNELS) channelsLine = lineNo;
      continue;
    }
    if (block == B_NONE) return r.Fail(lineNo, 1, "'%.40s' where the file should start with **HEADER", t.c_str());
    // 2. the block's lines
    switch (block) {
      case B_HEADER: {
        Definition d;
        std::string problem;
        if (ParseDefinition(line, &d, &problem) && !strcasecmp(d.name.c_str(), "MEASID"))
          run->notes.push_back("TYDEX measurement " + KRunTrim(line.substr(std::min(line.size(), size_t(10)))));
        break;
      }
      case B_CONSTANTS: {
        Constant c;
        std::string problem;
        if (!ParseDefinition(line, &c.d, &problem))
          return r.Fail(lineNo, 1, "**CONSTANTS: %s", problem.empty() ? "not NAME DESCRIPTION UNIT VALUE" : problem.c_str());
        c.line = lineNo;
        constants.push_back(c);
        break;
      }
      case B_CHANNELS: {
        Definition d;
        std::string problem;
        if (!ParseDefinition(line, &d, &problem))
          return r.Fail(lineNo, 1, "**MEASURCHANNELS: %s", problem.c_str());
        if (d.numbers.size() > 3)
          return r.Fail(lineNo, 1, "**MEASURCHANNELS: %zu numbers after '%s' (at most factor, offset and a second offset)",
                        d.numbers.size(), d.name.c_str());
        KRunDeclared k;
        k.name = d.name;
        k.unit = d.unit;
        k.line = lineNo;
        k.col = 1;
        if (!d.numbers.empty()) k.factor = d.numbers[0];
        for (size_t i = 1; i < d.numbers.size(); i++) k.offset += d.numbers[i];
        if (k.factor == 0) return r.Fail(lineNo, 1, "**MEASURCHANNELS: channel '%s' has a conversion factor of 0", d.name.c_str());
        columns.push_back(k);
        break;
      }
      case B_DATA: {
        Words(line, &words);
        if (words.size() != columns.size())
          return r.Fail(lineNo, 0, "%zu values where **MEASURCHANNELS (line %d) has %zu channels", words.size(),
                        channelsLine, columns.size());
        for (size_t f = 0; f < words.size(); f++)
          if (r.ChannelOf(f) >= 0 && !r.Value(f, line.data() + words[f].at, words[f].n, lineNo, int(words[f].at) + 1))
            return false;
        run->rows++;
        break;
      }
      default:
        break;
    }
  }
  if (!seen[B_HEADER]) return r.Fail(0, 0, "no **HEADER block: not a TYDEX file");
  if (!seen[B_CHANNELS]) return r.Fail(0, 0, "no **MEASURCHANNELS block");
  if (!seen[B_DATA] || !assigned) return r.Fail(0, 0, "no **MEASURDATA block");
  if (!ended) return r.Fail(lineNo, 0, "no **END line: the file may be cut short");
  // constants for channels not measured
  for (const Constant &c : constants) {
    const int ch = KRunChannelByName(c.d.name);
    if (ch < 0 || run->channel[ch].present || c.d.numbers.empty()) continue;
    double factor, offset;
    const std::string unit = options.units[ch].empty() ? c.d.unit : options.units[ch];
    if (!KRunUnitToSi(KRunChannelUnitKind(ch), unit, &factor, &offset))
      return r.Fail(c.line, c.d.unitCol, "**CONSTANTS: unit '%s' of '%s' is not known (known: %s)", unit.c_str(),
                    c.d.name.c_str(), KRunUnitList(KRunChannelUnitKind(ch)).c_str());
    KRunColumn &col = run->channel[ch];
    col.present = true;
    col.name = c.d.name;
    col.unit = unit;
    col.v.assign(run->rows, c.d.numbers.back() * factor + offset);
  }
  return r.Finish(lineNo);
}
