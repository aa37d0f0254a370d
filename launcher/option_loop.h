// The option loop: acts on the parsed options, in command-line order.
#pragma once

#include "launcher/option_parser.h"
#include "launcher/settings.h"

namespace qorvel {

// Runs each option's handler on `launch` and reports each faulty option on
// standard error. Returns 0 when all were accepted, the code of the first
// option that ends the launch, or kBadOption after the whole scan when some
// option was faulty.
int scan_options(const OptionParser& parser, char** argv, LaunchSettings& launch);

}  // namespace qorvel
