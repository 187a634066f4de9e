// Shared set-up of the fuzz targets: reports go nowhere (and nothing into
// QLOG.txt; a run of millions of inputs must not fill the disk), and each
// process gets one scratch file, in memory (tmpfs) where there is one, since
// a disk write per input is slow. The file is removed at exit.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "diag/qdebug.h"

inline int FuzzQuietHook(const char *, const char *) { return 0; }

// The scratch file "<stem>_<pid><ext>"; the first call also silences the
// reporters.
inline const std::string &FuzzScratchFile(const char *stem, const char *ext) {
  static std::string path = [&] {
    qSetErrorHook(FuzzQuietHook);
    qSetWarnHook(FuzzQuietHook);
    qSetDebugHook(FuzzQuietHook);
    qSetPlainDebugHook(FuzzQuietHook);
    qSetLogMask(0);
    std::string dir = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    return dir + "/" + stem + "_" + std::to_string(getpid()) + ext;
  }();
  static bool cleanup = atexit([] { remove(path.c_str()); }) == 0;
  (void)cleanup;
  return path;
}
