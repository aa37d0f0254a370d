// --dry-run: the launch checked up to the start, then shown instead of made.
#pragma once

namespace qorvel {

// Notes the environment as the launcher found it, before any option changes it.
void remember_environment();

// Builds the JVM's argument vector from the command at argv[first] and prints
// it as one shell-quoted line on standard output, then every environment
// variable the launch set or changed (values from -e hidden). Returns 0, or
// the code of the first failure (already reported).
int dry_run(char** argv, int first);

}  // namespace qorvel
