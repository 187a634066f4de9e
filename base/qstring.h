// qstring: the library's 8-bit string.
//
// A zero-terminated byte buffer grown on demand (initial capacity 32). The
// wide-text mode exists only as a flag: operations that do not support it
// report "qstring:<Op>() NYI for Unicode" and do nothing, and reading the text
// of a wide string yields "<unicodestr-nyi>".
#pragma once

#include <cstddef>

class qstring {
 public:
  qstring();
  qstring(const char *s);
  qstring(const qstring &o);
  qstring(qstring &&o) noexcept;
  ~qstring();

  qstring &operator=(const char *s);
  qstring &operator=(const qstring &o);
  qstring &operator=(qstring &&o) noexcept;
  qstring &operator+=(const char *s);
  qstring &operator+=(const qstring &o) { return *this += o.c_str(); }
  qstring &operator+=(char c);
  bool operator==(const char *s) const;
  bool operator==(const qstring &o) const { return *this == o.c_str(); }
  bool operator!=(const char *s) const { return !(*this == s); }
  // Range-checked: an index outside 0..length-1 is reported and gives 0.
  char operator[](int index) const;

  const char *c_str() const;
  operator const char *() const { return c_str(); }
  int Length() const { return len_; }
  bool IsEmpty() const { return len_ == 0; }
  void Clear();
  // Replaces the text by `n` bytes from `p`.
  void Set(const char *p, int n);
  void SetWide(bool wide) { wide_ = wide; }
  bool IsWide() const { return wide_; }
  // Grows the buffer to hold at least `n` bytes plus the terminator; false
  // when out of memory.
  bool Reserve(int n);
  int Capacity() const { return cap_; }

  // Path helpers ('/' and '\\' both separate).
  void CutPath();       // keep the file part: "a/b/c.txt" -> "c.txt"
  void CutExtension();  // drop from the last '.' of the file part: "c.txt" -> "c"
  void CutFile();       // keep the folder with its separator: "a/b/c.txt" -> "a/b/"
  void CutTrailingSpaces();
  void CutLeadingSpaces();

  bool BeginsWith(const char *s) const;
  bool EndsWith(const char *s) const;
  // Position of the first / last occurrence, or -1.
  int Find(const char *s, int from = 0) const;
  int Find(char c, int from = 0) const;
  int FindLast(char c) const;
  qstring GetSubstring(int start, int count) const;
  // Replaces every occurrence of `from` by `to`; returns how many.
  int ReplaceAll(const char *from, const char *to);

  // Numbers: IsNumber accepts an optional sign and digits; IsFloat also a
  // decimal point and an exponent.
  bool IsNumber() const;
  bool IsFloat() const;
  // Checks used by the info-tree getters. On failure `reason` says why.
  bool ValidateInt(qstring *reason) const;
  bool ValidateFloat(qstring *reason) const;

  // Whole-file helpers.
  bool FromFile(const char *name);
  bool ToFile(const char *name) const;

 private:
  bool Nyi(const char *op) const;
  bool Grow(int need);

  char *buf_;
  int len_;
  int cap_;
  bool wide_ = false;
};
