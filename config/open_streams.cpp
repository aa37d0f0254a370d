#include "config/open_streams.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>
#include <vector>

namespace qorvel::open_streams {
namespace {

struct Opened {
    const CFGHANDLE* handle;
    FILE* stream;
};

// Readers of different records may open files at the same time.
std::mutex lock;
std::vector<Opened> opened;

}  // namespace

void add(const CFGHANDLE* handle, FILE* stream) {
    std::lock_guard guard(lock);
    try {
        opened.push_back({handle, stream});
    } catch (const std::bad_alloc&) {
        // Unrecorded, the stream is only not closed by a later re-open.
    }
}

FILE* take(const CFGHANDLE* handle) {
    FILE* held;  // read as bytes: the field may never have been written
    // NOLINTNEXTLINE(bugprone-sizeof-expression): the pointer itself is what is copied
    std::memcpy(&held, &handle->fp, sizeof held);
    std::lock_guard guard(lock);
    auto it = std::find_if(opened.begin(), opened.end(),
                           [&](const Opened& o) { return o.handle == handle && o.stream == held; });
    if (it == opened.end()) return nullptr;
    opened.erase(it);
    return held;
}

void remove(FILE* stream) {
    std::lock_guard guard(lock);
    std::erase_if(opened, [&](const Opened& o) { return o.stream == stream; });
}

}  // namespace qorvel::open_streams
