// Environment-reference expansion; expand_envvars is its C form.
#pragma once

namespace qorvel {

enum class Expansion { kWhole, kCut, kFailed };

// Writes `src` with $NAME, ${NAME} and "~$" replaced into `dst`, which holds
// QORVEL_EXPAND_MAX bytes. kCut: the result was longer and `dst` holds its
// first QORVEL_EXPAND_MAX - 1 characters. kFailed (a variable unset, a "{"
// left open): `dst` is untouched.
Expansion expand_references(char* dst, const char* src);

}  // namespace qorvel
