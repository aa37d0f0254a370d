#include "launcher/process_config.h"

#include <fcntl.h>
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

// A daemon start when a user was named or -d was given.
bool daemon_asked() { return settings.user[0] != '\0' || (settings.fOption & DAEMON_START); }

int daemon_failed(int rc) {
    // 67 is no errno: the system's text for it would mislead.
    int system_code = rc == kUnknownUser ? 0 : rc;
    if (rc != 0 && verbose())
        outMessage(system_code, "Error attempting to start as a daemon, errno %d\n", rc);
    return rc;
}

// Returns 0 in the daemon child (the parent ends inside child_start) or the
// failure code.
int start_daemon_if_asked() {
    if (!daemon_asked()) return 0;
    int suspend = static_cast<int>(settings.fOption & SUSPEND_AFTER_START);
    return daemon_failed(child_start(settings.user, settings.group, settings.password, suspend));
}

int start_failed(int rc) {
    if (verbose()) outMessage(rc, "Error starting JVM, error %d.\n", rc);
    return rc;
}

// Hands the command to the JVM start; returns only when it failed.
int launch(int argc, char** argv) {
    trace("running %s mode\n", settings.fOption & DAEMON_START ? "daemon" : "foreground");
    report("processid %d\n", static_cast<int>(getpid()));
    report("completed\n");
    dump_Env();
    return start_failed(start_jvm(argc - opt::optind, argv + opt::optind));
}

// Returns 0 or the chdir errno. Starting anywhere else would let the JVM find
// a relative program, class path or redirection file someone else planted.
int enter_work_dir() {
    if (settings.workDir[0] == '\0' || chdir(settings.workDir) == 0) return 0;
    int code = errno;
    if (verbose()) outMessage(code, "Cannot enter working directory (%s)\n", settings.workDir);
    return code;
}

int launch_dir_lost(int code) {
    if (verbose()) outMessage(code, "Cannot return to the launch directory\n");
    return code;
}

// Enters the directory and comes back, so a failure is known before the pid
// file or the daemon child exists; the pid file is still named from here, and
// the JVM's process enters the directory for good.
int try_work_dir() {
    if (settings.workDir[0] == '\0') return 0;
    int here = open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (here == -1) return launch_dir_lost(errno);
    int rc = enter_work_dir();
    if (rc == 0 && fchdir(here) != 0) rc = launch_dir_lost(errno);
    close(here);
    return rc;
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
    if (rc == 0) rc = enter_work_dir();
    if (rc != 0) return rc;
    if (!has_command(argc)) return kNoCommand;
    return launch(argc, argv);
}

// --dry-run: the checks of a launch in the same order, without anything that
// would change something: no file made, no fork, no identity switch.
int check_only(int argc, char** argv) {
    Identity identity;
    int rc = try_work_dir();
    if (rc == 0) rc = read_password_file();
    if (rc == 0) rc = check_pidfile();
    if (rc == 0 && daemon_asked()) {
        rc = daemon_failed(
            check_child_start(settings.user, settings.group, settings.password, identity));
    }
    if (rc == 0) rc = enter_work_dir();
    if (rc != 0) return rc;
    if (!has_command(argc)) return kNoCommand;
    rc = dry_run(argv, opt::optind, identity);
    return rc == 0 ? 0 : start_failed(rc);
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
    if ((rc = try_work_dir()) != 0) return rc;
    if ((rc = read_password_file()) != 0) return rc;
    if ((rc = prepare_pidfile()) != 0) return rc;
    rc = start(argc, argv);
    discard_pidfile();  // reached only when the JVM did not start
    tell_waiting_parent(rc);
    return rc;
}

}  // namespace qorvel
