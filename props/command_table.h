// The one table of qorvel-props' commands and options, from which the
// command line is parsed and the help written.
#pragma once

#include <string>

#include "commands.h"

namespace props {

// Parses argv into `c` and runs the command; returns the exit status.
int dispatch(int argc, char** argv, Invocation& c);

}  // namespace props
