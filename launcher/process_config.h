// The launch after the entry: options, environment, run mode and JVM start.
#pragma once

namespace qorvel {

inline constexpr int kNoCommand = -11;

// Shows the two usage lines, whatever the console mode.
void usage();

// Runs the option loop and the steps after it. Returns only when the JVM was
// not started, with 0 or a failure code.
int processConfig(int argc, char** argv);

}  // namespace qorvel
