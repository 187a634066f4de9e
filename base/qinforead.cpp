// Reading an info file into a QInfo tree: the tokenizer and what each token
// does to the tree.
//
// Tokens: blanks (space, tab, CR, LF, 0xA0) separate them; `;` `{` `}` `=`
// `~` are one-character tokens; anything else is a name, ended only by a
// space, CR, LF, `=`, `~` or 0xA0 (so a tab or `{` inside a name is part of
// it). After `=`, `;` and `~` the rest of the line is taken raw.
//
// The input follows stdio's end rule: the end is known only after a read has
// failed, and that read yields 0xFF. The reader tests for the end after each
// token, so a name running into the end is dropped and a value on a last line
// without a line end keeps a trailing 0xFF; files have always read this way.
#include <unistd.h>

#include <climits>
#include <cstring>

#include "base/qfile.h"
#include "base/qinfo.h"
#include "base/qinfoimpl.h"
#include "diag/qdebug.h"

#undef QDIAG_TAG
#define QDIAG_TAG "qinfo"


class QInfoReader {
 public:
  QInfoReader(QInfo &info, QFile &file) : in(info), f(file) {
    group[0] = in.root;
    tail[0] = nullptr;
  }
  void Run();
  std::vector<unsigned> touched;  // hash buckets this read started

 private:
  // A byte 0..255; a failed read gives 0xFF. A stream that fails without
  // reaching its end (a directory opened as a file) counts as ended, or the
  // reader would take 0xFF bytes from it for ever.
  int Get() {
    int c = f.GetByte();
    if (c < 0) failed = true;
    return c & 0xFF;
  }
  bool AtEnd() { return failed || f.AtEnd(); }
  void NextToken();
  void ReadRestOfLine();
  void Append(QInfoNode *node);
  bool Act();  // false: stop reading

  void OnName();
  void OnAssign();
  void OnComment();
  void OnOpen();
  bool OnClose();
  void OnReference();

  QInfo &in;
  QFile &f;
  bool failed = false;
  char tok[QInfo::MAX_TOKEN + 1];
  int tokLen = 0;
  QInfoNode *group[QInfo::MAX_LEVEL];  // open groups; level 0 is the root
  QInfoNode *tail[QInfo::MAX_LEVEL];   // a known child of group[i] near the tail, or null
  int level = 0;
  QInfoNode *current = nullptr;    // the node created last, comments included
  QInfoNode *lastNamed = nullptr;  // the key created last by a name token
};

// ---- Tokens ---------------------------------------------------------------------------

static bool IsBlank(int c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == 0xA0; }
static bool EndsName(int c) { return c == ' ' || c == '\r' || c == '\n' || c == '=' || c == '~' || c == 0xA0; }
static bool IsSingle(int c) { return c == ';' || c == '{' || c == '}' || c == '=' || c == '~'; }

void QInfoReader::NextToken() {
  int c;
  do {
    c = Get();
    if (c == '\n') in.line++;
  } while (IsBlank(c));
  tokLen = 0;
  tok[tokLen++] = char(c);
  if (!IsSingle(c)) {
    while (tokLen < QInfo::MAX_TOKEN) {
      c = Get();
      if (EndsName(c)) {
        f.UnGetByte(c);  // read again as the start of the next token
        break;
      }
      if (AtEnd()) break;  // the name is dropped by the end test
      tok[tokLen++] = char(c);
    }
  }
  tok[tokLen] = 0;
}

// The raw rest of the line; its CR or LF is consumed but not stored (and an
// LF eaten here is not counted as a line).
void QInfoReader::ReadRestOfLine() {
  tokLen = 0;
  while (tokLen < QInfo::MAX_TOKEN) {
    int c = Get();
    if (c == '\r' || c == '\n') break;
    tok[tokLen++] = char(c);
    if (AtEnd()) break;
  }
  tok[tokLen] = 0;
}

// ---- Tree building ---------------------------------------------------------------------

// Appends to the open group; the tail is remembered per level because
// reading a big flat block would otherwise walk the list for every key.
void QInfoReader::Append(QInfoNode *node) {
  QInfoNode *g = group[level];
  QInfoNode *t = tail[level] ? tail[level] : g->firstChild;
  if (t)
    while (t->next) t = t->next;  // the same group may be open at two levels
  node->parent = g;
  if (t)
    t->next = node;
  else
    g->firstChild = node;
  tail[level] = node;
}

