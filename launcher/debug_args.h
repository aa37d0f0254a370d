// The argument pre-scans that decide the debug log, and the argument dump.
#pragma once

namespace qorvel {

inline constexpr const char* kDefaultLogName = "qorvel.log";
inline constexpr const char* kIdentityMask = "<user group password not shown>";

// Sets settings.fDebug when some word is exactly "-g".
void setDebug(int argc, char** argv);

// The argument of the first -l option, or kDefaultLogName.
const char* getLogFileName(int argc, char** argv);

// Gives each word holding a -u value a heap copy for the option scan and
// masks the password in the original, which is what other users can read of
// our arguments for as long as we run.
void hide_passwords(int argc, char** argv);

// Writes every argument to the debug log, with any -u value masked.
void dump_argv(char** argv);

}  // namespace qorvel
