// The last step of a launch: redirect the standard streams and become the JVM.
#pragma once

#include "launcher/settings.h"

namespace qorvel {

// Builds the vector from `tail` (the program word and its arguments,
// NULL-terminated) and launch.jvm, which it consumes; redirects standard
// input, output and error to the configured files in that order, and execs.
// Returns only on failure, with the code; redirections already made stay in
// place, and a failed exec is also told to the caller's own console, naming
// the program. `count` is not consulted.
int start_jvm(LaunchSettings& launch, int count, char** tail);

// Opens the redirection files as start_jvm would, for --dry-run, without
// creating or changing any: for an output file that does not exist yet, its
// directory must let us create it. Returns 0 or the code start_jvm would
// return, reported alike.
int check_streams(const LaunchSettings& launch);

}  // namespace qorvel
