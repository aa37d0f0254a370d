#include "launcher/option_handlers.h"

#include <strings.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "config/expand_envvars.h"
#include "launcher/console.h"
#include "launcher/control.h"
#include "launcher/env_lines.h"
#include "launcher/options.h"
#include "launcher/pidfile.h"
#include "launcher/prop_file.h"
#include "launcher/rlimits.h"
#include "launcher/user_spec.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr std::size_t kClasspathSize = 4096;
constexpr std::size_t kStagingSize = 1024;
constexpr std::size_t kRedirectSlack = 1024;  // room an expansion may add to a file name

// putenv keeps a pointer to it, so it lives as long as the process; -c and -x
// write it, the last one wins.
char env_classpath[kClasspathSize];

// Expands a redirection file name into a fresh heap buffer with room for the
// name plus kRedirectSlack. Returns 0, kNoMemory or kRedirectFailed.
int expand_file_name(const char* name, HeapText& target) {
    std::size_t size = std::strlen(name) + kRedirectSlack + 1;
    HeapText buffer(new (std::nothrow) char[size]);
    if (!buffer) return kNoMemory;
    char expanded[QORVEL_EXPAND_MAX];
    if (expand_references(expanded, name) != Expansion::kWhole ||
        !bounded_copy(buffer.get(), size, expanded)) {
        return kRedirectFailed;
    }
    target = std::move(buffer);
    return 0;
}

// -1 and -2: "file" keeps the stream's open flags, "file::anything" selects append.
int set_output_file(const char* arg, int stream, HeapText& file, int& oflags) {
    const char* name = stream == 1 ? "stdout" : "stderr";
    std::string_view file_part = arg;
    if (std::size_t sep = file_part.find("::"); sep != std::string_view::npos) {
        file_part = file_part.substr(0, sep);
        oflags = OFLAGS_APPEND;
    }
    // The file part alone is expanded, so it needs a terminated copy of its own;
    // a cut name would open some other file.
    char staged[kStagingSize];
    int rc = bounded_copy(staged, file_part) ? expand_file_name(staged, file) : kRedirectFailed;
    if (rc == kNoMemory) report("Unable to allocate memory for %s file name\n", name);
    if (rc == kRedirectFailed) {
        report("Unabled to set -%d <file_%s> option, error in argument: (%s)\n", stream, name, arg);
    }
    if (rc == 0) {
        trace("Enabled -%d option, file_%s = (%s) oflags_%s = (%s)\n", stream, name, file.get(),
              name, oflags == OFLAGS_APPEND ? "append" : "create");
    }
    return rc;
}

}  // namespace

int set_work_dir(LaunchSettings& launch, char* arg) {
    char expanded[QORVEL_EXPAND_MAX];
    // A cut directory would be some other directory: refuse instead.
    if (!expand_envvars(expanded, arg) || !bounded_copy(launch.workDir, expanded)) {
        report("Unabled to set -w <workDir> option, error in argument: (%s)\n", arg);
        return kWorkDirFailed;
    }
    trace("Enabled -w option, cwd = (%s)\n", launch.workDir);
    return 0;
}

int set_classpath(LaunchSettings&, char* arg) {
    char expanded[QORVEL_EXPAND_MAX];
    Expansion result = expand_references(expanded, arg);
    if (result == Expansion::kFailed) {
        report("Unabled to set -c <classpath> option, error in argument: (%s)\n", arg);
        return kClasspathFailed;
    }
    if (result == Expansion::kCut) {  // a cut class path would load some other set of classes
        report("Unable to set -c <classpath> option, longer than %d characters: (%s)\n",
               QORVEL_EXPAND_MAX - 1, arg);
        return EINVAL;
    }
    bounded_format(env_classpath, sizeof env_classpath, "%s=%s", "CLASSPATH", expanded);
    putenv(env_classpath);
    trace("Enabled -c option, set (%s)\n", env_classpath);
    return 0;
}

int set_props(LaunchSettings& launch, char* arg) {
    PropFileResult result = processPropFile(arg, launch.osname);
    if (result.code == 0) launch.jvm = std::move(result.values);
    return result.code;
}

// -x: like -a, but the class path goes into the environment instead of the
// JVM's arguments.
int set_classpath_from_props(LaunchSettings& launch, char* arg) {
    PropFileResult result = processPropFile(arg, launch.osname);
    if (result.code != 0) {
        report("Unable to set -x option, error in argument: (%s)\n", arg);
        return result.code == EINVAL ? result.code : kClasspathFailed;
    }
    HeapText classpath = std::move(result.values.classpath);
    launch.jvm = std::move(result.values);
    if (!classpath) {
        trace("-x option but no CLASSPATH found");
        return 0;
    }
    // A cut class path would load some other set of classes: refuse it.
    if (!bounded_format(env_classpath, sizeof env_classpath, "%s=%s", "CLASSPATH",
                        classpath.get())) {
        report("Unable to set -x option, error in argument: (%s)\n", arg);
        return kClasspathFailed;
    }
    putenv(env_classpath);
    trace("Enabled -x option, set (%s)\n", env_classpath);
    return 0;
}

int read_env(LaunchSettings&, char* arg) {
    read_env_lines(arg, stdin);
    return 0;
}

