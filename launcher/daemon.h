// The daemon start: password check, one fork, and in the child the switch of
// group and user, a new session and the file-creation mask.
#pragma once

#include "launcher/identity.h"
#include "launcher/settings.h"

namespace qorvel {

inline constexpr int kPasswordRefused = 5;

// The daemon start of `launch`, under its user, group and password. Forks
// once. The parent never returns: it waits until the child has become the
// program or told it the code its start failed with, and exits with 0 or that
// code; with -s it tells NOTIFY_SOCKET the child is ready (notify.h), then
// waits for the child, passing on TERM, INT, HUP, QUIT, USR1 and USR2 to it
// and reaping every orphan that comes to it (as PID 1, or as the child
// subreaper it makes itself), removes the pid file and exits with the
// child's status (128 + N when signal N ended it). The child publishes the
// pid file before it switches.
// Returns 0 in the child, or a code when the start failed (kUnknownUser,
// kPasswordRefused, kBadGroup, errno: EPERM when a caller other than the
// superuser names another user). The password is wiped once it has been
// checked (or waived with --no-password-check). A failed wait ends the parent
// with its errno.
int child_start(LaunchSettings& launch);

// What child_start checks before its fork, and nothing more: the user, the
// password and the group, resolved into `identity`. Returns 0 or the code
// child_start would return. For --dry-run.
int check_child_start(LaunchSettings& launch, Identity& identity);

// In the daemon child whose start failed: tells the waiting parent `code`.
// Does nothing in any other process.
void tell_waiting_parent(int code);

}  // namespace qorvel
