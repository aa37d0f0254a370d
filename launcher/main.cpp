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
#include "qorvel/log.h"
#include "util/bounded_text.h"

namespace {

void record_system_name(qorvel::LaunchSettings& launch) {
    struct utsname names;
    qorvel::bounded_copy(launch.osname, uname(&names) == 0 ? names.sysname : "");
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
void open_debug_log(const qorvel::OptionParser& parser, char** argv, const char* osname) {
    using qorvel::console;
    const char* name = qorvel::getLogFileName(parser, argv);
    console.LoggerLog = ExtendLogfile(1, name);
    if (!console.LoggerLog) {
        qorvel::report("Warning: debug log (%s) not written: %s\n", name, std::strerror(errno));
    }
    LogMsg(console.LoggerLog, 1, 1, "MAIN -- qorvel process starter on %s\n\n", osname);
    qorvel::trace("qorvel startup argument list:\n");
    qorvel::dump_argv(parser, argv);
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
    const qorvel::OptionParser parser(argc, argv);
    qorvel::hide_passwords(parser, argv);
    // A console nobody reads must not end the launch; the JVM gets the
    // default disposition back before it starts.
    signal(SIGPIPE, SIG_IGN);
    qorvel::LaunchSettings launch;
    record_system_name(launch);
    qorvel::setDebug(argc, argv);
    if (qorvel::console.fDebug) open_debug_log(parser, argv, launch.osname);
    int rc = qorvel::processConfig(argc, argv, parser, launch);
    if (qorvel::console.fDebug) CloseLogfile(qorvel::console.LoggerLog);
    return rc;
}
