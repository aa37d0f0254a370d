// --password-file: the -u password read from a file only its owner can read.
#pragma once

#include "launcher/settings.h"

namespace qorvel {

// With --password-file and a -u value whose password is empty, puts the first
// line of the file into launch.password. The file must be a regular file
// of the caller's own that neither group nor others may read or write.
// Returns 0, or kPasswordRefused after a message naming the problem.
int read_password_file(LaunchSettings& launch);

}  // namespace qorvel
