// PSystem: the registry of named parameters and signals (see psystem.h).
#include "tyre/psystem.h"

#include <cstdio>
#include <cstring>

#include "diag/qdebug.h"

PSystemParameter::PSystemParameter(PSystem *system, const char *name, const char *unit,
                                   float *value) {
  if (system) system->AddParameter(name, unit, value);
}

PSystemSignal::PSystemSignal(PSystem *system, const char *name, const char *unit, float *value) {
  if (system) system->AddSignal(name, unit, value);
}

PSystem::PSystem(PSystem *p, const char *n)
    : parent(nullptr), childCount(0), parameterCount(0), signalCount(0) {
  snprintf(name, sizeof name, "%s", n ? n : "");
  if (p && p->AddChild(this)) parent = p;
}

PSystem::~PSystem() {
  if (parent) parent->RemoveChild(this);
  // Children outlive a parent only by mistake; cut them loose so they don't
  // reach back into freed memory.
  for (int i = 0; i < childCount; i++) children[i]->parent = nullptr;
}

bool PSystem::AddChild(PSystem *child) {
  if (childCount >= MAX_CHILDREN) {
    QERR("PSystem(%s): too many children; '%s' not added",
         name, child->name);
    return false;
  }
  children[childCount++] = child;
  return true;
}

void PSystem::RemoveChild(PSystem *child) {
  for (int i = 0; i < childCount; i++) {
    if (children[i] != child) continue;
    memmove(children + i, children + i + 1, sizeof(children[0]) * size_t(childCount - i - 1));
    childCount--;
    return;
  }
}

static bool AddEntry(PSystemEntry *table, int &count, const char *system, const char *kind,
                     const char *name, const char *unit, float *value) {
  if (count >= PSystem::MAX_ENTRIES) {
    QERR_IN("PSystem::Add", "PSystem(%s): too many %ss; '%s' not added", system,
         kind, name);
    return false;
  }
  table[count++] = PSystemEntry{name, unit, value};
  return true;
}

bool PSystem::AddParameter(const char *n, const char *unit, float *value) {
  return AddEntry(parameters, parameterCount, name, "parameter", n, unit, value);
}

bool PSystem::AddSignal(const char *n, const char *unit, float *value) {
  return AddEntry(signals, signalCount, name, "signal", n, unit, value);
}

static const PSystemEntry *FindEntry(const PSystemEntry *table, int count, const char *name) {
  for (int i = 0; i < count; i++)
    if (!strcmp(table[i].name, name)) return &table[i];
  return nullptr;
}

const PSystemEntry *PSystem::FindParameter(const char *n) const {
  return FindEntry(parameters, parameterCount, n);
}

const PSystemEntry *PSystem::FindSignal(const char *n) const {
  return FindEntry(signals, signalCount, n);
}

bool PSystem::SetParameter(const char *n, float value) {
  const PSystemEntry *e = FindParameter(n);
  if (!e) return false;
  *e->value = value;
  return true;
}
