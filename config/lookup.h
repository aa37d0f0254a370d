// Value lookup and substitution with an explicit destination size, for the
// library's own lookups; getPropValue and filterValue are their public forms.
#pragma once

#include <cstddef>

#include "qorvel/config.h"

namespace qorvel {

// Records a cut in `cutAt` (when given, and only the first one): the step
// kept `kept` characters of a longer text.
inline void note_cut(std::size_t* cutAt, std::size_t kept) {
    if (cutAt && *cutAt == 0) *cutAt = kept;
}

// filterValue writing at most outSize bytes into `out`; a cut is noted in `cutAt`.
int filter_value(const CFGHANDLE* handle, const char* key, char* out, std::size_t outSize,
                 const char* value, std::size_t* cutAt = nullptr);

// getPropValue; a text value cut on its way to `out` is noted in `cutAt`.
long lookup_value(const CFGHANDLE* handle, const char* key, void* out, std::size_t outSize,
                  unsigned int flags, const char* defaultText, long defaultNumber, int substitute,
                  std::size_t* cutAt = nullptr);

}  // namespace qorvel
