// --help, --version and the usage lines, written from the option table.
#pragma once

namespace qorvel {

// Handles `word` when it is "--help" or "--version": prints to standard
// output and returns true. Otherwise returns false and prints nothing.
bool answer_help(const char* word);

// Shows the two usage lines, whatever the console mode.
void usage();

}  // namespace qorvel
