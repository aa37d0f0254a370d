#include <fcntl.h>
#include <signal.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "launcher/console.h"
#include "launcher/debug_args.h"
#include "launcher/help.h"
#include "launcher/password.h"
#include "launcher/process_config.h"
#include "launcher/settings.h"
#include "qorvel/log.h"
#include "util/bounded_text.h"

namespace {

// Runs at every normal exit, the daemon parent's included; not after exec.
void cleanup() {
    for (int fd :
         {qorvel::settings.stdin_fd, qorvel::settings.stdout_fd, qorvel::settings.stderr_fd}) {
        if (fd != -1) close(fd);
    }
}

void record_system_name() {
    struct utsname names;
    qorvel::bounded_copy(qorvel::settings.osname, uname(&names) == 0 ? names.sysname : "");
}

// A descriptor the caller left closed would go to the next file we open, and
// console text meant for it (or the JVM's output) would land in that file.
void fill_standard_descriptors() {
    for (int fd = 0; fd <= 2; ++fd) {
        if (fcntl(fd, F_GETFD) != -1 || errno != EBADF) continue;
        int opened = open("/dev/null", O_RDWR);
        if (opened != -1 && opened != fd) {
            dup2(opened, fd);
            close(opened);
        }
    }
}

// A log that could not be used safely is left out; the launch goes on.
void open_debug_log(int argc, char** argv) {
    using qorvel::settings;
    const char* name = qorvel::getLogFileName(argc, argv);
    settings.LoggerLog = ExtendLogfile(1, name);
    if (!settings.LoggerLog) {
        qorvel::report("Warning: debug log (%s) not written: %s\n", name, std::strerror(errno));
    }
    LogMsg(settings.LoggerLog, 1, 1, "MAIN -- qorvel process starter on %s\n\n", settings.osname);
    qorvel::trace("qorvel startup argument list:\n");
    qorvel::dump_argv(argv);
}

// Installed set-user-ID or set-group-ID, any local user could start a program
// of their choice with our privileges: refuse before reading anything.
bool privileged_install() {
    if (getuid() == geteuid() && getgid() == getegid()) return false;
    std::fputs("qorvel: refusing to run set-user-ID or set-group-ID\n", stderr);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    fill_standard_descriptors();
    qorvel::keep_caller_console();
    if (privileged_install()) return 1;
    qorvel::guard_secrets();
    if (argc <= 1) {
        qorvel::usage();
        return -1;
    }
    if (qorvel::answer_help(argv[1])) return 0;
    qorvel::hide_passwords(argc, argv);
    // A console nobody reads must not end the launch; the JVM gets the
    // default disposition back before it starts.
    signal(SIGPIPE, SIG_IGN);
    record_system_name();
    std::atexit(cleanup);
    qorvel::setDebug(argc, argv);
    if (qorvel::settings.fDebug) open_debug_log(argc, argv);
    int rc = qorvel::processConfig(argc, argv);
    if (qorvel::settings.fDebug) CloseLogfile(qorvel::settings.LoggerLog);
    return rc;
}
