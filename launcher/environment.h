// The process environment the JVM inherits: the PATH prefix and its dump.
#pragma once

#include <sys/types.h>

namespace qorvel {

inline constexpr int kNoJreHome = -9;
inline constexpr int kNoVtx = -10;

// When PATH is set, puts JREHOME/bin and VTX/bin:VTX/lib in front of it.
// Returns 0, kNoJreHome or kNoVtx (unset, or too long to fit the new PATH).
int prefix_path();

// Writes every environment entry to the debug log.
void dump_Env();

// `pid` when that process exists (even under another user), else 0.
pid_t query_PID(pid_t pid);

}  // namespace qorvel
