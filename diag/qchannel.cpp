// The UDP debug channel: one datagram per report line, towards a host:port
// set at start-up ("dev.udp_out"). Without a destination the first send marks
// the channel unavailable and nothing is sent from then on.
#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

#include "diag/qdebug.h"

namespace {
int g_state;  // 0 none yet, 1 open, -1 unavailable
int g_socket = -1;
sockaddr_in g_dest;
}  // namespace

bool qdbgChannelOpen(const char *host, int port) {
  qdbgChannelClose();
  addrinfo hints{}, *res = nullptr;
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_DGRAM;
  if (getaddrinfo(host, nullptr, &hints, &res) != 0 || !res) return false;
  memcpy(&g_dest, res->ai_addr, sizeof g_dest);
  freeaddrinfo(res);
  g_dest.sin_port = htons(uint16_t(port));
  g_socket = socket(AF_INET, SOCK_DGRAM, 0);
  if (g_socket < 0) return false;
  g_state = 1;
  return true;
}

void qdbgChannelClose() {
  if (g_socket >= 0) close(g_socket);
  g_socket = -1;
  g_state = 0;
}

void qdbgChannelSend(const char *text) {
  if (g_state == 0) g_state = -1;
  if (g_state != 1) return;
  sendto(g_socket, text, strlen(text), 0, reinterpret_cast<const sockaddr *>(&g_dest), sizeof g_dest);
}

int qdbgChannelState() { return g_state; }
