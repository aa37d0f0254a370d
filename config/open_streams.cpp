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
    int fd;  // so that a stream closed behind the library's back is not taken for another
    std::shared_ptr<config::File> file;
};

bool same_file(const Opened& opened, FILE* stream) {
    return opened.stream == stream && opened.fd == fileno(stream);
}

// Readers of different records may open files at the same time.
std::mutex lock;
std::vector<Opened> opened;

}  // namespace

void add(const CFGHANDLE* handle, FILE* stream, std::string_view path) {
    try {
        std::shared_ptr<config::File> file = config::File::over(stream, path);
        std::lock_guard guard(lock);
        opened.push_back({handle, stream, fileno(stream), std::move(file)});
    } catch (const std::bad_alloc&) {
        // Unrecorded, the stream is only not closed by a later re-open, and
        // each call reads the file afresh.
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


std::shared_ptr<config::File> file_of(FILE* stream, std::string_view path) {
    {
        std::lock_guard guard(lock);
        auto it = std::find_if(opened.begin(), opened.end(),
                               [&](const Opened& o) { return same_file(o, stream); });
        if (it != opened.end()) return it->file;
    }
    return config::File::over(stream, path);
}

}  // namespace qorvel::open_streams
