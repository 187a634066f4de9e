// Walking a QInfo tree: the depth-first iterator, sorting by name and the
// debug dumps built on them.
#include <cstring>
#include <utility>
#include <vector>

#include "base/qinfo.h"
#include "base/qinfoimpl.h"
#include "base/qstring.h"
#include "diag/qdebug.h"

#undef QDIAG_TAG
#define QDIAG_TAG "qinfo"

// ---- Iterator ----------------------------------------------------------------------------

QInfoIterator::QInfoIterator(QInfo *info, const char *path)
    : start(info ? info->FindNode(path) : nullptr), cur(nullptr), nestLevel(0), begun(false) {}

QInfoNode *QInfoIterator::GetNextAny() {
  if (!begun) {
    begun = true;
    return cur = start ? start->firstChild : nullptr;
  }
  if (!cur) return nullptr;
  if (cur->kind == NODE_TREE && cur->firstChild) {
    if (nestLevel < QInfo::MAX_LEVEL)
      stack[nestLevel++] = cur;
    else
      QERR("nestLevel>%d (QInfo::MAX_LEVEL) in QInfoIterator",
           QInfo::MAX_LEVEL);
    return cur = cur->firstChild;
  }
  // Next sibling, or the next sibling of the nearest recorded ancestor.
  while (!cur->next) {
    if (nestLevel == 0) return cur = nullptr;
    cur = stack[--nestLevel];
  }
  return cur = cur->next;
}

QInfoNode *QInfoIterator::GetNext(qstring *fullPath, qstring *name) {
  QInfoNode *n;
  do n = GetNextAny();
  while (n && n->kind == NODE_COMMENT);
  if (n && fullPath) QInfo::GetFullPath(n, *fullPath);
  if (n && name) *name = n->Name();
  return n;
}

// ---- Sorting -----------------------------------------------------------------------------


// Sorts one group's children by name with repeated adjacent-exchange passes
// over the non-comment nodes; comments keep their places in the list.
static void SortChildren(QInfoNode *tree) {
  QDBG_IN("QInfo::SortLevel", "Sort level (%s)\n", tree->Name());
  std::vector<QInfoNode *> all, keys;
  for (QInfoNode *c = tree->firstChild; c; c = c->next) {
    all.push_back(c);
    if (c->kind != NODE_COMMENT) keys.push_back(c);
  }
  for (bool swapped = true; swapped;) {
    swapped = false;
    for (size_t i = 0; i + 1 < keys.size(); i++) {
      QDBG_IN("QInfo::SortLevel", "Cmp %s - %s [%p - %p]\n", keys[i]->Name(), keys[i + 1]->Name(), (void *)keys[i],
           (void *)keys[i + 1]);
      if (strcmp(keys[i]->Name(), keys[i + 1]->Name()) <= 0) continue;
      QDBG_IN("QInfo::SortLevel", "Swap!\n");
      std::swap(keys[i], keys[i + 1]);
      swapped = true;
      if (i == 0 && all[0]->kind != NODE_COMMENT) QDBG_IN("QInfo::SortLevel", "New root child %p\n", (void *)keys[0]);
    }
    if (swapped) QDBG_IN("QInfo::SortLevel", "Run again\n");
  }
  // Relink: the sorted keys go into the slots that held keys.
  size_t k = 0;
  for (QInfoNode *&slot : all)
    if (slot->kind != NODE_COMMENT) slot = keys[k++];
  tree->firstChild = all.empty() ? nullptr : all[0];
  for (size_t i = 0; i < all.size(); i++) all[i]->next = i + 1 < all.size() ? all[i + 1] : nullptr;
}

void QInfo::SortLevel() {
  std::vector<QInfoNode *> todo{root};
  while (!todo.empty()) {
    QInfoNode *t = todo.back();
    todo.pop_back();
    if (t->firstChild) SortChildren(t);
    for (QInfoNode *c = t->firstChild; c; c = c->next)
      if (c->kind == NODE_TREE) todo.push_back(c);
  }
  flags |= QINFO_MODIFIED;
}

// ---- Debug dumps ---------------------------------------------------------------------------


// Lists the keys no getter has read: what a file holds but no code uses.
static void PrintUnused(QInfo &info, const char *title) {
  QNOTE_IN("QInfo::DbgPrint", "QInfo(%s) [%s] - UNUSED KEYS ONLY\n", info.GetFileName(), title);
  QInfoIterator it(&info);
  qstring path;
  while (QInfoNode *n = it.GetNextAny()) {
    if (n->kind != NODE_KEY || (n->flags & NODEF_USED)) continue;
    QInfo::GetFullPath(n, path);
    QWARN_IN("QInfo::DbgPrint", "- %s (=%s)\n", path.c_str(), n->value ? n->value : "");
  }
}

static int Depth(const QInfoNode *n) {
  int d = 0;
  for (; n->parent && n->parent->parent; n = n->parent) d++;
  return d;
}

// Every node as "name=value", groups followed by their children in braces.
static void PrintAll(QInfo &info, const char *title) {
  QDBG_IN("QInfo::DbgPrint", "QInfo(%s) [%s]\n", info.GetFileName(), title);
  std::vector<const QInfoNode *> open;  // groups whose "}" is still due
  auto closeUntil = [&](const QInfoNode *parent) {
    while (!open.empty() && open.back() != parent) {
      qstring ind;
      for (int i = Depth(open.back()); i > 0; i--) ind += "  ";
      QDBG_IN("QInfo::DbgPrint", "%s}\n", ind.c_str());
      open.pop_back();
    }
  };
  QInfoIterator it(&info);
  while (QInfoNode *n = it.GetNextAny()) {
    closeUntil(n->parent);
    qstring ind;
    for (int i = Depth(n); i > 0; i--) ind += "  ";
    QDBG_IN("QInfo::DbgPrint", "%s%s=%s\n", ind.c_str(), n->Name(), n->value ? n->value : "");
    if (n->kind == NODE_TREE) {
      QDBG_IN("QInfo::DbgPrint", "%s{\n", ind.c_str());
      open.push_back(n);
    }
  }
  closeUntil(info.GetRoot());
}

void QInfo::DbgPrint(const char *title, int mode) {
  if (mode & 1)
    PrintUnused(*this, title);
  else
    PrintAll(*this, title);
}
