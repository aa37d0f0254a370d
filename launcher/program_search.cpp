#include "launcher/program_search.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace qorvel {
namespace {

int executable(const std::string& path) {
    struct stat info;
    if (stat(path.c_str(), &info) != 0) return errno;
    return S_ISREG(info.st_mode) && access(path.c_str(), X_OK) == 0 ? 0 : EACCES;
}

// PATH, or the system's default search path when it is unset, as execvp takes it.
std::string search_path() {
    if (const char* path = std::getenv("PATH")) return path;
    std::string path(confstr(_CS_PATH, nullptr, 0), '\0');
    confstr(_CS_PATH, path.data(), path.size());
    path.resize(std::strlen(path.c_str()));
    return path;
}

}  // namespace

int find_program(const char* name) {
    if (name[0] == '\0') return ENOENT;
    if (std::strchr(name, '/')) return executable(name);
    std::string path = search_path();
    std::string_view rest = path;
    int code = ENOENT;
    // execvp goes on past a directory where the name is missing or not
    // executable, and reports EACCES when it saw the name only unusable.
    for (bool more = true; more;) {
        std::size_t colon = rest.find(':');
        more = colon != std::string_view::npos;
        std::string_view directory = rest.substr(0, colon);
        rest.remove_prefix(more ? colon + 1 : rest.size());
        int rc = executable((directory.empty() ? "." : std::string(directory)) + "/" + name);
        if (rc == 0) return 0;
        if (rc == EACCES) code = EACCES;
    }
    return code;
}

}  // namespace qorvel
