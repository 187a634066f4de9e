// QInfo queries: the node search, the key lookup (hash probe, then walk,
// then fallback) and the typed getters built on it.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/qeval.h"
#include "base/qinfo.h"
#include "base/qinfoimpl.h"
#include "base/qstring.h"
#include "diag/qdebug.h"

#undef QDIAG_TAG
#define QDIAG_TAG "qinfo"

// ---- Node search ---------------------------------------------------------------------

QInfoNode *QInfoImpl::FindChild(QInfoNode *tree, const char *part, int len, bool followRefs) {
  for (QInfoNode *t = tree; t; t = followRefs ? t->reference : nullptr) {
    for (QInfoNode *c = t->firstChild; c; c = c->next)
      if (c->kind != NODE_COMMENT && !(c->flags & NODEF_DELETED) && NameIs(c, part, len)) return c;
  }
  return nullptr;
}

QInfoNode *QInfoImpl::Walk(QInfo &in, const char *path, size_t maxLen) {
  QInfoPath parts(path, maxLen);
  QInfoNode *tree = in.root;
  while (parts.Next()) {
    QInfoNode *m = FindChild(tree, parts.part, parts.len, true);
    if (!m) return nullptr;
    if (m->kind == NODE_TREE) {
      tree = m;
      continue;
    }
    return parts.IsLast() ? m : nullptr;  // a key with parts left over
  }
  return tree;
}

QInfoNode *QInfo::FindNode(const char *path) { return QInfoImpl::Walk(*this, path, QInfoImpl::KEY_COPY); }

int QInfo::CountChildren(const char *path) {
  QInfoNode *n = FindNode(path);
  int count = 0;
  for (QInfoNode *c = n ? n->firstChild : nullptr; c; c = c->next)
    if (c->kind != NODE_COMMENT && !(c->flags & NODEF_DELETED)) count++;
  return count;
}

bool QInfo::Delete(const char *path) {
  QInfoNode *n = FindNode(path);
  if (!n || n == root) return false;
  n->flags |= NODEF_DELETED;
  flags |= QINFO_MODIFIED;
  return true;
}

// ---- Lookup ----------------------------------------------------------------------------

static const char *ValueOf(QInfoNode *n) {
  n->flags |= NODEF_USED;
  return n->value ? n->value : "?";  // a bare name in the file
}

const char *QInfoImpl::Lookup(QInfo &in, const char *key) {
  if (!key) key = "";
  // 1. Hash probe. Deleted nodes are still found here until the next read.
  size_t len = strlen(key);
  for (QInfoNode *n = in.hash[QInfo::PathHash(key)]; n; n = n->hashNext)
    if (PathEquals(n, key, len)) return ValueOf(n);

  // 2. Walk by names; a group answers only when it carries a value.
  QInfoNode *n = Walk(in, key, KEY_COPY);
  if (n && n != in.root && (n->kind != NODE_TREE || n->value)) return ValueOf(n);

  // 3. Not here: the fallback, or the required warning.
  if (in.fallback) {
    const char *v = Lookup(*in.fallback, key);
    if (v && (in.flags & QINFO_WARN_FALLBACK))
      QNOTE_IN("QInfo::GetString", "QInfo: '%s' only found in fallback file.", key);
    return v;
  }
  if (in.flags & QINFO_REQUIRED)
    QWARN_IN("QInfo::GetString", "QInfo: '%s' not found in info or fallback - required", key);
  return nullptr;
}

// ---- String getters ---------------------------------------------------------------------

static void CopyCut(char *out, int outSize, const char *text) {
  if (!out || outSize <= 0) return;
  size_t n = strnlen(text, size_t(outSize - 1));
  memcpy(out, text, n);
  out[n] = 0;
}

bool QInfo::GetString(const char *key, char *out, int outSize, const char *def) {
  const char *v = QInfoImpl::Lookup(*this, key);
  CopyCut(out, outSize, v ? v : def ? def : "");
  return v != nullptr;
}

