#include "launcher/process_config.h"

#include <unistd.h>

#include "launcher/console.h"
#include "launcher/daemon.h"
#include "launcher/environment.h"
#include "launcher/getopt.h"
#include "launcher/jvm_start.h"
#include "launcher/option_loop.h"
#include "launcher/settings.h"

namespace qorvel {
namespace {

// Daemon start when a user was named or -d was given. Returns 0 in the
// daemon child (the parent ends inside child_start) or the failure code.
int start_daemon_if_asked() {
    if (settings.user[0] == '\0' && !(settings.fOption & DAEMON_START)) return 0;
    int suspend = static_cast<int>(settings.fOption & SUSPEND_AFTER_START);
    int rc = child_start(settings.user, settings.group, settings.password, suspend);
    if (rc != 0 && verbose())
        outMessage(rc, "Error attempting to start as a daemon, errno %d\n", rc);
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
    int rc = scan_options(argc, argv);
    if (rc == kBadOption) {
        trace("Bad option specified.\n");
        usage();
    }
    if (rc != 0) return rc;
    if ((rc = prefix_path()) != 0) return rc;
    if ((rc = start_daemon_if_asked()) != 0) return rc;
    if (settings.workDir[0] != '\0') {
        // A directory that cannot be entered is not fatal: the JVM starts where we are.
        [[maybe_unused]] int ignored = chdir(settings.workDir);
    }
    if (opt::optind >= argc) {
        report("Incomplete argument list. No action taken\n");
        return kNoCommand;
    }
    return launch(argc, argv);
}

}  // namespace qorvel
