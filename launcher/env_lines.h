// The -e option: NAME=value lines read from standard input into the environment.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace qorvel {

inline constexpr int kMaxEnvLines = 60;

// Reads `count_text` (decimal, at most kMaxEnvLines) lines from `input`,
// expands each and hands it to putenv. A line that cannot be expanded, or
// that is too long, is reported (its value hidden) and changes nothing.
void read_env_lines(const char* count_text, std::FILE* input);

// An environment entry as it may be shown: the value of one set by -e is
// replaced by "<value not shown>".
std::string shown_entry(const char* entry);

// True when an -e line set the variable `name`.
bool set_by_env_line(std::string_view name);

}  // namespace qorvel
