#include "launcher/password_file.h"

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "launcher/console.h"
#include "launcher/daemon.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

int refuse(int code, const char* file, const char* problem) {
    outMessage(code, "Password file (%s) %s\n", file, problem);
    return kPasswordRefused;
}

// The checks are made on the open file, so it cannot be swapped in between.
const char* unsafe(int fd) {
    struct stat info;
    if (fstat(fd, &info) != 0) return "cannot be examined";
    if (!S_ISREG(info.st_mode)) return "is not a regular file";
    if (info.st_uid != getuid()) return "does not belong to the caller";
    if (info.st_mode & (S_IRWXG | S_IRWXO)) return "may be read or written by group or others";
    return nullptr;
}

}  // namespace

int read_password_file(LaunchSettings& launch) {
    const char* file = launch.passwordFile;
    if (!file || !launch.user[0] || launch.password[0]) return 0;
    int fd = open(file, O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (fd == -1) return refuse(errno, file, "cannot be opened");
    if (const char* problem = unsafe(fd)) {
        close(fd);
        return refuse(0, file, problem);
    }
    char text[kIdentityFieldSize + 1];
    ssize_t length = read(fd, text, sizeof text);
    close(fd);
    std::string_view line(text, length > 0 ? static_cast<std::size_t>(length) : 0);
    line = line.substr(0, line.find('\n'));
    if (line.ends_with('\r')) line.remove_suffix(1);
    bool fits = !line.empty() && bounded_copy(launch.password, line);
    explicit_bzero(text, sizeof text);
    if (!fits) {
        explicit_bzero(launch.password, kIdentityFieldSize);
        return refuse(0, file, line.empty() ? "holds no password" : "holds a password too long");
    }
    trace("Password taken from (%s)\n", file);
    return 0;
}

}  // namespace qorvel
