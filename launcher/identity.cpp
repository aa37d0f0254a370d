#include "launcher/identity.h"

#include <grp.h>
#include <linux/close_range.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "launcher/console.h"
#include "launcher/env_lines.h"

namespace qorvel {
namespace {

// Ids run from 1 up to one below (id_t)-1, which setuid and setgid read as "no change".
constexpr long kMaxId = 0xFFFFFFFEL;

// Parses "#<id>"; nothing (after reporting) when the number is not a usable id.
std::optional<unsigned long> numeric_id(const char* text, const char* kind) {
    long value = 0;
    if (!scan_long(text + 1, &value) || value < 0 || value > kMaxId) {
        report("bad %s id %s\n", kind, text);
        return std::nullopt;
    }
    return static_cast<unsigned long>(value);
}

std::optional<uid_t> lookup_user(const char* name) {
    if (name[0] == '#') return numeric_id(name, "user");
    errno = 0;
    const passwd* entry = getpwnam(name);
    if (entry == nullptr) {
        if (verbose()) outMessage(errno, "bad user name %s\n", name);
        return std::nullopt;
    }
    return entry->pw_uid;
}

// What the switch needs of the target account, copied out of getpw*'s buffer.
struct Account {
    std::string name, home;
    gid_t gid = 0;
};

// The name as given decides, since two names may share one id; a number
// takes the first account with that id.
bool find_account(const char* user, uid_t uid, Account& account) {
    errno = 0;
    const passwd* entry = user[0] == '#' ? getpwuid(uid) : getpwnam(user);
    if (entry == nullptr) return false;
    account = {entry->pw_name, entry->pw_dir, entry->pw_gid};
    return true;
}

// The user switch must be one way: afterwards the superuser cannot be regained.
int switch_user(uid_t uid) {
    if (setuid(uid) != 0) return report_failure(errno, "can't setuid, errno = %d\n");
    if (setuid(0) == 0 || getuid() != uid || geteuid() != uid) {
        return report_failure(EPERM, "can't setuid, errno = %d\n");
    }
    return 0;
}

// A JVM run as another account must not write into the superuser's home.
int take_account_environment(const Account& account) {
    const std::pair<const char*, const std::string&> variables[] = {
        {"HOME", account.home}, {"USER", account.name}, {"LOGNAME", account.name}};
    for (const auto& [name, value] : variables) {
        if (set_by_env_line(name)) continue;
        if (setenv(name, value.c_str(), 1) != 0) {
            return report_failure(errno, "can't set the account's environment, errno = %d\n");
        }
    }
    return 0;
}

// Whatever the caller left open (a secret file, a socket) must not reach
// another user. Marked rather than closed, so our own log keeps working
// until the exec.
int seal_inherited_descriptors() {
    if (close_range(3, ~0U, CLOSE_RANGE_CLOEXEC) != 0) {
        return report_failure(errno, "can't close inherited descriptors, errno = %d\n");
    }
    return 0;
}

// Supplementary groups, group, user, as each step needs the privilege the
// next one gives up.
int become_account(const char* user, const char* group, const Identity& identity) {
    Account account;
    if (!find_account(user, identity.uid, account)) {
        return report_failure(errno != 0 ? errno : ENOENT, "can't setgid, errno =%d\n");
    }
    // Without a named group the account's own is taken, as su does: none of
    // the superuser's groups may survive the switch.
    gid_t gid = identity.gid != 0 ? identity.gid : account.gid;
    if (initgroups(account.name.c_str(), gid) != 0)
        return report_failure(errno, "can't setgid, errno =%d\n");
    if (group[0] != '\0') trace("Exec in group (setgid) (%s)\n", group);
    if (setgid(gid) != 0) return report_failure(errno, "can't setgid, errno =%d\n");
    trace("Exec as user (setuid) (%s)\n", user);
    if (int rc = switch_user(identity.uid)) return rc;
    if (int rc = take_account_environment(account)) return rc;
    return seal_inherited_descriptors();
}

}  // namespace

int resolve_user(const char* user, Identity& identity) {
    if (user[0] == '\0') return 0;
    std::optional<uid_t> uid = lookup_user(user);
    // Shown in every mode: a typo must never start the JVM as the caller.
    if (!uid) {
        outMessage(0, "Unknown user %s: nothing started\n", user);
        return kUnknownUser;
    }
    if (*uid != getuid() && getuid() != 0) {
        outMessage(0, "Only the superuser can start the JVM as another user (%s)\n", user);
        return EPERM;
    }
    identity.uid = *uid;
    identity.change_user = *uid != 0 && getuid() == 0;
    return 0;
}

int switch_identity(const char* user, const char* group, const Identity& identity) {
    if (identity.change_user) return become_account(user, group, identity);
    // Without a user switch only the group changes, where the system permits it.
    if (identity.gid == 0) return 0;
    trace("Exec in group (setgid) (%s)\n", group);
    if (setgid(identity.gid) != 0) return report_failure(errno, "can't setgid, errno =%d\n");
    return 0;
}

Credentials credentials_after(const char* user, const Identity& identity) {
    Credentials result{"", getuid(), identity.gid != 0 ? identity.gid : getgid(), {}};
    Account account;
    int count = 0;
    if (identity.change_user && find_account(user, identity.uid, account)) {
        result.user = account.name;
        result.uid = identity.uid;
        if (identity.gid == 0) result.gid = account.gid;
        getgrouplist(account.name.c_str(), result.gid, nullptr, &count);
        result.groups.resize(static_cast<std::size_t>(count));
        getgrouplist(account.name.c_str(), result.gid, result.groups.data(), &count);
    } else {
        // A group switch alone leaves the supplementary groups as they are.
        count = getgroups(0, nullptr);
        result.groups.resize(static_cast<std::size_t>(count > 0 ? count : 0));
        // The list may have shrunk between the two calls: keep what was read.
        if (count > 0) count = getgroups(count, result.groups.data());
        result.groups.resize(static_cast<std::size_t>(count > 0 ? count : 0));
    }
    return result;
}

int scan_long(const char* text, long* value) {
    long number = 0;
    char rest[2];
    if (std::sscanf(text, "%ld%1s", &number, rest) != 1) return 0;
    *value = number;
    return 1;
}

uid_t uname2id(const char* name) { return lookup_user(name).value_or(0); }

gid_t gname2id(const char* name) {
    if (name[0] == '#') return static_cast<gid_t>(numeric_id(name, "group").value_or(0));
    errno = 0;
    const group* entry = getgrnam(name);
    if (entry == nullptr) {
        if (verbose()) outMessage(errno, "bad group name %s\n", name);
        return 0;
    }
    return entry->gr_gid;
}

}  // namespace qorvel
