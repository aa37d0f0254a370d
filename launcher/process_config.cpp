#include "launcher/process_config.h"

#include <unistd.h>

#include <cerrno>

#include "launcher/console.h"
#include "launcher/daemon.h"
#include "launcher/dry_run.h"
#include "launcher/environment.h"
#include "launcher/getopt.h"
#include "launcher/identity.h"
#include "launcher/jvm_start.h"
#include "launcher/option_loop.h"
#include "launcher/password_file.h"
#include "launcher/pidfile.h"
#include "launcher/settings.h"

namespace qorvel {
namespace {

// Daemon start when a user was named or -d was given. Returns 0 in the
// daemon child (the parent ends inside child_start) or the failure code.
int start_daemon_if_asked() {
    if (settings.user[0] == '\0' && !(settings.fOption & DAEMON_START)) return 0;
    int suspend = static_cast<int>(settings.fOption & SUSPEND_AFTER_START);
    int rc = child_start(settings.user, settings.group, settings.password, suspend);
    // 67 is no errno: the system's text for it would mislead.
    int system_code = rc == kUnknownUser ? 0 : rc;
    if (rc != 0 && verbose())
        outMessage(system_code, "Error attempting to start as a daemon, errno %d\n", rc);
    return rc;
}

// Hands the command to the JVM start; returns only when it failed.
int launch(int argc, char** argv) {
    trace("running %s mode\n", settings.fOption & DAEMON_START ? "daemon" : "foreground");
    report("processid %d\n", static_cast<int>(getpid()));
    report("completed\n");
    dump_Env();
    int rc = start_jvm(argc - opt::optind, argv + opt::optind);
    if (verbose()) outMessage(rc, "Error starting JVM, error %d.\n", rc);
    return rc;
}

// A directory that cannot be entered is not fatal: the JVM starts where we are.
void enter_work_dir() {
    if (settings.workDir[0] == '\0' || chdir(settings.workDir) == 0) return;
    if (verbose())
        outMessage(errno, "Warning: cannot enter working directory (%s)\n", settings.workDir);
}

bool has_command(int argc) {
    if (opt::optind < argc) return true;
    report("Incomplete argument list. No action taken\n");
    return false;
}

// The daemon start, the pid file and the JVM start. Returns only when the
// JVM was not started.
int start(int argc, char** argv) {
    int rc = start_daemon_if_asked();
    if (rc == 0) rc = commit_pidfile();  // done already by a daemon child
    if (rc != 0) return rc;
    enter_work_dir();
    if (!has_command(argc)) return kNoCommand;
    return launch(argc, argv);
}

// --dry-run: the checks of a launch without its start.
int check_only(int argc, char** argv) {
    enter_work_dir();
    if (!has_command(argc)) return kNoCommand;
    return dry_run(argv, opt::optind);
}

}  // namespace

void usage() {
    outMessage(0, "Use qorvel to setup a working environment prior to invoking the JVM\n\n");
    outMessage(0,
               "Usage: qorvel -r umask -d -s -u [User:Group:Password] -w [Start in Directory] "
               "-c classpath -o [stdout|stderr] -e [envCount] -m [silent|verbose] "
               "-a [property-file::section] -x [property-file::section] -0 [stdin file] "
               "-1 [stdout file] -2 [stderr file] ...\n");
}

int processConfig(int argc, char** argv) {
    remember_environment();
    int rc = scan_options(argc, argv);
    if (rc == kBadOption) {
        trace("Bad option specified.\n");
        usage();
    }
    if (rc != 0) return rc;
    if ((rc = prefix_path()) != 0) return rc;
    if (settings.dryRun) return check_only(argc, argv);
    if ((rc = read_password_file()) != 0) return rc;
    if ((rc = prepare_pidfile()) != 0) return rc;
    rc = start(argc, argv);
    discard_pidfile();  // reached only when the JVM did not start
    return rc;
}

}  // namespace qorvel
