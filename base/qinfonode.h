// One node of a QInfo tree: a key, a group (tree) or a comment.
//
// Children form a singly linked list in file order; `reference` is the group
// a `name~path` group inherits from (not owned). `hashNext` chains the nodes
// of one bucket of the owning QInfo's path hash table.
#pragma once

#include <cstdint>

#include "base/qstring.h"

enum : uint32_t { NODE_COMMENT = 0, NODE_KEY = 1, NODE_TREE = 2 };

enum : uint32_t {
  NODEF_USED = 0x1,     // a getter has read this node
  NODEF_DELETED = 0x2,  // removed by QInfo::Delete: not written, skipped by path walks
  NODEF_HASHED = 0x4,   // entered in the path hash table (so it is never chained twice)
};

struct QInfoNode {
  uint32_t kind = NODE_KEY;
  uint32_t flags = 0;
  char *value = nullptr;  // owned; null for a bare name
  qstring name;           // ";" for a comment, "root" for the root
  QInfoNode *next = nullptr;
  QInfoNode *firstChild = nullptr;
  QInfoNode *reference = nullptr;
  QInfoNode *parent = nullptr;
  QInfoNode *hashNext = nullptr;

  QInfoNode(uint32_t k, const char *n, int len);
  ~QInfoNode();
  QInfoNode(const QInfoNode &) = delete;
  QInfoNode &operator=(const QInfoNode &) = delete;

  const char *Name() const;
  // Replaces the value with a copy of `text` (null: no value).
  void SetValue(const char *text);
};
