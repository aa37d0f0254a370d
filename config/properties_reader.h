// getProperties with each buffer's capacity carried beside it.
#pragma once

#include <cstddef>
#include <span>

namespace qorvel {

struct PropertyRequest {
    const char* key;
    char* buffer;            // holds the default on entry, the value on return
    std::size_t capacity;    // bytes of `buffer`; longer values are cut to fit
    std::size_t cut_at = 0;  // on return: 0, or how many characters were kept of a value
                             // cut on its way (from the file, a reference or a variable)
};

// Reads every request from `sectionName` and each of its dotted ancestors,
// the deeper section overriding. A null key or buffer ends the list. Returns
// what getProperties returns; `levelsFound`, when given, receives how many of
// the levels exist in the file.
long read_properties(int substitute, const char* fileName, const char* sectionName,
                     std::span<PropertyRequest> requests, int* levelsFound = nullptr);

}  // namespace qorvel
