// QInfo: the configuration tree of one info file.
//
// An info file is a hierarchy of `name=value` keys, `name { ... }` groups,
// `;` comments and `name~path` references (a group that inherits another
// group's keys). A QInfo reads one such file into a tree of QInfoNode
// (base/qinfonode.h), answers dotted-path queries ("resolution.width",
// "wheel0.pacejka.a0") with typed getters that fall back to a caller-given
// default, changes values through setters and writes the tree back, asking
// before it overwrites a file that changed on disk since it was read.
//
// Getters never fail: a missing key gives the default silently (unless
// QINFO_REQUIRED is set). Setters fail (false) only for an empty key or a
// path that runs through a key or ends on a group. All problems are reported
// through the reporters of diag/qdebug.h.
//
// One thread only: the tree holds no lock and Eval (used by GetInt/GetBool)
// keeps process-wide state.
//
// The object holds its path hash table (65,536 buckets) inside itself, so it
// is about half a megabyte: create it with `new` rather than on the stack.
#pragma once

#include <cstddef>
#include <cstdint>

class qstring;
class QFile;
struct QInfoNode;  // base/qinfonode.h

// Object flags, given to the constructor and kept in the object.
enum : unsigned {
  QINFO_MODIFIED = 0x01,       // a setter changed the tree; the destructor writes the file
  QINFO_FILE_READ = 0x02,      // reading could open the file
  QINFO_SILENT = 0x04,         // no "can't open" warning for a missing file
  QINFO_WARN_FALLBACK = 0x08,  // note when a key is found only in the fallback
  QINFO_STOP_AT_CLOSE = 0x10,  // reading ends right after the first '}'
  QINFO_REQUIRED = 0x20,       // warn when a key is missing here and in the fallback
  QINFO_NO_READ = 0x40,        // a new file: the constructor does not read it; the first
                               // write clears this and skips the modification check
};

// The overwrite question of QInfo::Write: a modal OK/Cancel box. Returns true
// for OK (overwrite), false for Cancel. The UI framework installs its modal
// box; tests install their own answer. With no handler installed the answer
// is OK: a program without a user interface cannot ask, and the write its
// caller requested then happens, as it would for a file nobody touched.
typedef bool (*QInfoQuestion)(const char *title, const char *text);

class QInfo {
 public:
  static constexpr int MAX_LEVEL = 10;       // nesting depth of groups in a file
  static constexpr int HASH_SIZE = 65536;    // buckets of the path hash table
  static constexpr int MAX_TOKEN = 1023;     // longest name or raw line the reader keeps

  // Copies the name and reads the file unless QINFO_NO_READ is set.
  QInfo(const char *fileName, unsigned flags = 0);
  // Writes the file first if QINFO_MODIFIED is set (asking before it
  // overwrites a file changed on disk), then frees the tree and the fallback.
  ~QInfo();
  QInfo(const QInfo &) = delete;
  QInfo &operator=(const QInfo &) = delete;

  const char *ClassName() const { return "QInfo"; }
  const char *GetFileName() const { return fileName; }
  unsigned GetFlags() const { return flags; }
  void SetFlags(unsigned f) { flags = f; }
  QInfoNode *GetRoot() const { return root; }

  // ---- Reading and lifetime ------------------------------------------------
  // Reads the object's file, appending to the tree (the constructor and
  // Reload start from an empty root). Always true; problems are reported.
  bool Read();
  // Reads from a file that is already open (a stream or a memory QFile).
  bool Read(QFile &file);
  // Reloads the fallback, writes the file if modified (with the question),
  // then reads the file again into a fresh tree.
  void Reload();
  // Frees the tree and starts an empty one; no write, flags unchanged.
  void Clear();
  // Attaches a fallback tree that answers what this one lacks; takes
  // ownership (a previous fallback is deleted).
  void SetFallback(QInfo *fallback);
  QInfo *GetFallback() const { return fallback; }