int set_console(LaunchSettings&, char* arg) {
    bounded_copy(console.outputDesc, arg);
    trace("Enabled -o option, outputDesc = (%s)\n", console.outputDesc);
    return 0;
}

int set_console_mode(LaunchSettings&, char* arg) {
    if (strcasecmp(arg, "silent") == 0) {
        console.verbose = false;
        trace("Enabled -m option, SILENT_MODE\n");
    } else if (strcasecmp(arg, "verbose") == 0) {
        console.verbose = true;
        trace("Enabled -m option, VERBOSE_MODE\n");
    }
    return 0;
}

int set_stdin_file(LaunchSettings& launch, char* arg) {
    int rc = expand_file_name(arg, launch.file_stdin);
    if (rc == kRedirectFailed) {
        report("Unabled to set -0 <file_stdin> option, error in argument: (%s)\n", arg);
    }
    if (rc == 0) trace("Enabled -0 option, file_stdin = (%s)\n", launch.file_stdin.get());
    return rc;
}

int set_stdout_file(LaunchSettings& launch, char* arg) {
    return set_output_file(arg, 1, launch.file_stdout, launch.oflags_stdout);
}

int set_stderr_file(LaunchSettings& launch, char* arg) {
    return set_output_file(arg, 2, launch.file_stderr, launch.oflags_stderr);
}

int set_identity(LaunchSettings& launch, char* arg) {
    bool valid = split_user_spec(arg, launch.user, launch.group, launch.password);
    mask_password(arg);  // the settings hold it now
    if (valid) return 0;
    // Shown in every mode: a launch under the wrong identity must never pass quietly.
    outMessage(0, "Format error in -u parameter\n");
    outMessage(0, "syntax is -u User:Group:Password\n");
    return kUserFormat;
}

int set_daemon(LaunchSettings& launch, char*) {
    launch.daemon = true;
    trace("Enabled -d option, DAEMON_START\n");
    return 0;
}

int set_suspend(LaunchSettings& launch, char*) {
    launch.suspend = true;
    trace("Enabled -s option, SUSPEND_AFTER_START\n");
    return 0;
}

// A mask is one to four octal digits, at most 0777: anything else, read as
// far as it goes, would quietly give the JVM some other mask, often 0.
int set_umask(LaunchSettings& launch, char* arg) {
    std::string_view text = arg;
    int mask = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), mask, 8);
    if (text.empty() || text.size() > 4 || error != std::errc() ||
        end != text.data() + text.size() || mask > 0777) {
        outMessage(0, "Unable to set -r <umask> option, not an octal mask up to 0777: (%s)\n", arg);
        return kBadOption;
    }
    launch.umask_value = mask;
    trace("Enabled -r option, umask = (0%o) (only valid with -d)\n", static_cast<unsigned>(mask));
    return 0;
}

int taken_by_prescan(LaunchSettings&, char*) { return 0; }

int set_pidfile(LaunchSettings& launch, char* file) {
    launch.pidfile = absolute_pidfile(file);
    trace("Enabled --pidfile option, file = (%s)\n", launch.pidfile.c_str());
    return 0;
}

int set_password_file(LaunchSettings& launch, char* file) {
    launch.passwordFile = file;
    trace("Enabled --password-file option, file = (%s)\n", file);
    return 0;
}

int set_dry_run(LaunchSettings& launch, char*) {
    launch.dryRun = true;
    trace("Enabled --dry-run option\n");
    return 0;
}

// Only the superuser may waive the check; anyone else needs the password.
int set_no_password_check(LaunchSettings& launch, char*) {
    if (getuid() != 0) {
        std::fprintf(stderr, "%s: --no-password-check is for the superuser only\n",
                     program_invocation_name);
        return kBadOption;
    }
    launch.noPasswordCheck = true;
    trace("Enabled --no-password-check option\n");
    return 0;
}

int set_stop(LaunchSettings& launch, char*) {
    launch.control = Control::kStop;
    trace("Enabled --stop option\n");
    return 0;
}

int set_status(LaunchSettings& launch, char*) {
    launch.control = Control::kStatus;
    trace("Enabled --status option\n");
    return 0;
}

// Whole seconds up to a day; anything else, read as far as it goes, would
// send KILL at some other time.
int set_timeout(LaunchSettings& launch, char* arg) {
    constexpr int kLongest = 86400;
    std::string_view text = arg;
    int seconds = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || seconds < 0 ||
        seconds > kLongest) {
        outMessage(0, "Unable to set --timeout option, not a number of seconds up to %d: (%s)\n",
                   kLongest, arg);
        return kBadOption;
    }
    launch.stopTimeout = seconds;
    trace("Enabled --timeout option, %d s\n", seconds);
    return 0;
}

int set_stop_signal(LaunchSettings& launch, char* arg) {
    int number = signal_number(arg);
    if (number == 0) {
        outMessage(0, "Unable to set --signal option, not a signal name kill -l lists: (%s)\n",
                   arg);
        return kBadOption;
    }
    launch.stopSignal = number;
    trace("Enabled --signal option, signal %d\n", number);
    return 0;
}

int add_rlimit(LaunchSettings& launch, char* arg) { return parse_rlimit(launch, arg); }

}  // namespace qorvel
