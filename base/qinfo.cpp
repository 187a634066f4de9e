// QInfo: construction, lifetime, nodes, paths and the path hash table.
#include "base/qinfo.h"

#include <cstring>

#include "base/qinfoimpl.h"
#include "base/qinfonode.h"
#include "diag/qdebug.h"

// ---- Nodes -------------------------------------------------------------------

// A name is a C string: a zero byte read from a file ends it there.
QInfoNode::QInfoNode(uint32_t k, const char *n, int len) : kind(k) {
  name.Set(n, int(strnlen(n, size_t(len))));
}

QInfoNode::~QInfoNode() { delete[] value; }

const char *QInfoNode::Name() const { return name.c_str(); }

void QInfoNode::SetValue(const char *text) {
  delete[] value;
  value = nullptr;
  if (!text) return;
  size_t n = strlen(text);
  value = new char[n + 1];
  memcpy(value, text, n + 1);
}

// ---- Dotted paths --------------------------------------------------------------

QInfoPath::QInfoPath(const char *path, size_t maxLen) : p(path ? path : "") {
  end = p + strnlen(p, maxLen);
}

bool QInfoPath::Next() {
  while (p < end && *p == '.') p++;
  if (p == end) return false;
  part = p;
  while (p < end && *p != '.') p++;
  len = int(p - part);
  return true;
}

bool QInfoPath::IsLast() const {
  for (const char *q = p; q < end; q++)
    if (*q != '.') return false;
  return true;
}

static unsigned NodeHash(const QInfoNode *n);

// ---- Tree building -------------------------------------------------------------

void QInfoImpl::NewRoot(QInfo &in) { in.root = new QInfoNode(NODE_TREE, "root", 4); }

QInfoNode *QInfoImpl::NextNode(QInfoNode *n, const QInfoNode *top) {
  if (n->firstChild) return n->firstChild;
  for (; n != top; n = n->parent)
    if (n->next) return n->next;
  return nullptr;
}

// Empties the path hash table. Every entry is a node of the tree, so
// clearing the buckets of the tree's hashed nodes empties all 65,536 of them
// without writing half a megabyte for a small file.
void QInfoImpl::ClearHash(QInfo &in) {
  for (QInfoNode *n = in.root; n; n = NextNode(n, in.root))
    if (n->flags & NODEF_HASHED) in.hash[NodeHash(n)] = nullptr;
}

// Frees the whole tree without recursion: a node's children are spliced in
// front of its next sibling before it is freed, so the list is flat.
void QInfoImpl::FreeTree(QInfo &in) {
  ClearHash(in);
  QInfoNode *n = in.root;
  while (n) {
    if (QInfoNode *c = n->firstChild) {
      QInfoNode *last = c;
      while (last->next) last = last->next;
      last->next = n->next;
      n->next = c;
    }
    QInfoNode *next = n->next;
    delete n;
    n = next;
  }
  in.root = nullptr;
}

void QInfoImpl::AppendChild(QInfoNode *tree, QInfoNode *child) {
  child->parent = tree;
  if (!tree->firstChild) {
    tree->firstChild = child;
    return;
  }
  QInfoNode *t = tree->firstChild;
  while (t->next) t = t->next;
  t->next = child;
}

bool QInfoImpl::NameIs(const QInfoNode *n, const char *part, int len) {
  return n->name.Length() == len && memcmp(n->Name(), part, size_t(len)) == 0;
}

// ---- Full paths and the hash -------------------------------------------------------

// The names of a node's full path, own name first: at most 10, the root's
// name never among them.
static int PathChain(const QInfoNode *n, const QInfoNode *chain[QInfo::MAX_LEVEL]) {
  int count = 0;
  for (; n && n->parent && count < QInfo::MAX_LEVEL; n = n->parent) chain[count++] = n;
  return count;
}

unsigned QInfo::PathHash(const char *path) {
  uint32_t sum = 0;
  for (uint32_t i = 0; path[i]; i++) sum += uint32_t((unsigned char)path[i]) * i;
  return sum % HASH_SIZE;
}

