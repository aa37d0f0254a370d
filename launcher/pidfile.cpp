#include "launcher/pidfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "launcher/console.h"
#include "launcher/settings.h"

namespace qorvel {
namespace {

// Written by prepare_pidfile, read by the other steps of the same process.
struct PendingPidfile {
    std::string temporary;  // empty when nothing was prepared
    int fd = -1;
    bool committed = false;
} pending;

int failed(int code, const char* step) {
    if (verbose()) outMessage(code, "Unable to %s pid file (%s)\n", step, settings.pidfile);
    return code;
}

}  // namespace

int prepare_pidfile() {
    if (!settings.pidfile) return 0;
    // ".<name>.XXXXXX" in the same directory, so the rename that publishes it is atomic.
    std::string_view path = settings.pidfile;
    std::size_t slash = path.rfind('/');
    std::size_t name = slash == std::string_view::npos ? 0 : slash + 1;
    std::string temporary(path.substr(0, name));
    temporary += '.';
    temporary.append(path.substr(name));
    temporary += ".XXXXXX";
    int fd = mkostemp(temporary.data(), O_CLOEXEC);
    if (fd == -1) return failed(errno, "create");
    if (fchmod(fd, 0644) != 0) {
        int code = errno;
        close(fd);
        unlink(temporary.c_str());
        return failed(code, "create");
    }
    pending.temporary = std::move(temporary);
    pending.fd = fd;
    return 0;
}

int commit_pidfile() {
    if (pending.fd == -1 || pending.committed) return 0;
    char text[32];
    int length = std::snprintf(text, sizeof text, "%d\n", static_cast<int>(getpid()));
    bool written = write(pending.fd, text, static_cast<std::size_t>(length)) == length;
    int code = written ? 0 : (errno != 0 ? errno : EIO);
    if (close(pending.fd) != 0 && code == 0) code = errno;
    pending.fd = -1;
    if (code == 0 && rename(pending.temporary.c_str(), settings.pidfile) != 0) code = errno;
    if (code != 0) {
        unlink(pending.temporary.c_str());
        pending.temporary.clear();
        return failed(code, "write");
    }
    pending.committed = true;
    trace("Wrote pid file (%s)\n", settings.pidfile);
    return 0;
}

void discard_pidfile() {
    if (pending.temporary.empty()) return;
    if (pending.fd != -1) close(pending.fd);
    unlink(pending.committed ? settings.pidfile : pending.temporary.c_str());
    pending = PendingPidfile{};
}

void remove_pidfile() {
    if (settings.pidfile) unlink(settings.pidfile);
}

}  // namespace qorvel
