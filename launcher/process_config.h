// The launch after the entry: options, environment, run mode and JVM start.
#pragma once

#include "launcher/option_parser.h"
#include "launcher/settings.h"

namespace qorvel {

inline constexpr int kNoCommand = -11;

// Runs the option loop over `parser`'s result into `launch`, then the steps
// after it. Returns only when the JVM was not started, with 0 or a failure code.
int processConfig(int argc, char** argv, const OptionParser& parser, LaunchSettings& launch);

}  // namespace qorvel
