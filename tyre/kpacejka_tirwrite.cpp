// Writing a Magic Formula tyre as a TIR file: the text, then the file.
//
// Layout of the text: a header block, [UNITS], [MODEL], then one section per
// TIR section of the member table in the order of `sections` below, each
// with its members in table order. Values take the fewest significant digits
// that read back (through atof, as PTirFile reads) to the very same float.
#include "tyre/kpacejka_tirwrite.h"

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

#include "base/qfile.h"
#include "diag/qdebug.h"
#include "tyre/kpacejka.h"

namespace {

// The sections written after [MODEL], with the caption of their rule line.
struct Section {
  const char *name;  // lower case, as the member table names it
  const char *caption;
};
const Section sections[] = {
    {"dimensions", "dimensions"},
    {"operating_conditions", "operating_conditions"},
    {"vertical", "vertical"},
    {"long_slip_range", "long_slip_range"},
    {"slip_angle_range", "slip_angle_range"},
    {"inclination_angle_range", "inclination_angle_range"},
    {"vertical_force_range", "vertical_force_range"},
    {"scaling_coefficients", "scaling"},
    {"longitudinal_coefficients", "longitudinal"},
    {"lateral_coefficients", "lateral"},
    {"aligning_coefficients", "aligning"},
};

// Comments (with units) of the keys that carry a unit; coefficients go bare.
struct KeyNote {
  const char *key;
  const char *note;
};
const KeyNote notes[] = {
    {"unloaded_radius", "Free tyre radius (m)"},
    {"fnomin", "Nominal wheel load (N)"},
    {"inflpres", "Tyre inflation pressure (Pa)"},
    {"nompres", "Nominal inflation pressure (Pa)"},
    {"kpumin", "Minimum valid wheel slip"},
    {"kpumax", "Maximum valid wheel slip"},
    {"alpmin", "Minimum valid slip angle (rad)"},
    {"alpmax", "Maximum valid slip angle (rad)"},
    {"cammin", "Minimum valid camber angle (rad)"},
    {"cammax", "Maximum valid camber angle (rad)"},
    {"fzmin", "Minimum allowed wheel load (N)"},
    {"fzmax", "Maximum allowed wheel load (N)"},
};

const char *NoteOf(const char *key) {
  for (const KeyNote &n : notes)
    if (!strcmp(n.key, key)) return n.note;
  return nullptr;
}

void Appendf(std::string *out, const char *fmt, ...) __attribute__((format(printf, 2, 3)));
void Appendf(std::string *out, const char *fmt, ...) {
  char buf[256];
  va_list ap;
  va_start(ap, fmt);
  vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  *out += buf;
}

// The shortest "%.Ng" (N up to 9, which always round-trips a float) that
// atof reads back to the same bits; numbers of ordinary size keep their
// plain form (4000, not 4e+03).
void FormatFloat(char *buf, size_t size, float v) {
  const bool ordinary = fabsf(v) >= 1e-4f && fabsf(v) < 1e9f;
  for (int digits = 1; digits < 9; digits++) {
    snprintf(buf, size, "%.*g", digits, double(v));
    if (ordinary && strchr(buf, 'e')) continue;
    const float back = float(atof(buf));
    if (!memcmp(&back, &v, sizeof v)) return;
  }
  snprintf(buf, size, "%.9g", double(v));
}

// "$-----...caption": a rule line as TIR files draw them, 72 wide.
void Rule(std::string *out, const char *caption) {
  const int dashes = 72 - 1 - int(strlen(caption));
  *out += '$';
  out->append(size_t(dashes > 3 ? dashes : 3), '-');
  *out += caption;
  *out += '\n';
}

// "KEY = value" with the key upper case and padded, the note as a $ comment.
void Line(std::string *out, const char *key, const char *value, const char *note) {
  char upper[64];
  size_t n = 0;
  for (; key[n] && n + 1 < sizeof upper; n++) upper[n] = char(toupper(static_cast<unsigned char>(key[n])));
  upper[n] = 0;
  if (note) Appendf(out, "%-25s = %-20s $%s\n", upper, value, note);
  else Appendf(out, "%-25s = %s\n", upper, value);
}

void SectionHead(std::string *out, const char *caption, const char *name) {
  Rule(out, caption);
  *out += '[';
  for (const char *c = name; *c; c++) *out += char(toupper(static_cast<unsigned char>(*c)));
  *out += "]\n";
}

}  // namespace

