// QFile and the library's file functions.
#include "base/qfile.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/qstring.h"
#include "diag/qdebug.h"

// ---- open/close wrappers -------------------------------------------------

static int g_openFiles;
static int g_failWrites;
static QVfsExistsFunc g_vfs;

FILE *qfopen(const char *name, const char *mode) {
  FILE *fp = fopen(name, mode);
  if (fp) g_openFiles++;
  return fp;
}

void qfclose(FILE *fp) {
  if (!fp) {
    qerr("crt", "qfclose", __LINE__, "qfclose(0) called\n");
    return;
  }
  g_openFiles--;
  fclose(fp);
}

int qfOpenCount() { return g_openFiles; }
void qfFailNextWrites(int count) { g_failWrites = count; }

static bool WriteFails() {
  if (g_failWrites <= 0) return false;
  g_failWrites--;
  return true;
}

// Names written for the original platform's scratch folder land in the
// system's temporary folder here; everything else is left as it is.
const char *QMapPath(const char *name, char *buf, size_t bufSize) {
  if (!name) return name;
  if ((name[0] == 'c' || name[0] == 'C') && name[1] == ':' && (name[2] == '/' || name[2] == '\\') &&
      (name[3] == 't' || name[3] == 'T') && (name[4] == '/' || name[4] == '\\')) {
    const char *tmp = getenv("TMPDIR");
    if (!tmp || !*tmp) tmp = "/tmp";
    snprintf(buf, bufSize, "%s/%s", tmp, name + 5);
    return buf;
  }
  return name;
}

static const char *CMode(int mode) {
  switch (mode) {
    case 1: return "rb";
    case 2: return "wb";
    case 3: return "rb+";
    case 4: return "wb+";
    case 5: return "r";
    case 6: return "a";
    case 7: return "a+";
    case 8: return "ab";
    case 9: return "w";
  }
  return nullptr;
}

// ---- QFile -------------------------------------------------------------------

QFile::QFile(const char *name, int mode) { Open(name, mode); }

void QFile::Open(const char *name, int mode) {
  name_ = strdup(name ? name : "");
  mode_ = mode & 0xFF;
  bool memory = (mode & MEMORY) != 0;
  if (memory && mode_ == READ_TEXT) {
    QERR_IN("QFile::QFile", 
         "QFile ctor: READ_TEXT and MEMORY flags are incompatible (buggy); turning off MEMORY\n");
    memory = false;
  }
  const char *cm = CMode(mode_);
  if (!cm) return;
  char mapped[1024];
  fp_ = qfopen(QMapPath(name_, mapped, sizeof mapped), cm);
  if (!fp_ || !memory) return;
  if (mode_ != READ_BINARY) {
    QWARN_IN("QFile::QFile", "QFile:ctor MEMORY req'd for '%s' but incompatible mode given\n",
          name_);
    return;
  }
  Preload();
}

void QFile::Preload() {
  fseek(fp_, 0, SEEK_END);
  long size = ftell(fp_);
  if (size < 1) {  // nothing to preload: stay a plain stream
    fseek(fp_, 0, SEEK_SET);
    return;
  }
  char *buf = static_cast<char *>(malloc(size_t(size)));
  if (!buf) {
    QWARN_IN("QFile::QFile", "QFile:ctor; not enough memory to preload file '%s'\n", name_);
    size_ = 0;
    fseek(fp_, 0, SEEK_SET);
    return;
  }
  fseek(fp_, 0, SEEK_SET);
  size_t got = fread(buf, 1, size_t(size), fp_);
  qfclose(fp_);
  fp_ = nullptr;
  buffer_ = cursor_ = buf;
  size_ = int(got);
  state_ |= OWNS_BUFFER;
}

QFile::QFile(const char *name, FILE *fp, int mode) {
  name_ = strdup(name ? name : "");
  if (mode & MEMORY) {
    QWARN_IN("QFile::QFile", "QFile: can't use memory mapping with 'fp' takeover\n");
    mode &= ~MEMORY;
  }
  mode_ = mode & 0xFF;
  fp_ = fp;
  // Streams come from qfopen, which counted them already; qfclose uncounts.
}

