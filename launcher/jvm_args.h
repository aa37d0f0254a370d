// The JVM's argument vector: program word, class path, JVM options, security
// policy and the remaining command words.
#pragma once

#include "launcher/settings.h"

namespace qorvel {

// Most characters the remaining command words may hold together.
inline constexpr long kMaxArgumentChars = 131072;

// Builds the NULL-terminated vector from `program` (as typed), the class path,
// JVM options and policy file of `jvm`, and `words` (NULL-terminated, the words
// after the program). Afterwards jvm.policyfile holds the whole policy
// option. Words with a "$" are expanded, the others go in whole. Returns 0
// with *argv set, or 7 (too long), 22 (a word cannot be expanded, or its
// expansion does not fit) or errno; on failure *argv is left alone.
int create_argv(char** words, char*** argv, const char* program, JvmSettings& jvm);

// Releases a vector made by create_argv; a null vector is ignored.
void destroy_argv(char** argv);

// Writes the vector to the debug log on one line.
void show_cmdLine(char** argv);

}  // namespace qorvel
