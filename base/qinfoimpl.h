// Helpers shared by the qinfo*.cpp files; not part of QInfo's interface.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/qinfo.h"
#include "base/qinfonode.h"

// Source name the tree's reports carry.
#define QINFO_SRC "qinfo"

// A dotted path split at '.' the way strtok splits it: empty parts (from a
// leading, trailing or doubled dot) are skipped, so "a..b." has the parts
// "a" and "b". Only the first `maxLen` bytes of the path are looked at.
class QInfoPath {
 public:
  QInfoPath(const char *path, size_t maxLen);
  // Moves to the next part; false when there is none.
  bool Next();
  // True when the current part is the last one.
  bool IsLast() const;
  const char *part = nullptr;
  int len = 0;

 private:
  const char *p;
  const char *end;
};

struct QInfoImpl {
  // Longest key a lookup or node search looks at (the copy it splits).
  static constexpr size_t KEY_COPY = 1023;

  // Tree building.
  static void NewRoot(QInfo &in);
  static void FreeTree(QInfo &in);
  static void ClearHash(QInfo &in);
  // The node after n in depth-first file order, within top's subtree.
  static QInfoNode *NextNode(QInfoNode *n, const QInfoNode *top);
  static void AppendChild(QInfoNode *tree, QInfoNode *child);  // walks to the tail
  // Reading enters keys with HashInsert, which notes the buckets it starts,
  // and calls HashFinish with those at its end.
  static void HashInsert(QInfo &in, QInfoNode *node, std::vector<unsigned> &touched);
  static void HashFinish(QInfo &in, const std::vector<unsigned> &touched);
  static bool NameIs(const QInfoNode *n, const char *part, int len);
  // Does the node's full path equal `key` (of keyLen bytes) byte for byte?
  static bool PathEquals(const QInfoNode *n, const char *key, size_t keyLen);

  // Searches. FindChild skips comments and deleted nodes and, when asked,
  // continues among the children of the tree's reference chain.
  static QInfoNode *FindChild(QInfoNode *tree, const char *part, int len, bool followRefs);
  // The node search: a key or group at `path`, the root for an empty path.
  static QInfoNode *Walk(QInfo &in, const char *path, size_t maxLen);
  // The core of every getter: the value text ("?" for a bare name) or null
  // when neither this tree nor its fallback holds the key.
  static const char *Lookup(QInfo &in, const char *key);

  // The overwrite question (the installed handler, or OK without one).
  static bool AskOverwrite(const char *target);

  // Last-write time of a file in nanoseconds; false when it can't be opened.
  static bool FileTime(const char *name, int64_t &out);
};
