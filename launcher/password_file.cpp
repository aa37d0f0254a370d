#include "launcher/password_file.h"

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "launcher/console.h"
#include "launcher/daemon.h"
#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

int refuse(int code, const char* problem) {
    outMessage(code, "Password file (%s) %s\n", settings.passwordFile, problem);
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

int read_password_file() {
    if (!settings.passwordFile || !settings.user[0] || settings.password[0]) return 0;
    int fd = open(settings.passwordFile, O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (fd == -1) return refuse(errno, "cannot be opened");
    if (const char* problem = unsafe(fd)) {
        close(fd);
        return refuse(0, problem);
    }
    char text[kIdentityFieldSize + 1];
    ssize_t length = read(fd, text, sizeof text);
    close(fd);
    std::string_view line(text, length > 0 ? static_cast<std::size_t>(length) : 0);
    line = line.substr(0, line.find('\n'));
    if (line.ends_with('\r')) line.remove_suffix(1);
    bool fits = !line.empty() && bounded_copy(settings.password, kIdentityFieldSize, line);
    explicit_bzero(text, sizeof text);
    if (!fits) {
        explicit_bzero(settings.password, kIdentityFieldSize);
        return refuse(0, line.empty() ? "holds no password" : "holds a password too long");
    }
    trace("Password taken from (%s)\n", settings.passwordFile);
    return 0;
}

}  // namespace qorvel
