// Writing a QInfo tree back to text, with the check that the file on disk
// has not changed since it was read.
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "base/qfile.h"
#include "base/qinfo.h"
#include "base/qinfoimpl.h"
#include "base/qstring.h"
#include "diag/qdebug.h"

#undef QDIAG_TAG
#define QDIAG_TAG "qinfo"

static QInfoQuestion overwriteQuestion;

QInfoQuestion QInfo::SetOverwriteQuestion(QInfoQuestion question) {
  QInfoQuestion old = overwriteQuestion;
  overwriteQuestion = question;
  return old;
}

// ---- Text of the tree ----------------------------------------------------------------

static void Indent(std::string &out, int level) { out.append(size_t(2 * (level > 0 ? level : 0)), ' '); }

static bool IsRootNamed(const QInfoNode *n) { return n->name == "root"; }

// The line that opens a group: name, "~path" of its reference, "=value".
static void TreeHeader(std::string &out, const QInfoNode *n, int level) {
  Indent(out, level);
  out += n->Name();
  if (n->reference) {
    qstring path;
    QInfo::GetFullPath(n->reference, path);
    out += "~";
    out += path.c_str();
  }
  if (n->value) {
    out += "=";
    out += n->value;
  }
  out += "\n";
  Indent(out, level);
  out += "{\n";
}

// One node; returns true when its children are to be written next.
static bool WriteNode(std::string &out, const QInfoNode *n, int level) {
  switch (n->kind) {
    case NODE_COMMENT:
      Indent(out, level);
      out += ";";
      out += n->value ? n->value : "";
      out += "\n";
      return false;
    case NODE_KEY:
      Indent(out, level);
      out += n->Name();
      out += "=";
      out += n->value ? n->value : "";
      out += "\n";
      return false;
    case NODE_TREE:
      if (!IsRootNamed(n)) TreeHeader(out, n, level);
      return true;
    default:
      QERR_IN("QInfo::WriteNode", "QInfo:Write() internal error; unknown node type");
      return false;
  }
}

// Depth first through the sibling lists without recursion (a setter can
// build trees of any depth); parent links lead back up. A group named
// "root", at any depth, gets no header and no braces.
static void TreeText(const QInfoNode *root, std::string &out) {
  const QInfoNode *n = root->firstChild;
  int level = 0;
  while (n) {
    if (!(n->flags & NODEF_DELETED) && WriteNode(out, n, level) && n->firstChild) {
      n = n->firstChild;
      level++;
      continue;
    }
    if (!(n->flags & NODEF_DELETED) && n->kind == NODE_TREE && !IsRootNamed(n)) {
      Indent(out, level);  // a group without children
      out += "}\n";
    }
    while (!n->next && n->parent != root) {  // close the groups we leave
      n = n->parent;
      level--;
      if (!IsRootNamed(n)) {
        Indent(out, level);
        out += "}\n";
      }
    }
    n = n->next;
  }
}

// ---- Write ---------------------------------------------------------------------------

bool QInfoImpl::AskOverwrite(const char *target) {
  if (!overwriteQuestion) return true;  // nobody to ask: do what the caller asked for
  std::string text = std::string("The file '") + target + "' was modified - it will be overwritten; do you want to overwrite?";
  return overwriteQuestion("File was modified", text.c_str());
}

bool QInfo::Write(const char *name, bool ask) {
  // 1. Which file.
  if (!name) {
    if (!(flags & QINFO_MODIFIED)) return true;
    name = fileName;
  }
  // 2. Changed on disk since it was read? A new file skips the check once.
  if (flags & QINFO_NO_READ) {
    flags &= ~QINFO_NO_READ;
  } else if (ask) {
    int64_t t;
    if (QInfoImpl::FileTime(name, t) && t != fileTime && !QInfoImpl::AskOverwrite(name)) {
      flags &= ~QINFO_MODIFIED;  // so the destructor does not ask again
      return false;
    }
  }
  // 3. Write the text.
  std::string text;
  TreeText(root, text);
  QFile file(name, QFile::WRITE_TEXT);
  bool written = file.IsOpen() && file.Write(text.data(), text.size());
  file.Close();
  if (!written) {
    QWARN("QInfo:Write(); file (%s) can't be written", name);
    return false;
  }
  // 4. Remember the new last-write time for the next check.
  flags &= ~QINFO_MODIFIED;
  if (!QInfoImpl::FileTime(name, fileTime)) fileTime = -1;
  return true;
}

// ---- Last-write time ----------------------------------------------------------------------

bool QInfoImpl::FileTime(const char *name, int64_t &out) {
  QFile file(name, QFile::READ_BINARY);
  struct stat st;
  if (!file.GetStream() || fstat(fileno(file.GetStream()), &st) != 0) return false;
  out = int64_t(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
  return true;
}
