// The argument pre-scans that decide the debug log, the masking of secret
// option values, and the argument dump.
#pragma once

#include "launcher/option_parser.h"

namespace qorvel {

inline constexpr const char* kDefaultLogName = "qorvel.log";
inline constexpr const char* kIdentityMask = "<user group password not shown>";

// Sets console.fDebug when some word is exactly "-g", among the command's too.
void setDebug(int argc, char** argv);

// The value of the first -l option, or kDefaultLogName.
const char* getLogFileName(const OptionParser& parser, char** argv);

// Gives each word holding a secret value (-u) a heap copy for the option scan
// and masks the secret in the original, which is what other users can read of
// our arguments for as long as we run.
void hide_passwords(const OptionParser& parser, char** argv);

// Writes every argument to the debug log, secret values masked whole.
void dump_argv(const OptionParser& parser, char** argv);

}  // namespace qorvel
