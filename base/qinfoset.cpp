// QInfo setters: find or create the key along a dotted path and store text.
#include <cstdio>
#include <cstring>
#include <string>

#include "base/qinfo.h"
#include "base/qinfoimpl.h"
#include "base/qstring.h"

// Nodes created here are not entered in the path hash table; lookups find
// them through the walk by names.
bool QInfo::SetString(const char *key, const char *value) {
  // 1. The target: existing groups are entered, missing parts created.
  QInfoPath parts(key, strlen(key ? key : ""));
  QInfoNode *tree = root, *target = nullptr;
  while (!target && parts.Next()) {
    bool last = parts.IsLast();
    QInfoNode *m = QInfoImpl::FindChild(tree, parts.part, parts.len, false);
    if (!m) {
      m = new QInfoNode(last ? NODE_KEY : NODE_TREE, parts.part, parts.len);
      QInfoImpl::AppendChild(tree, m);
    } else if ((m->kind == NODE_TREE) == last) {
      return false;  // the path ends on a group or runs through a key
    }
    if (last)
      target = m;
    else
      tree = m;
  }
  if (!target) return false;  // no name in the key

  // 2. The value: unchanged text leaves the tree unmodified.
  if (!value) value = "";
  if (target->value && strcmp(target->value, value) == 0) return true;
  target->SetValue(value);
  flags |= QINFO_MODIFIED;
  return true;
}

bool QInfo::SetString(const char *key, const qstring &value) { return SetString(key, value.c_str()); }

bool QInfo::SetInt(const char *key, int value) {
  char buf[16];
  snprintf(buf, sizeof buf, "%d", value);
  return SetString(key, buf);
}

bool QInfo::SetFloat(const char *key, float value) {
  char buf[64];
  snprintf(buf, sizeof buf, "%f", double(value));
  return SetString(key, buf);
}

bool QInfo::SetFloats(const char *key, const float *values, int count) {
  std::string text;
  char buf[64];
  for (int i = 0; i < count; i++) {
    snprintf(buf, sizeof buf, "%f ", double(values[i]));
    text += buf;
  }
  if (!text.empty()) text.pop_back();  // the last blank
  return SetString(key, text.c_str());
}