bool QInfo::GetString(const char *key, qstring &out, const char *def) {
  const char *v = QInfoImpl::Lookup(*this, key);
  out = v ? v : def ? def : "";
  return v != nullptr;
}

bool QInfo::GetString(const qstring &key, qstring &out, const char *def) {
  return GetString(key.c_str(), out, def);
}

// ---- Numbers ----------------------------------------------------------------------------

int QInfo::GetInt(const char *key, int def) {
  const char *v = QInfoImpl::Lookup(*this, key);
  if (!v) return def;
  qstring text(v), reason;
  if (!text.ValidateInt(&reason))
    QWARN("%s value '%s' (in %s) is not a valid integer: %s", key, v,
          fileName, reason.c_str());
  return Eval(v);
}

int QInfo::GetInt(const qstring &key, int def) { return GetInt(key.c_str(), def); }

float QInfo::GetFloat(const char *key, float def) {
  const char *v = QInfoImpl::Lookup(*this, key);
  if (!v) return def;
  qstring text(v), reason;
  if (!text.ValidateFloat(&reason))
    QWARN("%s value '%s' (in %s) is not a valid float: %s", key, v,
          fileName, reason.c_str());
  return float(atof(v));
}

float QInfo::GetFloat(const qstring &key, float def) { return GetFloat(key.c_str(), def); }

bool QInfo::GetBool(const char *key, bool def) {
  const char *v = QInfoImpl::Lookup(*this, key);
  return v ? Eval(v) != 0 : def;
}

// Splits a value at blanks and commas (empty parts skipped) into at most
// `count` parts; returns how many it found.
static int SplitList(const char *v, int count, std::string *parts) {
  int n = 0;
  while (v && *v && n < count) {
    v += strspn(v, " ,");
    size_t len = strcspn(v, " ,");
    if (!len) break;
    parts[n++].assign(v, len);
    v += len;
  }
  return n;
}

bool QInfo::GetFloats(const char *key, int count, float *out, const float *defs) {
  if (count <= 0) return true;
  std::string *parts = new std::string[size_t(count)];
  int n = SplitList(QInfoImpl::Lookup(*this, key), count, parts);
  for (int i = 0; i < count; i++) out[i] = i < n ? float(atof(parts[i].c_str())) : defs ? defs[i] : 0.0f;
  delete[] parts;
  return true;
}

bool QInfo::GetInts(const char *key, int count, int *out, int def) {
  const char *v = QInfoImpl::Lookup(*this, key);
  if (count <= 0) return v != nullptr;
  std::string *parts = new std::string[size_t(count)];
  int n = SplitList(v, count, parts);
  for (int i = 0; i < count; i++) out[i] = i < n ? Eval(parts[i].c_str()) : def;
  delete[] parts;
  return v != nullptr;
}

// ---- Hosts ----------------------------------------------------------------------------------

// The networking library turns two numbers into a host address on the
// local network; this build has no networking layer and uses 192.168.a.b.
static void HostAddress(int a, int b, char *out, int outSize) {
  snprintf(out, size_t(outSize), "192.168.%d.%d", a, b);
}

bool QInfo::GetHost(const char *key, char *out, int outSize) {
  char v[QInfo::MAX_TOKEN + 2];
  if (!GetString(key, v, "")) {
    CopyCut(out, outSize, "");
    return false;
  }
  if (v[0] == '/') {
    const char *plus = strchr(v, '+');
    if (!plus) {
      QWARN("QInfo:GetHost(); bad format of host IP (%s) for key '%s'", v,
            key);
      CopyCut(out, outSize, "127.0.0.1");
    } else {
      HostAddress(atoi(v + 1), atoi(plus + 1), out, outSize);
    }
  } else if (v[0] == '+') {
    // "+n+m" adds m only when the second '+' is the third character.
    int n = atoi(v + 1);
    if (v[1] && v[2] == '+') n += atoi(v + 3);
    HostAddress(0, n, out, outSize);
  } else {
    CopyCut(out, outSize, v);
  }
  return true;
}
