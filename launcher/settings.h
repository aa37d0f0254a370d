// The launch settings: process-wide state written once by the option scan and
// read by every later step of the launch. Nothing resets them during a run.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace qorvel {

// Bits of fOption. A bad option sets the whole word to -1.
inline constexpr std::int64_t DAEMON_START = 1;
inline constexpr std::int64_t SUSPEND_AFTER_START = 2;
inline constexpr std::int64_t SILENT_MODE = 8;
inline constexpr std::int64_t VERBOSE_MODE = 16;

inline constexpr int OFLAGS_CREATE = 66;    // O_RDWR | O_CREAT; never O_TRUNC
inline constexpr int OFLAGS_APPEND = 1090;  // O_RDWR | O_CREAT | O_APPEND

// Sizes of the fixed text fields.
inline constexpr std::size_t kIdentityFieldSize = 50;
inline constexpr std::size_t kPathFieldSize = 255;

using HeapText = std::unique_ptr<char[]>;

struct LaunchSettings {
    std::int64_t fOption = VERBOSE_MODE;
    int fDebug = 0;             // set by the "-g" pre-scan
    FILE* LoggerLog = nullptr;  // the debug log, open while fDebug is set
    char osname[kPathFieldSize] = "";
    char outputDesc[kPathFieldSize] = "stderr";  // console destination
    int umask_value = -1;  // -r for the daemon child; -1 keeps the inherited mask
    HeapText file_stdin, file_stdout, file_stderr;
    int oflags_stdout = OFLAGS_CREATE;
    int oflags_stderr = OFLAGS_CREATE;
    int open_mode = 0100664;
    int stdin_fd = -1, stdout_fd = -1, stderr_fd = -1;
    HeapText classpath, jvmargs, policyfile;  // taken from a properties file
    char user[kIdentityFieldSize] = "";
    char group[kIdentityFieldSize] = "";
    char password[kIdentityFieldSize] = "";
    char workDir[kPathFieldSize] = "";
    // Long options.
    std::string pidfile;                 // --pidfile FILE, absolute; empty without
    const char* passwordFile = nullptr;  // --password-file FILE, pointing into argv
    bool dryRun = false;                 // --dry-run
    bool noPasswordCheck = false;        // --no-password-check (superuser only)
};

// Written by main and the option scan; read by the launch steps.
extern LaunchSettings settings;

inline bool verbose() { return (settings.fOption & VERBOSE_MODE) != 0; }

}  // namespace qorvel
