// The C interface of the properties reader: each function checks its
// arguments and hands them to the C++ inside; no exception crosses back.
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <vector>

#include "config/handle.h"
#include "config/lookup.h"
#include "config/no_throw.h"
#include "config/properties_reader.h"
#include "qorvel/config.h"

using qorvel::or_on_oom;
namespace config = qorvel::config;

// The handle is shared with C callers and copied byte for byte: pin its layout.
static_assert(offsetof(CFGHANDLE, fileName) == 0, "a handle pointer doubles as its path");
static_assert(offsetof(CFGHANDLE, sectionOffset) == CFG_PATH_SIZE + CFG_HEADER_SIZE);
static_assert(sizeof(CFGHANDLE) == CFG_PATH_SIZE + CFG_HEADER_SIZE + sizeof(long) + sizeof(FILE*));

extern "C" long opencfg(const char* sectionName, const char* envVarName, const char* fileName,
                        CFGHANDLE* handle) {
    if (!handle) return CFG_NULL_HANDLE;
    return config::open_handle(sectionName, envVarName, fileName, handle);
}

extern "C" void closecfg(CFGHANDLE* handle) {
    if (handle) config::close_handle(handle);
}

extern "C" int find_Section(const char* sectionName, CFGHANDLE* handle) {
    if (!handle || !handle->fp || !sectionName) return 0;
    return or_on_oom(false, [&] { return config::position_on(*handle, sectionName); }) ? 1 : 0;
}

extern "C" long find_NextSection(const char* prefix, char* outName, size_t outSize,
                                 CFGHANDLE* handle) {
    if (!handle || !handle->fp) return CFG_NO_MORE_SECTIONS;
    return or_on_oom(static_cast<long>(ENOMEM),
                     [&] { return config::next_section_on(*handle, prefix, outName, outSize); });
}

extern "C" long find_NextHeader(char* outName, size_t outSize, CFGHANDLE* handle) {
    if (!handle || !handle->fp) return CFG_NO_MORE_SECTIONS;
    return or_on_oom(static_cast<long>(ENOMEM),
                     [&] { return config::next_header_on(*handle, outName, outSize); });
}

extern "C" long getPropValue(const CFGHANDLE* handle, const char* key, void* out, size_t outSize,
                             unsigned int flags, const char* defaultText, long defaultNumber,
                             int substitute) {
    if (!handle) return CFG_NULL_HANDLE;
    return or_on_oom(static_cast<long>(ENOMEM), [&] {
        config::Section section;
        return config::read_handle(*handle, section, [&](config::Section& s) {
            return config::lookup_value(s, key, out, outSize, flags, defaultText, defaultNumber,
                                        substitute);
        });
    });
}

extern "C" int filterValue(const CFGHANDLE* handle, const char* key, char* out, const char* value) {
    if (!handle) return static_cast<int>(CFG_NULL_HANDLE);
    return or_on_oom(0, [&] {
        config::Section section;
        return config::read_handle(*handle, section, [&](config::Section& s) {
            return config::filter_value(s, key, out, CFG_VALUE_SIZE, value);
        });
    });
}

namespace {

// Values read without substitution are cut at 1023 characters.
constexpr std::size_t kPlainCapacity = 1024;

// The trailing arguments: (key, buffer) pairs whose buffers all hold
// `fixedCapacity` bytes, or, when it is 0, (key, buffer, capacity) triples.
void collect_requests(long count, std::size_t fixedCapacity, std::va_list args,
                      std::vector<qorvel::PropertyRequest>& requests) {
    for (long i = 0; i < count; ++i) {
        qorvel::PropertyRequest request{};
        request.key = va_arg(args, const char*);
        request.buffer = va_arg(args, char*);
        request.capacity = fixedCapacity ? fixedCapacity : va_arg(args, std::size_t);
        if (!request.key || !request.buffer || request.capacity == 0) break;
        requests.push_back(request);
    }
}

long read_requests(long count, std::size_t fixedCapacity, int substitute, const char* fileName,
                   const char* sectionName, std::va_list args) {
    return or_on_oom(static_cast<long>(ENOMEM), [&] {
        std::vector<qorvel::PropertyRequest> requests;
        collect_requests(count, fixedCapacity, args, requests);
        return qorvel::read_properties(substitute, fileName, sectionName, requests);
    });
}

}  // namespace

extern "C" long getProperties(long count, int substitute, const char* fileName,
                              const char* sectionName, ...) {
    std::va_list args;
    va_start(args, sectionName);
    long rc = read_requests(count, substitute ? CFG_VALUE_SIZE : kPlainCapacity, substitute,
                            fileName, sectionName, args);
    va_end(args);
    return rc;
}

extern "C" long getPropertiesSized(long count, int substitute, const char* fileName,
                                   const char* sectionName, ...) {
    std::va_list args;
    va_start(args, sectionName);
    long rc = read_requests(count, 0, substitute, fileName, sectionName, args);
    va_end(args);
    return rc;
}
