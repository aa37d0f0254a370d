// Value lookup and substitution with an explicit destination size, for the
// library's own readers; getPropValue and filterValue are their C forms.
#pragma once

#include <cstddef>

#include "config/section.h"
#include "qorvel/config.h"

namespace qorvel::config {

// Records a cut in `cutAt` (when given, and only the first one): the step
// kept `kept` characters of a longer text.
inline void note_cut(std::size_t* cutAt, std::size_t kept) {
    if (cutAt && *cutAt == 0) *cutAt = kept;
}

// getPropValue on `section`; a text value cut on its way to `out` is noted in `cutAt`.
long lookup_value(const Section& section, const char* key, void* out, std::size_t outSize,
                  unsigned int flags, const char* defaultText, long defaultNumber, int substitute,
                  std::size_t* cutAt = nullptr);

// filterValue writing at most outSize bytes into `out`; a cut is noted in `cutAt`.
int filter_value(const Section& section, const char* key, char* out, std::size_t outSize,
                 const char* value, std::size_t* cutAt = nullptr);

}  // namespace qorvel::config