bool KPacejkaTirWritable(const KPacejka &tyre) {
  return tyre.model == KPacejka::MF52 || tyre.model == KPacejka::MF61;
}

bool KPacejkaTirText(const KPacejka &tyre, std::string *out) {
  // 1. only the two models whose TIR form the import reads back as they are
  if (!KPacejkaTirWritable(tyre)) {
    QERR("a %s tyre (model %d) has no TIR form; only Magic Formula 5.2 and 6.1 tyres can be written",
         KPacejka::GetModelName(tyre.model), int(tyre.model));
    return false;
  }
  const bool mf61 = tyre.model == KPacejka::MF61;
  std::string text;
  char value[32];
  // 2. header and units
  text += "[MDI_HEADER]\n";
  Line(&text, "file_type", "'tir'", nullptr);
  Line(&text, "file_version", "3.0", nullptr);
  Line(&text, "file_format", "'ASCII'", nullptr);
  Rule(&text, "");
  Appendf(&text, "$ %s tyre written by Tyrograph: every property its\n", tyre.GetModelName());
  text += "$ TIR import reads, in the digits that give back the same floats.\n";
  SectionHead(&text, "units", "units");
  Line(&text, "length", "'meter'", nullptr);
  Line(&text, "force", "'newton'", nullptr);
  Line(&text, "angle", "'radians'", nullptr);
  Line(&text, "mass", "'kg'", nullptr);
  Line(&text, "time", "'second'", nullptr);
  // 3. model
  SectionHead(&text, "model", "model");
  Line(&text, "property_file_format", "'USER'", nullptr);
  Line(&text, "fittyp", mf61 ? "61" : "52", mf61 ? "Magic Formula 6.1" : "Magic Formula 5.2");
  FormatFloat(value, sizeof value, tyre.longv);
  Line(&text, "longvl", value, "Reference speed (m/s)");
  // 4. every member with a TIR key, section by section; the pressure keys
  //    (and their section) only for a tyre that carries pressure
  const bool pressure = KPacejkaHasPressure(tyre);
  for (const Section &s : sections) {
    if (!pressure && !strcmp(s.name, "operating_conditions")) continue;
    SectionHead(&text, s.caption, s.name);
    for (int i = 0; i < kpacejkaMemberCount; i++) {
      const KPacejkaMember &m = kpacejkaMembers[i];
      if (!m.tirKey || strcmp(m.tirSection, s.name)) continue;
      if (!pressure && m.group == KPacejkaMember::PRESSURE) continue;
      FormatFloat(value, sizeof value, float(KPacejkaGetMember(tyre, m)));
      Line(&text, m.tirKey, value, NoteOf(m.tirKey));
    }
  }
  *out += text;
  return true;
}

bool KPacejkaWriteTirFile(const char *path, const KPacejka &tyre) {
  std::string text;
  if (!KPacejkaTirText(tyre, &text)) return false;
  errno = 0;
  QFile file(path, QFile::WRITE_BINARY);
  if (!file.IsOpen()) {
    QERR("%s: can't open for writing: %s", path, strerror(errno));
    return false;
  }
  errno = 0;
  bool ok = file.Write(text.data(), text.size());
  const int writeErrno = errno;
  const bool flushed = fflush(file.GetStream()) == 0;
  if (!ok || !flushed) {
    const int reason = writeErrno ? writeErrno : errno ? errno : EIO;
    // A cut-off file would read back as a different tyre: it goes.
    file.Close();
    remove(path);
    QERR("%s: write failed: %s", path, strerror(reason));
    return false;
  }
  return true;
}
