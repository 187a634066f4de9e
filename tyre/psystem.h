// PSystem: a named tree of live parameters and read-only signals.
//
// Each entry binds a name and a unit to a float that lives in some other
// object (a tyre's coefficient, its slip angle): writing through a parameter
// writes straight into that object, reading a signal reads its current value.
// Systems form a tree through their parent; a parent does not own its
// children, the objects that make them do (KPacejka::CreateSystem).
//
// Fixed-size tables: an entry or child beyond the capacity is reported and
// dropped.
#pragma once

class PSystem;

// One bound float: a tweakable parameter or a read-only signal.
struct PSystemEntry {
  const char *name;  // not copied: names are string literals
  const char *unit;
  float *value;
};

class PSystemParameter {
 public:
  PSystemParameter(PSystem *system, const char *name, const char *unit, float *value);
};

class PSystemSignal {
 public:
  PSystemSignal(PSystem *system, const char *name, const char *unit, float *value);
};

class PSystem {
 public:
  static constexpr int MAX_ENTRIES = 32;
  static constexpr int MAX_CHILDREN = 16;

  // Joins `parent` (may be null) as its child.
  PSystem(PSystem *parent, const char *name);
  // Leaves the parent; the bound floats are untouched.
  ~PSystem();
  PSystem(const PSystem &) = delete;
  PSystem &operator=(const PSystem &) = delete;

  const char *GetName() const { return name; }
  PSystem *GetParent() const { return parent; }
  int GetChildCount() const { return childCount; }
  PSystem *GetChild(int i) const { return i >= 0 && i < childCount ? children[i] : nullptr; }

  int GetParameterCount() const { return parameterCount; }
  int GetSignalCount() const { return signalCount; }
  const PSystemEntry &GetParameter(int i) const { return parameters[i]; }
  const PSystemEntry &GetSignal(int i) const { return signals[i]; }
  // By name; null when absent.
  const PSystemEntry *FindParameter(const char *name) const;
  const PSystemEntry *FindSignal(const char *name) const;
  // Writes a parameter's bound float; false when there is no such parameter.
  bool SetParameter(const char *name, float value);

  // Used by PSystemParameter / PSystemSignal.
  bool AddParameter(const char *name, const char *unit, float *value);
  bool AddSignal(const char *name, const char *unit, float *value);

 private:
  bool AddChild(PSystem *child);
  void RemoveChild(PSystem *child);

  char name[32];
  PSystem *parent;
  PSystem *children[MAX_CHILDREN];
  int childCount;
  PSystemEntry parameters[MAX_ENTRIES];
  int parameterCount;
  PSystemEntry signals[MAX_ENTRIES];
  int signalCount;
};
