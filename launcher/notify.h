// Readiness for a service manager (systemd's Type=notify), through the
// datagram protocol of sd_notify(3).
#pragma once

#include <sys/types.h>

namespace qorvel {

// When NOTIFY_SOCKET names a Unix socket (a path, or an abstract name written
// with a leading '@'), sends it "MAINPID=<main>\nREADY=1\n" in one datagram,
// so the manager takes `main` as the service's main process and the service as
// started. Does nothing without NOTIFY_SOCKET; a datagram that cannot be sent
// is reported and ends nothing.
void notify_ready(pid_t main);

}  // namespace qorvel
