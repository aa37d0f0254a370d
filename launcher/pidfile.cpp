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
#include "util/safe_open.h"

namespace qorvel {
namespace {

// Written by prepare_pidfile, read by the other steps of the same process.
// Every step works inside `dir`, the directory as prepare_pidfile found it,
// so a link planted later on the way to it cannot move the file.
struct PendingPidfile {
    int dir = -1;
    std::string name;       // the pid file's own name within dir
    std::string temporary;  // the temporary's name within dir; empty when nothing was prepared
    int fd = -1;
    bool committed = false;
} pending;

int failed(int code, const char* step) {
    if (verbose()) outMessage(code, "Unable to %s pid file (%s)\n", step, settings.pidfile);
    return code;
}

// mkostemp cannot follow a link or reuse a file, and the rename that publishes
// the file replaces a link instead of following it: only the directory part of
// the path needs the guarded walk. The temporary is checked to have been made
// in the directory that walk opened.
int make_temporary(std::string_view path, std::size_t name_start) {
    std::string directory(path.substr(0, name_start));
    pending.dir =
        open_guarded(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY, 0);
    if (pending.dir == -1) return errno;
    pending.name = path.substr(name_start);
    std::string temporary = directory + "." + pending.name + ".XXXXXX";
    int fd = mkostemp(temporary.data(), O_CLOEXEC);
    if (fd == -1) return errno;
    pending.fd = fd;
    pending.temporary = temporary.substr(name_start);
    struct stat made, found;
    if (fstat(fd, &made) != 0 ||
        fstatat(pending.dir, pending.temporary.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0 ||
        made.st_dev != found.st_dev || made.st_ino != found.st_ino) {
        unlink(temporary.c_str());
        pending.temporary.clear();
        return EACCES;
    }
    return fchmod(fd, 0644) == 0 ? 0 : errno;
}

}  // namespace

int prepare_pidfile() {
    if (!settings.pidfile) return 0;
    // ".<name>.XXXXXX" in the same directory, so the rename that publishes it is atomic.
    std::string_view path = settings.pidfile;
    std::size_t slash = path.rfind('/');
    int code = make_temporary(path, slash == std::string_view::npos ? 0 : slash + 1);
    if (code == 0) return 0;
    discard_pidfile();
    return failed(code, "create");
}

int commit_pidfile() {
    if (pending.fd == -1 || pending.committed) return 0;
    char text[32];
    int length = std::snprintf(text, sizeof text, "%d\n", static_cast<int>(getpid()));
    bool written = write(pending.fd, text, static_cast<std::size_t>(length)) == length;
    int code = written ? 0 : (errno != 0 ? errno : EIO);
    if (close(pending.fd) != 0 && code == 0) code = errno;
    pending.fd = -1;
    if (code == 0 &&
        renameat(pending.dir, pending.temporary.c_str(), pending.dir, pending.name.c_str()) != 0) {
        code = errno;
    }
    if (code != 0) {
        unlinkat(pending.dir, pending.temporary.c_str(), 0);
        pending.temporary.clear();
        return failed(code, "write");
    }
    pending.committed = true;
    trace("Wrote pid file (%s)\n", settings.pidfile);
    return 0;
}

void discard_pidfile() {
    if (pending.fd != -1) close(pending.fd);
    if (!pending.temporary.empty()) {
        const std::string& made = pending.committed ? pending.name : pending.temporary;
        unlinkat(pending.dir, made.c_str(), 0);
    }
    if (pending.dir != -1) close(pending.dir);
    pending = PendingPidfile{};
}

void remove_pidfile() {
    if (pending.dir != -1) unlinkat(pending.dir, pending.name.c_str(), 0);
}

}  // namespace qorvel
