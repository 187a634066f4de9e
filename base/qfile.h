// QFile: byte-level file access with one byte of put-back and an optional
// in-memory preload, plus the library's file functions (open counter,
// existence, file part, extension, size).
//
// Only this file and qfile.cpp touch the C runtime's stdio for opening and
// closing; everything else goes through them.
#pragma once

#include <cstddef>
#include <cstdio>

class qstring;

class QFile {
 public:
  enum Mode {
    READ_BINARY = 1,     // "rb"
    WRITE_BINARY = 2,    // "wb"
    UPDATE_BINARY = 3,   // "rb+"
    CREATE_BINARY = 4,   // "wb+"
    READ_TEXT = 5,       // "r"
    APPEND_TEXT = 6,     // "a"
    APPEND_READ = 7,     // "a+"
    APPEND_BINARY = 8,   // "ab"
    WRITE_TEXT = 9,      // "w"
    MEMORY = 0x100,      // preload the whole file (read, binary only)
  };
  enum State { PUTBACK_PENDING = 1, OWNS_BUFFER = 2 };

  QFile(const char *name, int mode);
  // Takes over an already open stream (closed by the destructor).
  QFile(const char *name, FILE *fp, int mode);
  // A read-only file over a caller's buffer, which stays the caller's.
  QFile(const char *name, const char *buffer, int size);
  ~QFile();
  QFile(const QFile &) = delete;
  QFile &operator=(const QFile &) = delete;

  bool IsOpen() const { return buffer_ || fp_; }
  // Next byte, the pending put-back byte first. A buffer file returns 0xFF
  // once past its end, as a stream's fgetc returns EOF.
  int GetByte();
  void UnGetByte(int c);
  bool AtEnd() const;
  bool PutChar(int c);
  bool Write(const void *p, size_t n);
  // Formatted output to the stream; false on a buffer file or a failed write.
  bool Printf(const char *fmt, ...) __attribute__((format(printf, 2, 3)));
  // Reads the rest of the file into `out`.
  bool Read(qstring &out);
  void Close();

  const char *GetName() const { return name_; }
  int GetMode() const { return mode_; }
  FILE *GetStream() const { return fp_; }
  bool IsMemory() const { return buffer_ != nullptr; }
  int GetSize() const { return size_; }

 private:
  void Open(const char *name, int mode);
  void Preload();

  char *name_ = nullptr;
  int mode_ = 0;
  FILE *fp_ = nullptr;
  int state_ = 0;
  int putback_ = 0;
  const char *buffer_ = nullptr;
  int size_ = 0;
  const char *cursor_ = nullptr;
};

// The library's wrappers of fopen/fclose: they keep a count of open files.
FILE *qfopen(const char *name, const char *mode);
void qfclose(FILE *fp);
int qfOpenCount();
// Makes the next `count` writes through QFile fail (for tests of write errors).
void qfFailNextWrites(int count);

// The mapping applied to names before opening (the identity, except for a
// few fixed folders of the original platform such as "c:/t/").
const char *QMapPath(const char *name, char *buf, size_t bufSize);

// A virtual file system (archives in memory) can answer existence tests
// before the disk; none is installed by default.
typedef bool (*QVfsExistsFunc)(const char *name);
void QSetVirtualFileSystem(QVfsExistsFunc exists);

bool QFileExists(const char *name, bool useVfs = true);
// The text after the last '/' or '\\' (the whole name if there is none).
const char *QFileBase(const char *path);
// The last '.', or null.
const char *QFileExtension(const char *path);
// Size in bytes, or -1 when the file cannot be opened.
long QFileSize(const char *name);