static unsigned NodeHash(const QInfoNode *n) {
  const QInfoNode *chain[QInfo::MAX_LEVEL];
  uint32_t sum = 0, idx = 0;
  for (int i = PathChain(n, chain) - 1; i >= 0; i--) {
    if (idx) sum += uint32_t('.') * idx++;
    for (const unsigned char *c = (const unsigned char *)chain[i]->Name(); *c; c++)
      sum += uint32_t(*c) * idx++;
  }
  return sum % QInfo::HASH_SIZE;
}

// Compares from the node upwards against the key's end: keys that share a
// bucket (the hash spreads similar names poorly) mostly differ in their last
// name, so a mismatch shows at once.
bool QInfoImpl::PathEquals(const QInfoNode *n, const char *key, size_t keyLen) {
  const char *end = key + keyLen;
  int count = 0;
  for (; n && n->parent && count < QInfo::MAX_LEVEL; n = n->parent, count++) {
    if (count && (end == key || *--end != '.')) return false;
    size_t len = size_t(n->name.Length());
    if (size_t(end - key) < len) return false;
    const char *name = n->Name();
    if (len && (end[-1] != name[len - 1] || memcmp(end - len, name, len - 1) != 0)) return false;
    end -= len;
  }
  return count && end == key;
}

void QInfo::GetFullPath(const QInfoNode *n, qstring &out) {
  const QInfoNode *chain[MAX_LEVEL];
  int count = PathChain(n, chain);
  out = "";
  for (int i = count - 1; i >= 0; i--) {
    if (i != count - 1) out += ".";
    out += chain[i]->Name();
  }
}

// While a file is read, each bucket's chain is built newest first (one step
// per key instead of a walk to the chain's tail, which made reading a big
// file quadratic) and turned round when reading ends, so that among equal
// paths the first one read is found first. A node assigned twice (`a=1`,
// then a dotted name's `=2` landing on it) stays chained once.
void QInfoImpl::HashInsert(QInfo &in, QInfoNode *node, std::vector<unsigned> &touched) {
  if (node->flags & NODEF_HASHED) return;
  node->flags |= NODEF_HASHED;
  unsigned bucket = NodeHash(node);
  if (!in.hash[bucket]) touched.push_back(bucket);
  node->hashNext = in.hash[bucket];
  in.hash[bucket] = node;
}

void QInfoImpl::HashFinish(QInfo &in, const std::vector<unsigned> &touched) {
  for (unsigned bucket : touched) {
    QInfoNode *prev = nullptr;
    for (QInfoNode *n = in.hash[bucket]; n;) {
      QInfoNode *next = n->hashNext;
      n->hashNext = prev;
      prev = n;
      n = next;
    }
    in.hash[bucket] = prev;
  }
}

// ---- Lifetime -------------------------------------------------------------------------

QInfo::QInfo(const char *name, unsigned f)
    : fileName(nullptr), root(nullptr), flags(f), fallback(nullptr), line(1), fileTime(-1) {
  size_t n = strlen(name ? name : "");
  fileName = new char[n + 1];
  memcpy(fileName, name ? name : "", n + 1);
  memset(hash, 0, sizeof hash);
  QInfoImpl::NewRoot(*this);
  if (!(flags & QINFO_NO_READ)) Read();
}

QInfo::~QInfo() {
  if (flags & QINFO_MODIFIED) Write(nullptr, true);
  QInfoImpl::FreeTree(*this);
  delete[] fileName;
  delete fallback;
}

void QInfo::SetFallback(QInfo *fb) {
  if (fb == fallback) return;
  delete fallback;
  fallback = fb;
}

void QInfo::Clear() {
  QInfoImpl::FreeTree(*this);
  QInfoImpl::NewRoot(*this);
}

void QInfo::Reload() {
  if (fallback) fallback->Reload();
  if (flags & QINFO_MODIFIED) Write(nullptr, true);
  Clear();
  Read();
}

// ---- The process-wide main settings tree -------------------------------------------

static QInfo *mainInfo;
QInfo *QGetMainInfo() { return mainInfo; }
void QSetMainInfo(QInfo *info) { mainInfo = info; }
