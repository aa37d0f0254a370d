#include "config/file_access.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>

#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel::config {

bool is_regular_file(const char* path) {
    struct stat info;
    return path && stat(path, &info) == 0 && S_ISREG(info.st_mode);
}

bool is_directory_path(const char* path) {
    struct stat info;
    return path && stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

long install_path(char* buffer, std::size_t size) {
    const char* vtx = std::getenv("VTX");
    if (!vtx) return CFG_NOT_FOUND;
    // A cut installation directory would point at some other directory.
    if (bounded_length(vtx, size) >= size) return ENAMETOOLONG;
    bounded_copy(buffer, size, vtx);
    return 0;
}

}  // namespace qorvel::config

extern "C" int is_afile(const char* path) { return qorvel::config::is_regular_file(path); }

extern "C" int is_directory(const char* path) { return qorvel::config::is_directory_path(path); }

extern "C" long getInstallPath(char** pathBuffer, size_t size) {
    return qorvel::config::install_path(*pathBuffer, size);
}
