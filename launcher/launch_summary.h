// What a start would use besides its command and environment, for --dry-run.
#pragma once

#include "launcher/identity.h"
#include "launcher/settings.h"

namespace qorvel {

// Prints one "name: value" line each for the run mode, user, group,
// supplementary groups, file-creation mask, working directory (the current
// one), the three redirections with their open modes, the pid file and the
// --rlimit limits.
// `identity` is what the daemon start resolved (default without one).
void print_launch_summary(const LaunchSettings& launch, const Identity& identity);

}  // namespace qorvel
