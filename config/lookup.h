// Value substitution with an explicit destination size, for the library's
// own lookups; filterValue is its public form.
#pragma once

#include <cstddef>

#include "qorvel/config.h"

namespace qorvel {

// filterValue writing at most outSize bytes into `out`.
int filter_value(const CFGHANDLE* handle, const char* key, char* out, std::size_t outSize,
                 const char* value);

}  // namespace qorvel
