// PTirFile: reads a TIR tyre property file into a flat table of
// "section.key" names (lower case) and their values as text.
//
// Lines: "$", "'" or "!" first is a comment; "[NAME]" starts a section;
// anything else with "=" is a property "key = value $comment", of which the
// value is the first blank-delimited word after the "=". At most 1000
// properties; further ones are reported and skipped. Lookups take the first
// match, so of two equal names the first wins.
#pragma once

class PTirFile {
 public:
  static constexpr int MAX_PROPERTIES = 1000;
  static constexpr int MAX_LINE = 1023;  // characters of a property line that are kept

  // Stores the name and reads the file.
  explicit PTirFile(const char *fileName);
  ~PTirFile();
  PTirFile(const PTirFile &) = delete;
  PTirFile &operator=(const PTirFile &) = delete;

  // Reads the file, appending to the table; false when it can't be opened
  // (reported as a warning).
  bool Load();

  // Index of `name` (already lower case), or -1.
  int FindIndex(const char *name) const;
  // The value of `name` (any case) through atof / atoi, or `def` when absent.
  float GetFloat(const char *name, float def) const;
  int GetInt(const char *name, int def) const;

  const char *GetFileName() const { return fileName; }
  int GetCount() const { return count; }
  const char *GetName(int i) const { return names[i]; }
  const char *GetValue(int i) const { return values[i]; }

 private:
  void AddProperty(const char *section, const char *line);

  char *fileName;
  char *names[MAX_PROPERTIES];
  char *values[MAX_PROPERTIES];
  int count;
};
