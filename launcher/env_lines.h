// The -e option: NAME=value lines read from standard input into the environment.
#pragma once

#include <cstdio>

namespace qorvel {

inline constexpr int kMaxEnvLines = 60;

// Reads `count_text` (decimal, at most kMaxEnvLines) lines from `input`,
// expands each and hands it to putenv. A line that cannot be expanded, or
// that is too long, is reported and skipped.
void read_env_lines(const char* count_text, std::FILE* input);

}  // namespace qorvel
