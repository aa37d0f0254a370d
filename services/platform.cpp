// The library's small platform answers: default directory, host name,
// registry key and default service.
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "qorvel/services.h"
#include "util/bounded_text.h"

namespace {

constexpr std::size_t kCwdSize = 255;

}  // namespace

extern "C" void getdef_dir(char* dir, size_t size) {
    if (!dir || (std::strcmp(dir, ".") != 0 && std::strcmp(dir, "./") != 0)) return;
    char cwd[kCwdSize];
    if (getcwd(cwd, sizeof cwd)) qorvel::bounded_copy(dir, size, cwd);
}

extern "C" int getLocal_HostName(char** buffer, size_t length) {
    if (!buffer || !*buffer) {
        errno = EINVAL;
        return -1;
    }
    return gethostname(*buffer, length);
}

extern "C" long getProductRegKey_CV(void) { return 0; }

extern "C" long getDefault_Service(char** name) {
    if (name && *name) (*name)[0] = '\0';
    return 0;
}
