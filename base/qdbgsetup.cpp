// qdbg_setup: the development switches of the settings tree, applied once at
// start-up to the diagnostics and (stored for) the networking layer.
#include "base/qdbgsetup.h"

#include <cstdlib>
#include <cstring>

#include "base/qinfo.h"
#include "diag/qdebug.h"

#undef QDIAG_TAG
#define QDIAG_TAG "qdebug"


static int portOffset, fakePacketDrops;
int QNetPortOffset() { return portOffset; }
void QNetSetPortOffset(int offset) { portOffset = offset; }
int QNetFakePacketDrops() { return fakePacketDrops; }
void QNetSetFakePacketDrops(int drops) { fakePacketDrops = drops; }

// Opens the UDP debug channel named by "host:port"; false stops the setup.
static bool SetupChannel(QInfo *info) {
  char dest[1024];
  info->GetString("dev.udp_out", dest, "");
  if (!dest[0] && QGetMainInfo()) QGetMainInfo()->GetString("dev.udp_out", dest, "");
  if (!dest[0]) return true;
  char *colon = strchr(dest, ':');
  if (!colon) {
    QWARN_IN("qdbg_setup", "qdbg_setup: need host:port in dev_udpout (now '%s')", dest);
    return false;
  }
  *colon = 0;
  int port = atoi(colon + 1);
  if (!qdbgChannelOpen(dest, port)) {
    QWARN_IN("qdbg_setup", "qdbg_setup: can't open %s:%d", dest, port);
    return false;
  }
  return true;
}

void qdbg_setup(QInfo *info) {
  if (!info) return;
  // 1. A command to run before anything else (e.g. a log viewer).
  char cmd[1024];
  info->GetString("dev.run_first", cmd, "");
  if (cmd[0]) {
    int rc = system(cmd);  // its result is the command's business
    (void)rc;
  }

  // 2-3. Settings of the networking layer.
  int offset = info->GetInt("dev.port_offset", 0);
  if (offset >= 1) QNetSetPortOffset(offset);
  int drops = info->GetInt("dev.fake_packet_drops", 0);
  if (drops >= 1) QNetSetFakePacketDrops(drops);

  // 4. The UDP debug channel; a bad destination ends the setup here.
  if (!SetupChannel(info)) return;

  // 5. A fresh copy of this run's errors and warnings.
  int last = info->GetInt("dev.log_last", 0);
  if (!last) last = info->GetInt("dev.strict", 0);
  if (last) qlog_last_open("QLOG_LAST.txt");

  // 6. Development flags.
  unsigned dev = 0;
  qSetDevFlags(0);
  if (info->GetBool("dev.opengl_checks", false)) {
    dev |= QDEV_OPENGL_CHECKS;
    QWARN("dev.opengl_checks is 1; may slow the program down - only use when tracking down a bug");
  }
  if (info->GetBool("dev.argument_tracing", false)) {
    dev |= QDEV_ARGUMENT_TRACING;
    QWARN("dev.argument_tracing is 1; may slow the program down - only use when tracking down a bug");
  }
  qSetDevFlags(dev);
}
