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
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

// Reads the requests from the section the handle is positioned on. A value
// found replaces the buffer's text (and the cut of a parent's value): only
// that text is cleared, and the copy stops at the buffer's capacity.
long read_level(const CFGHANDLE& handle, int substitute, std::span<PropertyRequest> requests) {
    long result = 0;
    char value[CFG_VALUE_SIZE];
    for (PropertyRequest& request : requests) {
        if (!request.key || !request.buffer || request.capacity == 0) break;
        std::size_t cut_at = 0;
        long rc =
            lookup_value(&handle, request.key, value, sizeof value, PROP_STRING | PROP_WHOLE_LINE,
                         nullptr, PROP_NO_DEFAULT_NUMBER, substitute, &cut_at);
        if (rc == CFG_NOT_FOUND) continue;  // the buffer keeps its default
        std::memset(request.buffer, 0, bounded_length(request.buffer, request.capacity));
        if (!bounded_copy(request.buffer, request.capacity, value)) {
            note_cut(&cut_at, request.capacity - 1);
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

}  // namespace

long read_properties(int substitute, const char* fileName, const char* sectionName,
                     std::span<PropertyRequest> requests, int* levelsFound) {
    if (levelsFound) *levelsFound = 0;
    if (!fileName || !sectionName) return CFG_NOT_FOUND;
    std::string_view name = sectionName;
    // A level too long to search for would be skipped as if absent.
    if (deepest_level_length(name) > CFG_SECTION_NAME_MAX) return ENAMETOOLONG;

    CFGHANDLE handle;
    if (long rc = opencfg(nullptr, nullptr, fileName, &handle); rc != 0) return rc;

    // Empty components ("a..b", ".a") are skipped; a name without any
    // component is looked up as it stands.
    char level[CFG_SECTION_NAME_MAX + 2] = "";  // room for the "." after the deepest level
    long result = 0;
    std::size_t pos = 0;
    std::string_view component = next_component(name, pos);
    if (component.empty()) component = name;
    do {
        bounded_append(level, component);
        if (find_Section(level, &handle)) {
            if (levelsFound) ++*levelsFound;
            if (long rc = read_level(handle, substitute, requests); rc != 0) result = rc;
        }
        bounded_append(level, ".");
        component = next_component(name, pos);
    } while (!component.empty());
    closecfg(&handle);
    return result;
}

}  // namespace qorvel

namespace {

// Values read without substitution are cut at 1023 characters.
constexpr std::size_t kPlainCapacity = 1024;

// The trailing arguments: (key, buffer) pairs whose buffers all hold
// `fixedCapacity` bytes, or, when it is 0, (key, buffer, capacity) triples.
long collect_requests(long count, std::size_t fixedCapacity, std::va_list args,
                      std::vector<qorvel::PropertyRequest>& requests) {
    try {  // no exception may cross into a C caller
        for (long i = 0; i < count; ++i) {
            qorvel::PropertyRequest request{};
            request.key = va_arg(args, const char*);
            request.buffer = va_arg(args, char*);
            request.capacity = fixedCapacity ? fixedCapacity : va_arg(args, std::size_t);
            if (!request.key || !request.buffer || request.capacity == 0) break;
            requests.push_back(request);
        }
    } catch (const std::bad_alloc&) {
        return ENOMEM;
    }
    return 0;
}

}  // namespace

extern "C" long getProperties(long count, int substitute, const char* fileName,
                              const char* sectionName, ...) {
    std::vector<qorvel::PropertyRequest> requests;
    std::va_list args;
    va_start(args, sectionName);
    long rc = collect_requests(count, substitute ? CFG_VALUE_SIZE : kPlainCapacity, args, requests);
    va_end(args);
    return rc != 0 ? rc : qorvel::read_properties(substitute, fileName, sectionName, requests);
}

extern "C" long getPropertiesSized(long count, int substitute, const char* fileName,
                                   const char* sectionName, ...) {
    std::vector<qorvel::PropertyRequest> requests;
    std::va_list args;
    va_start(args, sectionName);
    long rc = collect_requests(count, 0, args, requests);
    va_end(args);
    return rc != 0 ? rc : qorvel::read_properties(substitute, fileName, sectionName, requests);
}
