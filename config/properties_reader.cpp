// Several keys of a section, its dotted ancestors supplying what it leaves out.
#include "config/properties_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <new>
#include <string_view>
#include <vector>

#include "config/lookup.h"
#include "config/section.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

// Reads the requests from the section the handle is positioned on. A value
// found replaces the buffer's text (and the cut of a parent's value): only
// that text is cleared, and the copy stops at the buffer's capacity.
long read_level(const config::Section& section, int substitute,
                std::span<PropertyRequest> requests) {
    long result = 0;
    char value[CFG_VALUE_SIZE];
    for (PropertyRequest& request : requests) {
        if (!request.key || !request.buffer || request.capacity == 0) break;
        std::size_t cut_at = 0;
        long rc = config::lookup_value(section, request.key, value, sizeof value,
                                       PROP_STRING | PROP_WHOLE_LINE, nullptr,
                                       PROP_NO_DEFAULT_NUMBER, substitute, &cut_at);
        if (rc == CFG_NOT_FOUND) continue;  // the buffer keeps its default
        std::memset(request.buffer, 0, bounded_length(request.buffer, request.capacity));
        if (!bounded_copy(request.buffer, request.capacity, value)) {
            config::note_cut(&cut_at, request.capacity - 1);
        }
        request.cut_at = cut_at;
        if (rc != 0) result = rc;
    }
    return result;
}

// The next non-empty dotted component of `name` from `pos`, or "" at the end.
std::string_view next_component(std::string_view name, std::size_t& pos) {
    std::size_t start = name.find_first_not_of('.', pos);
    if (start == std::string_view::npos) {
        pos = name.size();
        return {};
    }
    pos = std::min(name.find('.', start), name.size());
    return name.substr(start, pos - start);
}

// Length of the deepest level read for `name`: its components joined by
// single dots, or the name itself when it has no component.
std::size_t deepest_level_length(std::string_view name) {
    std::size_t length = 0;
    std::size_t pos = 0;
    for (auto part = next_component(name, pos); !part.empty(); part = next_component(name, pos)) {
        length += (length > 0 ? 1 : 0) + part.size();
    }
    return length > 0 ? length : name.size();
}

// read_properties, which may run out of memory.
long read_levels(int substitute, const char* fileName, const char* sectionName,
                 std::span<PropertyRequest> requests, int* levelsFound) {
    if (!fileName || !sectionName) return CFG_NOT_FOUND;
    std::string_view name = sectionName;
    // A level too long to search for would be skipped as if absent.
    if (deepest_level_length(name) > CFG_SECTION_NAME_MAX) return ENAMETOOLONG;

    std::string path;
    std::unique_ptr<config::File> file;
    if (long rc = config::open_file(nullptr, fileName, path, file); rc != 0) return rc;

    // Empty components ("a..b", ".a") are skipped; a name without any
    // component is looked up as it stands.
    char level[CFG_SECTION_NAME_MAX + 2] = "";  // room for the "." after the deepest level
    long result = 0;
    std::size_t pos = 0;
    std::string_view component = next_component(name, pos);
    if (component.empty()) component = name;
    do {
        bounded_append(level, component);
        config::Section section{file.get()};
        if (config::find_section(section, level)) {
            if (levelsFound) ++*levelsFound;
            if (long rc = read_level(section, substitute, requests); rc != 0) result = rc;
        }
        bounded_append(level, ".");
        component = next_component(name, pos);
    } while (!component.empty());
    return result;
}

}  // namespace

long read_properties(int substitute, const char* fileName, const char* sectionName,
                     std::span<PropertyRequest> requests, int* levelsFound) {
    if (levelsFound) *levelsFound = 0;
    try {
        return read_levels(substitute, fileName, sectionName, requests, levelsFound);
    } catch (const std::bad_alloc&) {
        return ENOMEM;
    }
}

}  // namespace qorvel
