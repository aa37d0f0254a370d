// --dry-run: the launch checked up to the start, then shown instead of made.
#pragma once

#include "launcher/identity.h"
#include "launcher/settings.h"

namespace qorvel {

// Notes the environment as the launcher found it, before any option changes it.
void remember_environment();

// Builds the JVM's argument vector from `command` (the program word and its
// arguments, NULL-terminated) and launch.jvm, checks the
// redirection files and the program as the start would meet them, and prints
// the vector as one shell-quoted line on standard output, then every
// environment variable the launch set or changed (values from -e hidden), then
// what else the start would use (launch_summary.h). Returns 0, or the code of
// the first failure (already reported).
int dry_run(LaunchSettings& launch, char** command, const Identity& identity);

}  // namespace qorvel
