#include "launcher/process_config.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "launcher/console.h"
#include "launcher/control.h"
#include "launcher/daemon.h"
#include "launcher/dry_run.h"
#include "launcher/environment.h"
#include "launcher/help.h"
#include "launcher/identity.h"
#include "launcher/jvm_start.h"
#include "launcher/option_loop.h"
#include "launcher/password_file.h"
#include "launcher/pidfile.h"
#include "launcher/rlimits.h"

namespace qorvel {
namespace {

// The JVM command: the words from the first one that is not an option.
struct Command {
    int count;
    char** words;  // NULL-terminated
};

// A daemon start when a user was named or -d was given.
bool daemon_asked(const LaunchSettings& launch) { return launch.user[0] != '\0' || launch.daemon; }

int daemon_failed(int rc) {
    // 67 is no errno: the system's text for it would mislead.
    int system_code = rc == kUnknownUser ? 0 : rc;
    if (rc != 0 && verbose())
        outMessage(system_code, "Error attempting to start as a daemon, errno %d\n", rc);
    return rc;
}

// Returns 0 in the daemon child (the parent ends inside child_start) or the
// failure code.
int start_daemon_if_asked(LaunchSettings& launch) {
    return daemon_asked(launch) ? daemon_failed(child_start(launch)) : 0;
}

int start_failed(int rc) {
    if (verbose()) outMessage(rc, "Error starting JVM, error %d.\n", rc);
    return rc;
}

// Hands the command to the JVM start; returns only when it failed.
int launch_jvm(LaunchSettings& launch, const Command& command) {
    trace("running %s mode\n", launch.daemon ? "daemon" : "foreground");
    report("processid %d\n", static_cast<int>(getpid()));
    report("completed\n");
    dump_Env();
    return start_failed(start_jvm(launch, command.count, command.words));
}

// Returns 0 or the chdir errno. Starting anywhere else would let the JVM find
// a relative program, class path or redirection file someone else planted.
int enter_work_dir(const char* directory) {
    if (directory[0] == '\0' || chdir(directory) == 0) return 0;
    int code = errno;
    if (verbose()) outMessage(code, "Cannot enter working directory (%s)\n", directory);
    return code;
}

int launch_dir_lost(int code) {
    if (verbose()) outMessage(code, "Cannot return to the launch directory\n");
    return code;
}

// Enters the directory and comes back, so a failure is known before the pid
// file or the daemon child exists; the JVM's process enters it for good.
int try_work_dir(const char* directory) {
    if (directory[0] == '\0') return 0;
    int here = open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (here == -1) return launch_dir_lost(errno);
    int rc = enter_work_dir(directory);
    if (rc == 0 && fchdir(here) != 0) rc = launch_dir_lost(errno);
    close(here);
    return rc;
}

bool has_command(const Command& command) {
    if (command.count > 0) return true;
    report("Incomplete argument list. No action taken\n");
    return false;
}

// The daemon start, the pid file and the JVM start. Returns only when the
// JVM was not started.
int start(LaunchSettings& launch, const Command& command) {
    int rc = start_daemon_if_asked(launch);
    if (rc == 0) rc = commit_pidfile();  // done already by a daemon child
    if (rc == 0) rc = enter_work_dir(launch.workDir);
    if (rc != 0) return rc;
    if (!has_command(command)) return kNoCommand;
    return launch_jvm(launch, command);
}

// --dry-run: the checks of a launch in the same order, without anything that
// would change something: no file made, no fork, no identity switch.
int check_only(LaunchSettings& launch, const Command& command) {
    Identity identity;
    int rc = try_work_dir(launch.workDir);
    if (rc == 0) rc = read_password_file(launch);
    if (rc == 0) rc = apply_rlimits(launch);  // to this process alone, which ends here
    if (rc == 0) rc = check_pidfile(launch.pidfile);
    if (rc == 0 && daemon_asked(launch)) rc = daemon_failed(check_child_start(launch, identity));
    if (rc == 0) rc = enter_work_dir(launch.workDir);
    if (rc != 0) return rc;
    if (!has_command(command)) return kNoCommand;
    rc = dry_run(launch, command.words, identity);
    return rc == 0 ? 0 : start_failed(rc);
}

// The steps after the option scan.
int run(LaunchSettings& launch, const Command& command) {
    if (int rc = prefix_path()) return rc;
    if (launch.dryRun) return check_only(launch, command);
    if (int rc = try_work_dir(launch.workDir)) return rc;
    if (int rc = read_password_file(launch)) return rc;
    // Before the fork, so a refused limit stops the launch before anything
    // starts, and before the identity switch, so root may raise a hard one.
    if (int rc = apply_rlimits(launch)) return rc;
    if (int rc = prepare_pidfile(launch.pidfile)) return rc;
    int rc = start(launch, command);
    discard_pidfile();  // reached only when the JVM did not start
    tell_waiting_parent(rc);
    return rc;
}

}  // namespace

int processConfig(int argc, char** argv, const OptionParser& parser, LaunchSettings& launch) {
    remember_environment();
    int rc = scan_options(parser, argv, launch);
    if (rc == 0) rc = check_control_options(parser, argc, argv, launch);
    if (rc == kBadOption) {
        trace("Bad option specified.\n");
        usage();
    }
    if (rc != 0) return rc;
    if (launch.control != Control::kLaunch) return run_control(launch);
    return run(launch, {argc - parser.command(), argv + parser.command()});
}

}  // namespace qorvel
