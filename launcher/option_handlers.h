// What each option does to the launch settings; the option table (options.cpp)
// names one handler per option. Each returns 0, kBadOption, or a code that
// ends the launch at once, after reporting it.
#pragma once

#include "launcher/settings.h"

namespace qorvel {

// Result codes of the options (process exit status in their low eight bits).
inline constexpr int kClasspathFailed = -2;
inline constexpr int kWorkDirFailed = -3;
inline constexpr int kUserFormat = -4;
inline constexpr int kNoMemory = -6;
inline constexpr int kRedirectFailed = -12;

int set_classpath(LaunchSettings& launch, char* value);             // -c
int set_work_dir(LaunchSettings& launch, char* value);              // -w
int read_env(LaunchSettings& launch, char* value);                  // -e
int set_stdin_file(LaunchSettings& launch, char* value);            // -0
int set_stdout_file(LaunchSettings& launch, char* value);           // -1
int set_stderr_file(LaunchSettings& launch, char* value);           // -2
int set_console(LaunchSettings& launch, char* value);               // -o
int set_console_mode(LaunchSettings& launch, char* value);          // -m
int set_identity(LaunchSettings& launch, char* value);              // -u
int set_daemon(LaunchSettings& launch, char* value);                // -d
int set_suspend(LaunchSettings& launch, char* value);               // -s
int set_umask(LaunchSettings& launch, char* value);                 // -r
int set_props(LaunchSettings& launch, char* value);                 // -a
int set_classpath_from_props(LaunchSettings& launch, char* value);  // -x
int taken_by_prescan(LaunchSettings& launch, char* value);          // -g, -l
int set_pidfile(LaunchSettings& launch, char* value);               // --pidfile
int set_password_file(LaunchSettings& launch, char* value);         // --password-file
int set_dry_run(LaunchSettings& launch, char* value);               // --dry-run
int set_no_password_check(LaunchSettings& launch, char* value);     // --no-password-check
int set_stop(LaunchSettings& launch, char* value);                  // --stop
int set_status(LaunchSettings& launch, char* value);                // --status
int set_timeout(LaunchSettings& launch, char* value);               // --timeout
int set_stop_signal(LaunchSettings& launch, char* value);           // --signal
int add_rlimit(LaunchSettings& launch, char* value);                // --rlimit

}  // namespace qorvel
