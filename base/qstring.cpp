// qstring: growth, editing, searching, checks and whole-file helpers.
#include "base/qstring.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/qfile.h"
#include "diag/qdebug.h"

// ---- construction and growth -------------------------------------------

qstring::qstring() : buf_(nullptr), len_(0), cap_(0) { Grow(31); }

qstring::qstring(const char *s) : qstring() { *this = s; }

qstring::qstring(const qstring &o) : qstring() { *this = o; }

qstring::qstring(qstring &&o) noexcept : buf_(o.buf_), len_(o.len_), cap_(o.cap_), wide_(o.wide_) {
  o.buf_ = nullptr;
  o.len_ = o.cap_ = 0;
}

qstring::~qstring() { free(buf_); }

bool qstring::Grow(int need) {
  if (need < cap_ && buf_) return true;
  int cap = cap_ ? cap_ : 32;
  while (cap <= need) cap *= 2;
  char *p = static_cast<char *>(realloc(buf_, size_t(cap)));
  if (!p) return false;
  if (!buf_) p[0] = 0;
  buf_ = p;
  cap_ = cap;
  return true;
}

bool qstring::Reserve(int n) { return Grow(n); }

bool qstring::Nyi(const char *op) const {
  if (!wide_) return false;
  QERR_IN(op, "qstring:%s() NYI for Unicode\n", op);
  return true;
}

// ---- assignment and comparison -----------------------------------------

qstring &qstring::operator=(const char *s) {
  if (!s) s = "";
  if (s >= buf_ && buf_ && s < buf_ + cap_) {  // assigning part of ourselves
    qstring tmp(s);
    return *this = static_cast<qstring &&>(tmp);
  }
  Set(s, int(strlen(s)));
  return *this;
}

qstring &qstring::operator=(const qstring &o) {
  if (this != &o) {
    Set(o.buf_ ? o.buf_ : "", o.len_);
    wide_ = o.wide_;
  }
  return *this;
}

qstring &qstring::operator=(qstring &&o) noexcept {
  if (this != &o) {
    free(buf_);
    buf_ = o.buf_;
    len_ = o.len_;
    cap_ = o.cap_;
    wide_ = o.wide_;
    o.buf_ = nullptr;
    o.len_ = o.cap_ = 0;
  }
  return *this;
}

void qstring::Set(const char *p, int n) {
  if (n < 0) n = 0;
  if (!Grow(n)) return;
  if (n) memmove(buf_, p, size_t(n));
  buf_[n] = 0;
  len_ = n;
}

void qstring::Clear() { Set("", 0); }

qstring &qstring::operator+=(const char *s) {
  if (Nyi("operator+=") || !s) return *this;
  int n = int(strlen(s));
  if (buf_ && s >= buf_ && s < buf_ + cap_) return *this += qstring(s).c_str();
  if (!Grow(len_ + n)) return *this;
  memcpy(buf_ + len_, s, size_t(n) + 1);
  len_ += n;
  return *this;
}

qstring &qstring::operator+=(char c) {
  char s[2] = {c, 0};
  return *this += s;
}

bool qstring::operator==(const char *s) const { return strcmp(c_str(), s ? s : "") == 0; }

char qstring::operator[](int index) const {
  if (index < 0 || index >= len_) {
    QERR_IN("qstring::operator[]", "qstring(%s): ([]) index %d out of range (0..%d)\n",
         c_str(), index, len_ - 1);
    return 0;
  }
  return buf_[index];
}

const char *qstring::c_str() const {
  if (wide_) return "<unicodestr-nyi>";
  return buf_ ? buf_ : "";
}

// ---- path helpers --------------------------------------------------------

static int LastSeparator(const char *s, int len) {
  for (int i = len - 1; i >= 0; i--)
    if (s[i] == '/' || s[i] == '\\') return i;
  return -1;
}

void qstring::CutPath() {
  if (Nyi("CutPath")) return;
  int sep = LastSeparator(buf_, len_);
  if (sep >= 0) Set(buf_ + sep + 1, len_ - sep - 1);
}

void qstring::CutExtension() {
  if (Nyi("CutExtension")) return;
  int sep = LastSeparator(buf_, len_);
  for (int i = len_ - 1; i > sep; i--) {
    if (buf_[i] == '.') {
      buf_[i] = 0;
      len_ = i;
      return;
    }
  }
}

void qstring::CutFile() {
  if (Nyi("CutFile")) return;
  int sep = LastSeparator(buf_, len_);
  buf_[sep + 1] = 0;
  len_ = sep + 1;
}

