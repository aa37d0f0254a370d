// --help and --version, answered before anything else is done.
#pragma once

namespace qorvel {

// Handles `word` when it is "--help" or "--version": prints to standard
// output and returns true. Otherwise returns false and prints nothing.
bool answer_help(const char* word);

}  // namespace qorvel
