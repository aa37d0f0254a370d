// The JVM command as one quoted text line, for callers that want a string
// rather than an argument vector.
#pragma once

#include <cstddef>

#include "launcher/settings.h"

namespace qorvel {

// Longest line the words may build (the inserted settings come on top).
inline constexpr std::size_t kCmdLineMax = 2048;

// Writes the expanded words into `line` (lineSize bytes), each followed by a
// blank and quoted when it holds white space (never when it names JVMARGS),
// with the class path, JVM options and policy option of `jvm` after the first
// word. Those are consumed. Returns 0, 22 when a word cannot be expanded, 7
// when the line grows too long, or an errno.
int create_cmdLine(char* line, std::size_t lineSize, int count, const char* const* words,
                   JvmSettings& jvm);

// Copies the program word of `line` (quoted or up to the first blank) into
// `out` (outSize bytes) and returns its length.
std::size_t getExec_cmdLine(const char* line, char* out, std::size_t outSize);

// 1 when `text` holds a white-space character, else 0.
int chkForSpaces(const char* text);

}  // namespace qorvel