void qstring::CutTrailingSpaces() {
  if (Nyi("CutTrailingSpaces")) return;
  while (len_ > 0 && (buf_[len_ - 1] == ' ' || buf_[len_ - 1] == '\t')) buf_[--len_] = 0;
}

void qstring::CutLeadingSpaces() {
  if (Nyi("CutLeadingSpaces")) return;
  int i = 0;
  while (i < len_ && (buf_[i] == ' ' || buf_[i] == '\t')) i++;
  if (i) Set(buf_ + i, len_ - i);
}

// ---- searching -------------------------------------------------------------

bool qstring::BeginsWith(const char *s) const {
  if (Nyi("BeginsWith")) return false;
  size_t n = strlen(s);
  return size_t(len_) >= n && memcmp(buf_, s, n) == 0;
}

bool qstring::EndsWith(const char *s) const {
  if (Nyi("EndsWith")) return false;
  size_t n = strlen(s);
  return size_t(len_) >= n && memcmp(buf_ + len_ - n, s, n) == 0;
}

int qstring::Find(const char *s, int from) const {
  if (Nyi("Find") || from < 0 || from > len_) return -1;
  const char *p = strstr(buf_ + from, s);
  return p ? int(p - buf_) : -1;
}

int qstring::Find(char c, int from) const {
  if (Nyi("Find") || from < 0 || from > len_) return -1;
  for (int i = from; i < len_; i++)
    if (buf_[i] == c) return i;
  return -1;
}

int qstring::FindLast(char c) const {
  if (Nyi("FindLast")) return -1;
  for (int i = len_ - 1; i >= 0; i--)
    if (buf_[i] == c) return i;
  return -1;
}

qstring qstring::GetSubstring(int start, int count) const {
  qstring r;
  if (Nyi("GetSubstring")) return r;
  if (start < 0) start = 0;
  if (start > len_) start = len_;
  if (count < 0 || start + count > len_) count = len_ - start;
  r.Set(buf_ + start, count);
  return r;
}

int qstring::ReplaceAll(const char *from, const char *to) {
  if (Nyi("ReplaceAll") || !from || !*from) return 0;
  qstring out;
  int n = 0, flen = int(strlen(from));
  const char *p = c_str();
  for (const char *hit; (hit = strstr(p, from)); p = hit + flen, n++) {
    qstring piece;
    piece.Set(p, int(hit - p));
    out += piece;
    out += to;
  }
  if (n) {
    out += p;
    *this = static_cast<qstring &&>(out);
  }
  return n;
}

// ---- numbers ---------------------------------------------------------------

bool qstring::IsNumber() const {
  const char *s = c_str();
  if (*s == '-' || *s == '+') s++;
  if (!*s) return false;
  for (; *s; s++)
    if (*s < '0' || *s > '9') return false;
  return true;
}

bool qstring::IsFloat() const {
  const char *s = c_str();
  if (!*s) return false;
  char *end = nullptr;
  strtod(s, &end);
  return end != s && *end == 0;
}

static bool Fail(qstring *reason, const char *fixed, char c) {
  if (!reason) return false;
  if (fixed) {
    *reason = fixed;
  } else {
    *reason = "character '";
    *reason += c;
    *reason += "' is not allowed";
  }
  return false;
}

bool qstring::ValidateInt(qstring *reason) const {
  for (const char *s = c_str(); *s; s++) {
    char c = *s;
    if ((c >= '0' && c <= '9') || c == ' ' || c == '-' || c == '+' || c == '*' || c == '%') continue;
    return Fail(reason, c == '.' ? "a '.' is not allowed (floating point)" : nullptr, c);
  }
  return true;
}

// Only lower-case 'e' is accepted as an exponent; an upper-case 'E' is
// rejected on purpose so that hand-typed values stay in one style.
bool qstring::ValidateFloat(qstring *reason) const {
  for (const char *s = c_str(); *s; s++) {
    char c = *s;
    if ((c >= '0' && c <= '9') || c == ' ' || c == '-' || c == '+' || c == '.' || c == 'e') continue;
    return Fail(reason, c == ',' ? "use '.' instead of ','" : nullptr, c);
  }
  return true;
}

// ---- whole files -------------------------------------------------------------

bool qstring::FromFile(const char *name) {
  QFile f(name, QFile::READ_BINARY);
  if (!f.IsOpen()) {
    QERR("qstring:FromFile(%s); file not found\n", name);
    return false;
  }
  return f.Read(*this);
}

bool qstring::ToFile(const char *name) const {
  QFile f(name, QFile::WRITE_BINARY);
  if (!f.IsOpen()) {
    QERR("qstring:ToFile(%s); can't open file for writing\n", name);
    return false;
  }
  return f.Write(c_str(), size_t(len_));
}
