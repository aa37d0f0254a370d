// Enumerating the CV broker services ("UBroker.CV.<name>" sections).
#include <cerrno>
#include <cstring>

#include "config/handle.h"
#include "config/no_throw.h"
#include "qorvel/services.h"
#include "util/bounded_text.h"

namespace {

constexpr const char* kParent = "UBroker.CV";
constexpr std::size_t kNameSize = 256;

// getServiceList's enumeration context; not safe for concurrent use.
CFGHANDLE SEWA_cv;

long enumerate(CFGHANDLE* context, unsigned long index, char** name, std::size_t size) {
    using namespace qorvel::config;
    bool firstOnly = index == SERVICE_ENUM_FIRST_ONLY;
    if (!context && !firstOnly) return CV_ERR_HANDLE;
    if (!name || !*name) return EINVAL;
    CFGHANDLE handle{};
    if (index == 0 || firstOnly) {
        long r = open_handle(kParent, nullptr, "ubroker.properties", &handle);
        if (r != 0) {
            close_handle(&handle);
            return r;
        }
    } else {
        handle = *context;
        if (!handle.fp) return CFG_NO_MORE_SECTIONS;  // the enumeration already ended
    }
    long r = qorvel::or_on_oom(static_cast<long>(ENOMEM),
                               [&] { return next_section_on(handle, kParent, *name, size); });
    if (r == 0 && !firstOnly) {
        *context = handle;  // the file stays open for the next step
    } else {
        close_handle(&handle);
        if (!firstOnly) *context = handle;
    }
    return r;
}

}  // namespace

extern "C" long serviceEnum_CV(CFGHANDLE* context, unsigned long index, char** name, size_t size) {
    return enumerate(context, index, name, size);
}

extern "C" long getServiceList(char** list, long /*reserved*/, int64_t* count) {
    if (!list || !*list || !count) return EINVAL;
    char* text = *list;
    text[0] = '\0';
    *count = 0;
    char name[kNameSize];
    char* namePtr = name;
    long r = 0;
    for (unsigned long index = 0; (r = enumerate(&SEWA_cv, index, &namePtr, sizeof name)) == 0;
         ++index) {
        std::size_t before = std::strlen(text);
        if (!qorvel::bounded_append(text, SERVICE_LIST_SIZE, name) ||
            !qorvel::bounded_append(text, SERVICE_LIST_SIZE, ",")) {
            text[before] = '\0';  // keep only whole names
            qorvel::config::close_handle(&SEWA_cv);
            r = ENOBUFS;
            break;
        }
        ++*count;
    }
    if (std::size_t n = std::strlen(text); n > 0) text[n - 1] = '\0';  // the final comma
    return r == CFG_NO_MORE_SECTIONS ? 0 : r;
}
