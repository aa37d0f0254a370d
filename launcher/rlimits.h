// --rlimit: resource limits the launch sets on itself before the daemon start
// and the identity switch, so the JVM inherits them and root may raise a hard one.
#pragma once

#include <string>

#include "launcher/settings.h"

namespace qorvel {

// Reads "NAME=SOFT[:HARD]" (each limit a decimal number or "unlimited") into
// `launch`, replacing an earlier limit of the same resource. Returns 0, or
// kBadOption with a message for an unknown name, a value that is not a number,
// or a soft limit above the hard one.
int parse_rlimit(LaunchSettings& launch, const char* text);

// Sets each limit on this process, in the order given. Returns 0 or the errno
// of the first one the system refuses, reported.
int apply_rlimits(const LaunchSettings& launch);

// "nofile=1024:4096 core=0" (a kept hard limit left out), or "none".
std::string describe_rlimits(const LaunchSettings& launch);

}  // namespace qorvel