  // ---- Getters ---------------------------------------------------------------
  // The value's text into `out` (cut to outSize-1 bytes); a bare name gives
  // "?". Not found: the default (or "") and false.
  bool GetString(const char *key, char *out, int outSize, const char *def = nullptr);
  template <size_t N>
  bool GetString(const char *key, char (&out)[N], const char *def = nullptr) {
    return GetString(key, out, int(N), def);
  }
  bool GetString(const char *key, qstring &out, const char *def = nullptr);
  bool GetString(const qstring &key, qstring &out, const char *def = nullptr);
  // Checked by the integer rules, then evaluated by Eval ("%d"-style text,
  // expressions, #binary, $hex, 0x hex, 0 octal). A bad character warns but
  // the text is evaluated all the same.
  int GetInt(const char *key, int def = 0);
  int GetInt(const qstring &key, int def = 0);
  // Checked by the float rules ('.' decimal point, lower-case 'e'), then atof.
  float GetFloat(const char *key, float def = 0.0f);
  float GetFloat(const qstring &key, float def = 0.0f);
  // Eval(value) != 0; no check.
  bool GetBool(const char *key, bool def = false);
  // The value split at blanks and commas, each part by atof, at most `count`
  // parts; the other elements take defs[i] (or 0). Always true.
  bool GetFloats(const char *key, int count, float *out, const float *defs = nullptr);
  // The value split at blanks and commas, each part by Eval, at most `count`;
  // the other elements take `def`. Not found: all `def`, false.
  bool GetInts(const char *key, int count, int *out, int def = 0);
  bool GetInt2(const char *key, int out[2]) { return GetInts(key, 2, out, 0); }
  bool GetInt3(const char *key, int out[3]) { return GetInts(key, 3, out, 0); }
  bool GetInt4(const char *key, int out[4]) { return GetInts(key, 4, out, 0); }
  // A network host: plain text as it is; "/a+b" becomes "192.168.a.b" and
  // "+n" (or "+n+m", n one digit) "192.168.0.n" (n+m); "/a" without '+'
  // warns and gives "127.0.0.1". Not found: "" and false.
  bool GetHost(const char *key, char *out, int outSize);
  template <size_t N>
  bool GetHost(const char *key, char (&out)[N]) {
    return GetHost(key, out, int(N));
  }

  // ---- Node access -------------------------------------------------------
  // The node at a dotted path (key or group), following references; an
  // empty or null path gives the root; null when not found.
  QInfoNode *FindNode(const char *path);
  // Children of the node at path that are neither comments nor deleted.
  int CountChildren(const char *path);
  // Marks the node at path deleted (it is not written out) and sets
  // QINFO_MODIFIED; false when the path is not found.
  bool Delete(const char *path);
  // Sorts the children of every group by name (byte order); comments keep
  // their places. Sets QINFO_MODIFIED.
  void SortLevel();
  // mode bit 0: list the keys no getter has read (warnings under a note);
  // otherwise a debug dump of the whole tree.
  void DbgPrint(const char *title, int mode = 0);
  // The full dotted path of a node (at most its own and 9 ancestors' names).
  static void GetFullPath(const QInfoNode *node, qstring &out);
  // Bucket of a path in the hash table: sum of byte * index, modulo 65,536.
  static unsigned PathHash(const char *path);

  // ---- Setters -----------------------------------------------------------
  // Creates missing groups and the key; true also when the value was already
  // that text (then nothing is marked modified).
  bool SetString(const char *key, const char *value);
  bool SetString(const char *key, const qstring &value);
  bool SetInt(const char *key, int value);          // "%d"
  bool SetFloat(const char *key, float value);      // "%f"
  bool SetFloats(const char *key, const float *values, int count);  // "%f %f ..."

  // ---- Writing -------------------------------------------------------------
  // Writes the tree to `name` (null: the object's own file, and only when
  // modified). With `ask`, a target whose last-write time differs from the
  // one stored at reading asks the overwrite question first; Cancel returns
  // false and clears QINFO_MODIFIED.
  bool Write(const char *name = nullptr, bool ask = true);
  // Installs the overwrite question; returns the previous one (null = none).
  static QInfoQuestion SetOverwriteQuestion(QInfoQuestion question);

 private:
  friend struct QInfoImpl;  // the helpers shared by the qinfo*.cpp files
  friend class QInfoReader;
  friend class QInfoIterator;

  char *fileName;
  QInfoNode *root;
  unsigned flags;
  QInfo *fallback;
  int line;
  QInfoNode *hash[HASH_SIZE];
  int64_t fileTime;  // last-write time (ns) stored at reading / last write; -1: none
};

// Walks all nodes of a tree depth first, in file order.
class QInfoIterator {
 public:
  // Starts at the children of the node at `path` (null or "": the root).
  explicit QInfoIterator(QInfo *info, const char *path = nullptr);
  // The next node of any kind, or null at the end.
  QInfoNode *GetNextAny();
  // The next key or group (comments skipped), with its full path and name
  // when asked for; null at the end.
  QInfoNode *GetNext(qstring *fullPath = nullptr, qstring *name = nullptr);

 private:
  QInfoNode *start;
  QInfoNode *cur;
  QInfoNode *stack[QInfo::MAX_LEVEL];
  int nestLevel;
  bool begun;
};

// The process-wide main settings tree (not owned): the application attaches
// its settings here so that lower layers (qdbg_setup) can consult it.
QInfo *QGetMainInfo();
void QSetMainInfo(QInfo *info);
