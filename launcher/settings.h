// What one launch is to do: a value made by main, filled by the option scan and
// passed down to each step of the launch. Each field names who writes it.
#pragma once

#include <sys/resource.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace qorvel {

inline constexpr int OFLAGS_CREATE = 66;    // O_RDWR | O_CREAT; never O_TRUNC
inline constexpr int OFLAGS_APPEND = 1090;  // O_RDWR | O_CREAT | O_APPEND

// Sizes of the fixed text fields.
inline constexpr std::size_t kIdentityFieldSize = 50;
inline constexpr std::size_t kPathFieldSize = 255;

using HeapText = std::unique_ptr<char[]>;

// What -a and -x read from a properties section; none where no level sets it.
// create_argv consumes them into the JVM's arguments.
struct JvmSettings {
    HeapText classpath, jvmargs, policyfile;
};

// One --rlimit: a resource and the limits it gets before the identity switch.
struct ResourceLimit {
    int resource;      // RLIMIT_...
    const char* name;  // as --rlimit names it
    rlim_t soft;
    rlim_t hard;
    bool hard_given;  // without it the hard limit stays as inherited
};

// What the run does: a launch, or one of the pid-file commands.
enum class Control { kLaunch, kStop, kStatus };

struct LaunchSettings {
    char osname[kPathFieldSize] = "";  // main: the system's name, empty when unknown
    bool daemon = false;               // -d
    bool suspend = false;              // -s
    int umask_value = -1;              // -r for the daemon child; -1 keeps the inherited mask
    HeapText file_stdin, file_stdout, file_stderr;  // -0, -1, -2, expanded
    int oflags_stdout = OFLAGS_CREATE;              // -1
    int oflags_stderr = OFLAGS_CREATE;              // -2
    JvmSettings jvm;                                // -a, -x
    char user[kIdentityFieldSize] = "";             // -u
    char group[kIdentityFieldSize] = "";            // -u
    char password[kIdentityFieldSize] = "";  // -u or the password file; wiped by the daemon start
    char workDir[kPathFieldSize] = "";       // -w, expanded
    std::string pidfile;                     // --pidfile, absolute; empty without
    const char* passwordFile = nullptr;      // --password-file, pointing into argv
    bool dryRun = false;                     // --dry-run
    bool noPasswordCheck = false;            // --no-password-check (superuser only)
    Control control = Control::kLaunch;      // --stop, --status
    int stopTimeout = 30;                    // --timeout: seconds before KILL
    int stopSignal = 15;                     // --signal: the first signal of --stop (TERM)
    std::vector<ResourceLimit> rlimits;      // --rlimit: one per resource, the last one given
};

}  // namespace qorvel
