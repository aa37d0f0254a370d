// Who the daemon child becomes: user and group names or numbers resolved to
// ids, the refusals made before anything starts, and the switch itself.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace qorvel {

inline constexpr int kBadGroup = 9;
inline constexpr int kUnknownUser = 67;  // "addressee unknown": not an errno

// The ids a -u value resolved to; 0 stands for "no change".
struct Identity {
    uid_t uid = 0;
    gid_t gid = 0;
    bool change_user = false;  // the superuser switches to another account
};

// Resolves `user` (may be empty) into identity.uid and change_user. Returns 0,
// kUnknownUser when it names no account, or EPERM when a caller other than
// the superuser names another user; each refusal is shown in every mode.
int resolve_user(const char* user, Identity& identity);

// Supplementary groups, group, user (only the superuser changes users;
// anyone else only tries the group); then HOME, USER and LOGNAME of the new
// account (unless -e lines set them) and no inherited descriptor above 2
// left for the exec. Returns 0 or an errno, after reporting it.
int switch_identity(const char* user, const char* group, const Identity& identity);

// What switch_identity gives the JVM: for --dry-run.
struct Credentials {
    std::string user;  // the account's name; empty when the caller's id stays
    uid_t uid = 0;
    gid_t gid = 0;
    std::vector<gid_t> groups;  // supplementary groups
};
Credentials credentials_after(const char* user, const Identity& identity);

// A user name or "#<decimal id>" as a user id; 0 when it cannot be resolved.
uid_t uname2id(const char* name);

// A group name or "#<decimal id>" as a group id; 0 when it cannot be resolved.
gid_t gname2id(const char* name);

// 1 and the number in *value when `text` is one decimal long integer with
// nothing but blanks around it; else 0.
int scan_long(const char* text, long* value);

}  // namespace qorvel
