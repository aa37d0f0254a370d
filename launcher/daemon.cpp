#include "launcher/daemon.h"

#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "launcher/console.h"
#include "launcher/password.h"
#include "launcher/pidfile.h"
#include "launcher/settings.h"
#include "qorvel/log.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

// Ids run from 1 up to one below (id_t)-1, which setuid and setgid read as "no change".
constexpr long kMaxId = 0xFFFFFFFEL;

// Parses "#<id>"; 0 (after reporting) when the number is not a usable id.
unsigned long numeric_id(const char* text, const char* kind) {
    long value = 0;
    if (!scan_long(text + 1, &value) || value < 0 || value > kMaxId) {
        report("bad %s id %s\n", kind, text);
        return 0;
    }
    return static_cast<unsigned long>(value);
}

int fail(int code, const char* format) {
    if (verbose()) outMessage(code, format, code);
    return code;
}

// What a supervisor may send the waiting parent; each is passed on to the child.
constexpr int kForwarded[] = {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGUSR1, SIGUSR2};
volatile sig_atomic_t waited_child = 0;

void forward_signal(int signal_number) {
    if (waited_child > 0) kill(static_cast<pid_t>(waited_child), signal_number);
}

// Blocks the forwarded signals, so none arrives between the fork and the
// parent's handlers; returns the mask to restore.
sigset_t block_forwarded() {
    sigset_t block, previous;
    sigemptyset(&block);
    for (int signal_number : kForwarded) sigaddset(&block, signal_number);
    sigprocmask(SIG_BLOCK, &block, &previous);
    return previous;
}

void forward_to(pid_t child, const sigset_t& previous) {
    waited_child = child;
    struct sigaction action {};
    action.sa_handler = forward_signal;
    sigemptyset(&action.sa_mask);
    for (int signal_number : kForwarded) sigaction(signal_number, &action, nullptr);
    sigprocmask(SIG_SETMASK, &previous, nullptr);
}

// A child killed by signal N ends the parent with 128 + N, as a shell
// reports it: an out-of-memory kill must not read as success.
int exit_code(int status) {
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

[[noreturn]] void wait_and_exit(pid_t child, int suspend) {
    int code = 0;
    if (suspend) {
        trace("Waiting for process to exit...\n");
        int status = 0;
        while (waitpid(child, &status, 0) == -1 && errno == EINTR) {
        }
        code = exit_code(status);
        trace("Process has exited, rc = %d, exit status = %d\n", status, code);
        remove_pidfile();
        if (settings.fDebug) CloseLogfile(settings.LoggerLog);
    }
    std::exit(code);
}

// Supplementary groups of the target user, so none of the superuser's survive.
// The name as given decides, since two names may share one id; it is a real
// account name here, because switching users always passes the password check.
int set_supplementary_groups(const char* user, gid_t gid) {
    if (initgroups(user, gid) != 0) return fail(errno, "can't setgid, errno =%d\n");
    return 0;
}

// The user switch must be one way: afterwards the superuser cannot be regained.
int switch_user(uid_t uid) {
    if (setuid(uid) != 0) return fail(errno, "can't setuid, errno = %d\n");
    if (setuid(0) == 0 || getuid() != uid || geteuid() != uid) {
        return fail(EPERM, "can't setuid, errno = %d\n");
    }
    return 0;
}

// The primary group of the account `uid`; false when it has no entry.
bool primary_group(uid_t uid, gid_t& gid) {
    errno = 0;
    const passwd* entry = getpwuid(uid);
    if (entry == nullptr) return false;
    gid = entry->pw_gid;
    return true;
}

// Supplementary groups, then group, then user: each step needs the privilege
// that the next one gives up. Only the superuser changes users; anyone else
// keeps their own identity and only tries the group.
int switch_identity(const char* user, const char* group, uid_t uid, gid_t gid) {
    bool change_user = uid != 0 && getuid() == 0;
    if (change_user) {
        // Without a named group the user's own primary group is taken, as su
        // does: none of the superuser's groups may survive the switch.
        if (gid == 0 && !primary_group(uid, gid)) {
            return fail(errno != 0 ? errno : ENOENT, "can't setgid, errno =%d\n");
        }
        if (int rc = set_supplementary_groups(user, gid)) return rc;
    }
    if (gid != 0) {
        trace("Exec in group (setgid) (%s)\n", group);
        if (setgid(gid) != 0) return fail(errno, "can't setgid, errno =%d\n");
    }
    if (uid != 0) trace("Exec as user (setuid) (%s)\n", user);
    return change_user ? switch_user(uid) : 0;
}

int become_daemon(const char* user, const char* group, uid_t uid, gid_t gid) {
    if (int rc = switch_identity(user, group, uid, gid)) return rc;
    if (setsid() == -1) {
        int code = errno;
        if (verbose()) outMessage(code, "can't setsid, errno\n");
        return code;
    }
    if (settings.umask_value >= 0) umask(static_cast<mode_t>(settings.umask_value));
    return 0;
}

}  // namespace

int scan_long(const char* text, long* value) {
    long number = 0;
    char rest[2];
    if (std::sscanf(text, "%ld%1s", &number, rest) != 1) return 0;
    *value = number;
    return 1;
}

uid_t uname2id(const char* name) {
    if (name[0] == '#') return static_cast<uid_t>(numeric_id(name, "user"));
    errno = 0;
    const passwd* entry = getpwnam(name);
    if (entry == nullptr) {
        if (verbose()) outMessage(errno, "bad user name %s\n", name);
        return 0;
    }
    return entry->pw_uid;
}

gid_t gname2id(const char* name) {
    if (name[0] == '#') return static_cast<gid_t>(numeric_id(name, "group"));
    errno = 0;
    const group* entry = getgrnam(name);
    if (entry == nullptr) {
        if (verbose()) outMessage(errno, "bad group name %s\n", name);
        return 0;
    }
    return entry->gr_gid;
}

int child_start(const char* user, const char* group, char* password, int suspend) {
    uid_t uid = user[0] != '\0' ? uname2id(user) : 0;
    gid_t gid = group[0] != '\0' ? gname2id(group) : 0;

    bool check = password[0] != '\0' || (uid != 0 && uid != getuid());
    bool refused = check && validateUserPassword(user, password) == 0;
    explicit_bzero(password, bounded_length(password, kIdentityFieldSize));
    if (refused) {
        trace("validateUserPassword, %s , xxxxxxx , FAILED \n", user);
        return kPasswordRefused;
    }
    if (group[0] != '\0' && gid == 0) {
        trace("Invalid Group Name: %s\n", group);
        return kBadGroup;
    }
    trace("FCN: child_start() - Start process as a background daemon\n");
    std::fflush(nullptr);  // nothing buffered may be written twice
    sigset_t previous = block_forwarded();
    pid_t pid = fork();
    if (pid == -1) {
        int code = errno;
        sigprocmask(SIG_SETMASK, &previous, nullptr);
        return fail(code, "can't fork first child, errno = %d\n");
    }
    if (pid != 0) {
        if (suspend) forward_to(pid, previous);
        wait_and_exit(pid, suspend);
    }
    sigprocmask(SIG_SETMASK, &previous, nullptr);
    // Before the identity switch, which may take away the right to publish it.
    if (int rc = commit_pidfile()) return rc;
    return become_daemon(user, group, uid, gid);
}

}  // namespace qorvel
