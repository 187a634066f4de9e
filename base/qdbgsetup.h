// Start-up of the development switches ("dev." keys of the tool's settings).
#pragma once

class QInfo;

// Reads, in this order: dev.run_first (a shell command run and waited for),
// dev.port_offset and dev.fake_packet_drops (stored for the networking layer),
// dev.udp_out ("host:port" of the debug channel; also looked up in the main
// settings tree), dev.log_last / dev.strict (open QLOG_LAST.txt) and
// dev.opengl_checks / dev.argument_tracing (the development flags word).
void qdbg_setup(QInfo *info);

// The networking layer's settings that qdbg_setup stores (0 = off).
int QNetPortOffset();
void QNetSetPortOffset(int offset);
int QNetFakePacketDrops();
void QNetSetFakePacketDrops(int drops);
