// The daemon start: password check, one fork, and in the child the switch of
// group and user, a new session and the file-creation mask.
#pragma once

#include <sys/types.h>

namespace qorvel {

inline constexpr int kPasswordRefused = 5;
inline constexpr int kBadGroup = 9;

// Forks once. The parent never returns: it exits at once, or with `suspend`
// waits for the child, passing on TERM, INT, HUP, QUIT, USR1 and USR2 to it,
// removes the pid file and exits with the child's status (128 + N when
// signal N ended it). The child publishes the pid file before it switches.
// Returns 0 in the child, or a code when the start failed (kPasswordRefused,
// kBadGroup, errno). `password` is wiped once it has been checked.
int child_start(const char* user, const char* group, char* password, int suspend);

// A user name or "#<decimal id>" as a user id; 0 when it cannot be resolved.
uid_t uname2id(const char* name);

// A group name or "#<decimal id>" as a group id; 0 when it cannot be resolved.
gid_t gname2id(const char* name);

// 1 and the number in *value when `text` is one decimal long integer with
// nothing but blanks around it; else 0.
int scan_long(const char* text, long* value);

}  // namespace qorvel
