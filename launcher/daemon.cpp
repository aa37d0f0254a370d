#include "launcher/daemon.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "launcher/console.h"
#include "launcher/identity.h"
#include "launcher/notify.h"
#include "launcher/password.h"
#include "launcher/pidfile.h"
#include "qorvel/log.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

// The daemon child's end of the start pipe (close-on-exec, so the exec closes
// it); -1 elsewhere. Written by fork_daemon, used by tell_waiting_parent.
int start_pipe = -1;

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

// Installed while the signals are blocked; no SA_RESTART, so a read waiting
// for the start is interrupted and tried again.
void forward_to(pid_t child) {
    waited_child = child;
    struct sigaction action {};
    action.sa_handler = forward_signal;
    sigemptyset(&action.sa_mask);
    for (int signal_number : kForwarded) sigaction(signal_number, &action, nullptr);
}

// A child killed by signal N ends the parent with 128 + N, as a shell
// reports it: an out-of-memory kill must not read as success.
int exit_code(int status) {
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// Every process orphaned below the waiting parent comes to it: as PID 1 (a
// container's entrypoint) the kernel sees to that; elsewhere it asks to be
// their child subreaper. Left unreaped they would stay zombies for as long
// as the JVM runs.
void adopt_orphans() {
    if (getpid() != 1 && prctl(PR_SET_CHILD_SUBREAPER, 1) != 0) {
        trace("Cannot become a child subreaper, errno = %d\n", errno);
    }
}

// The orphans that have ended since, once the child is gone.
void reap_remaining() {
    pid_t ended;
    while ((ended = waitpid(-1, nullptr, WNOHANG)) > 0) trace("Reaped orphan %d\n", ended);
}

// Reaps every process that ends until the child does. A caller that ignores
// SIGCHLD (common in daemons written in Perl) would make the kernel reap the
// child unseen and every wait fail with ECHILD.
int wait_for(pid_t child) {
    int status = 0;
    for (;;) {
        pid_t ended = waitpid(-1, &status, 0);
        if (ended == child) {
            waited_child = 0;  // its id is free for another process now
            break;
        }
        if (ended > 0) {
            trace("Reaped orphan %d\n", ended);
        } else if (errno != EINTR) {
            return report_failure(errno, "can't wait for the child, errno = %d\n");
        }
    }
    reap_remaining();
    int code = exit_code(status);
    trace("Process has exited, rc = %d, exit status = %d\n", status, code);
    return code;
}

// End of file once the exec has replaced the child (0), or the code its
// start failed with.
int start_outcome(int pipe_end) {
    int code = 0;
    ssize_t got;
    while ((got = read(pipe_end, &code, sizeof code)) == -1 && errno == EINTR) {
    }
    close(pipe_end);
    return got == sizeof code ? code : 0;
}

// Returns only once the JVM runs or its start failed, so a script or a
// service manager learns of a failed start and finds the pid file in place.
[[noreturn]] void wait_and_exit(pid_t child, int pipe_end, bool suspend) {
    int code = start_outcome(pipe_end);
    if (suspend && code == 0) notify_ready(child);
    if (suspend) {
        trace("Waiting for process to exit...\n");
        code = wait_for(child);
        remove_pidfile(child);
        if (console.fDebug) CloseLogfile(console.LoggerLog);
    }
    std::exit(code);
}

int become_daemon(const LaunchSettings& launch, const Identity& identity) {
    if (int rc = switch_identity(launch.user, launch.group, identity)) return rc;
    if (setsid() == -1) {
        int code = errno;
        if (verbose()) outMessage(code, "can't setsid, errno\n");
        return code;
    }
    if (launch.umask_value >= 0) umask(static_cast<mode_t>(launch.umask_value));
    return 0;
}

// The password is needed when one was given, or to become another user;
// the superuser may waive it with --no-password-check. The password is
// wiped once checked either way.
bool password_refused(const char* user, char* password, uid_t uid, bool waived) {
    bool given = password[0] != '\0';
    bool check = given || (uid != 0 && uid != getuid() && !waived);
    bool refused = check && validateUserPassword(user, password) == 0;
    explicit_bzero(password, bounded_length(password, kIdentityFieldSize));
    release_secrets();
    if (refused) trace("validateUserPassword, %s , xxxxxxx , FAILED \n", user);
    return refused;
}

// A name or number the lookup resolved to group 0, not an unknown one.
bool group_is_root(const char* group) {
    long id = -1;
    if (group[0] == '#') return scan_long(group + 1, &id) && id == 0;
    const struct group* entry = getgrnam(group);
    return entry != nullptr && entry->gr_gid == 0;
}

// The parent waits or leaves; the child goes on to become the daemon.
int fork_daemon(const LaunchSettings& launch, const Identity& identity) {
    trace("FCN: child_start() - Start process as a background daemon\n");
    std::fflush(nullptr);  // nothing buffered may be written twice
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return report_failure(errno, "can't create the start pipe, errno = %d\n");
    signal(SIGCHLD, SIG_DFL);
    if (launch.suspend) adopt_orphans();  // the child does not inherit it
    sigset_t previous = block_forwarded();
    pid_t pid = fork();
    if (pid == -1) {
        int code = errno;
        sigprocmask(SIG_SETMASK, &previous, nullptr);
        close(ends[0]);
        close(ends[1]);
        return report_failure(code, "can't fork first child, errno = %d\n");
    }
    if (pid != 0) {
        close(ends[1]);
        leave_pidfile_to_child();
        if (launch.suspend) forward_to(pid);
        sigprocmask(SIG_SETMASK, &previous, nullptr);
        wait_and_exit(pid, ends[0], launch.suspend);
    }
    close(ends[0]);
    start_pipe = ends[1];
    sigprocmask(SIG_SETMASK, &previous, nullptr);
    // Before the identity switch, which may take away the right to publish it.
    if (int rc = commit_pidfile()) return rc;
    return become_daemon(launch, identity);
}

}  // namespace

void tell_waiting_parent(int code) {
    if (start_pipe == -1) return;
    if (write(start_pipe, &code, sizeof code) < 0) trace("The waiting parent is gone\n");
    close(start_pipe);
    start_pipe = -1;
}

int check_child_start(LaunchSettings& launch, Identity& identity) {
    const char* user = launch.user;
    const char* group = launch.group;
    if (int rc = resolve_user(user, identity)) return rc;
    identity.gid = group[0] != '\0' ? gname2id(group) : 0;
    if (password_refused(user, launch.password, identity.uid, launch.noPasswordCheck)) {
        return kPasswordRefused;
    }
    if (group[0] != '\0' && identity.gid == 0) {
        trace("Invalid Group Name: %s\n", group);
        if (group_is_root(group)) report("Group %s is the superuser's: never switched to\n", group);
        return kBadGroup;
    }
    return 0;
}

int child_start(LaunchSettings& launch) {
    Identity identity;
    if (int rc = check_child_start(launch, identity)) return rc;
    return fork_daemon(launch, identity);
}

}  // namespace qorvel