void QInfoReader::OnName() {
  if (strchr(tok, '.')) {
    QWARN_IN("QInfo::Read", "QInfo(%s): key with '.' found (%s) - won't work; use { } to define subtrees (line %d)",
          in.fileName, tok, in.line);
    return;  // the `=` that follows lands on the previous node
  }
  QInfoNode *n = new QInfoNode(NODE_KEY, tok, tokLen);
  Append(n);
  current = lastNamed = n;
}

void QInfoReader::OnAssign() {
  ReadRestOfLine();
  if (!current) {
    QWARN_IN("QInfo::Read", "QInfo: assign without symbol in line %d", in.line);
    return;
  }
  current->SetValue(tok);
  if (current->kind != NODE_COMMENT) QInfoImpl::HashInsert(in, current, touched);
}

void QInfoReader::OnComment() {
  ReadRestOfLine();
  QInfoNode *n = new QInfoNode(NODE_COMMENT, ";", 1);
  n->SetValue(tok);
  Append(n);
  current = n;
}

void QInfoReader::OnOpen() {
  if (!lastNamed) {
    QWARN_IN("QInfo::Read", "QInfo: { without groupname");
    return;
  }
  lastNamed->kind = NODE_TREE;
  if (level + 1 >= QInfo::MAX_LEVEL) {
    QWARN_IN("QInfo::Read", "QInfo: '%s' nests too deep (max %d levels)", in.fileName, QInfo::MAX_LEVEL);
  } else {
    level++;
  }
  group[level] = lastNamed;
  tail[level] = nullptr;
}

bool QInfoReader::OnClose() {
  if (level == 0)
    QERR_IN("QInfo::Read", "QInfo(%s); more '}' brackets than '{' near line %d", in.fileName, in.line);
  else
    level--;
  return !(in.flags & QINFO_STOP_AT_CLOSE);
}

void QInfoReader::OnReference() {
  ReadRestOfLine();
  if (!current) {
    QWARN_IN("QInfo::Read", "QInfo: reference without symbol in line %d", in.line);
    return;
  }
  QInfoNode *target = QInfoImpl::Walk(in, tok, QInfoImpl::KEY_COPY);
  if (!target) {
    QWARN_IN("QInfo::Read", "QInfo(%s): reference (~) to unknown tree '%s' in line %d", in.fileName, tok, in.line);
  } else if (!target->firstChild) {
    QWARN_IN("QInfo::Read", "QInfo(%s): ref to tree '%s' without child in line %d", in.fileName, tok, in.line);
  } else {
    // The target was created before the current node, so references always
    // point backwards and can never form a cycle.
    current->kind = NODE_TREE;
    current->reference = target;
  }
}

bool QInfoReader::Act() {
  switch (tok[0]) {
    case '=': OnAssign(); return true;
    case ';': OnComment(); return true;
    case '{': OnOpen(); return true;
    case '}': return OnClose();
    case '~': OnReference(); return true;
    default: OnName(); return true;
  }
}

void QInfoReader::Run() {
  for (;;) {
    NextToken();
    if (AtEnd()) break;
    if (!Act()) break;
  }
  if (level > 0)
    QERR_IN("QInfo::Read", "QInfo(%s); brackets don't match; still %d closing bracket(s) expected at end of file.",
         in.fileName, level);
}

// ---- Entry points ---------------------------------------------------------------------------

bool QInfo::Read(QFile &file) {
  QInfoImpl::ClearHash(*this);
  line = 1;
  QInfoReader reader(*this, file);
  reader.Run();
  QInfoImpl::HashFinish(*this, reader.touched);
  return true;
}

bool QInfo::Read() {
  QFile file(fileName, QFile::READ_BINARY);
  if (!file.IsOpen()) {
    if (!(flags & QINFO_SILENT)) {
      char cwd[PATH_MAX];
      if (!getcwd(cwd, sizeof cwd)) strcpy(cwd, "?");
      QWARN("QInfo: can't open '%s', current directory is '%s'", fileName, cwd);
    }
    return true;
  }
  flags |= QINFO_FILE_READ;
  if (!QInfoImpl::FileTime(fileName, fileTime)) fileTime = -1;
  return Read(file);
}