QFile::QFile(const char *name, const char *buffer, int size) {
  name_ = strdup(name ? name : "");
  mode_ = READ_BINARY;
  buffer_ = cursor_ = buffer;
  size_ = size;
}

QFile::~QFile() {
  Close();
  free(name_);
}

void QFile::Close() {
  if (state_ & OWNS_BUFFER) free(const_cast<char *>(buffer_));
  state_ &= ~OWNS_BUFFER;
  buffer_ = cursor_ = nullptr;
  if (fp_) qfclose(fp_);
  fp_ = nullptr;
}

int QFile::GetByte() {
  if (state_ & PUTBACK_PENDING) {
    state_ &= ~PUTBACK_PENDING;
    return putback_;
  }
  if (buffer_) {
    long offset = cursor_ - buffer_;
    if (offset < size_) return static_cast<unsigned char>(*cursor_++);
    if (offset == size_) cursor_++;  // step past the end once, so AtEnd turns true
    return 0xFF;
  }
  if (fp_) return fgetc(fp_);
  return 0;
}

void QFile::UnGetByte(int c) {
  putback_ = c;
  state_ |= PUTBACK_PENDING;
}

bool QFile::AtEnd() const {
  if (state_ & PUTBACK_PENDING) return false;
  if (buffer_) return cursor_ - buffer_ > size_;
  if (fp_) return feof(fp_) != 0;
  return true;
}

bool QFile::PutChar(int c) {
  if (buffer_) {
    QERR("QFile:PutChar() not supported for memory files\n");
    return false;
  }
  if (!fp_ || WriteFails()) return false;
  return fputc(c, fp_) != EOF;
}

bool QFile::Write(const void *p, size_t n) {
  if (buffer_) {
    QERR_IN("QFile::PutChar", "QFile:PutChar() not supported for memory files\n");
    return false;
  }
  if (!fp_ || WriteFails()) return false;
  return fwrite(p, 1, n, fp_) == n;
}

bool QFile::Printf(const char *fmt, ...) {
  if (buffer_ || !fp_ || WriteFails()) return false;
  va_list ap;
  va_start(ap, fmt);
  int n = vfprintf(fp_, fmt, ap);
  va_end(ap);
  return n >= 0;
}

bool QFile::Read(qstring &out) {
  std::string all;
  if (buffer_) {
    long offset = cursor_ - buffer_;
    if (offset < size_) all.assign(cursor_, size_t(size_ - offset));
    cursor_ = buffer_ + size_;
  } else if (fp_) {
    char chunk[4096];
    size_t n;
    while ((n = fread(chunk, 1, sizeof chunk, fp_)) > 0) all.append(chunk, n);
  }
  if (!out.Reserve(int(all.size()))) {
    QERR("QFile:Read(s); out of memory\n");
    return false;
  }
  out.Set(all.data(), int(all.size()));
  return true;
}

// ---- file functions ----------------------------------------------------------

void QSetVirtualFileSystem(QVfsExistsFunc exists) { g_vfs = exists; }

bool QFileExists(const char *name, bool useVfs) {
  if (!name || !*name) return false;
  if (useVfs && g_vfs && g_vfs(name)) return true;
  char mapped[1024];
  FILE *fp = qfopen(QMapPath(name, mapped, sizeof mapped), "rb");
  if (!fp) return false;
  qfclose(fp);
  return true;
}

const char *QFileBase(const char *path) {
  const char *base = path;
  for (const char *p = path; *p; p++)
    if (*p == '/' || *p == '\\') base = p + 1;
  return base;
}

const char *QFileExtension(const char *path) { return strrchr(path, '.'); }

long QFileSize(const char *name) {
  char mapped[1024];
  FILE *fp = qfopen(QMapPath(name, mapped, sizeof mapped), "rb");
  if (!fp) return -1;
  fseek(fp, 0, SEEK_END);
  long size = ftell(fp);
  qfclose(fp);
  return size;
}
