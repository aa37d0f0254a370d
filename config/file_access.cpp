#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>

#include "qorvel/config.h"
#include "util/bounded_text.h"

extern "C" int is_afile(const char* path) {
    struct stat info;
    return path && stat(path, &info) == 0 && S_ISREG(info.st_mode) ? 1 : 0;
}

extern "C" int is_directory(const char* path) {
    struct stat info;
    return path && stat(path, &info) == 0 && S_ISDIR(info.st_mode) ? 1 : 0;
}

extern "C" long getInstallPath(char** pathBuffer, size_t size) {
    const char* vtx = std::getenv("VTX");
    if (!vtx) return CFG_NOT_FOUND;
    // A cut installation directory would point at some other directory.
    if (qorvel::bounded_length(vtx, size) >= size) return ENAMETOOLONG;
    qorvel::bounded_copy(*pathBuffer, size, vtx);
    return 0;
}
