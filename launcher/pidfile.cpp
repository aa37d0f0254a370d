#include "launcher/pidfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string_view>

#include "launcher/console.h"
#include "launcher/environment.h"
#include "util/safe_open.h"

namespace qorvel {
namespace {

// Written by prepare_pidfile, read by the other steps of the same process.
// Every step works inside `dir`, the directory as prepare_pidfile found it,
// so a link planted later on the way to it cannot move the file.
struct PendingPidfile {
    std::string path;  // the pid file as --pidfile named it, made absolute
    int dir = -1;
    std::string directory;  // the path of dir as given, with its trailing '/'
    std::string name;       // the pid file's own name within dir
    std::string temporary;  // the temporary's name within dir; empty when nothing was prepared
    int fd = -1;
    bool committed = false;
} pending;

int failed(int code, const char* step, const std::string& file) {
    if (verbose()) outMessage(code, "Unable to %s pid file (%s)\n", step, file.c_str());
    return code;
}

int open_directory(const std::string& file) {
    pending.path = file;
    std::string_view path = pending.path;
    std::size_t slash = path.rfind('/');
    std::size_t name_start = slash == std::string_view::npos ? 0 : slash + 1;
    pending.directory = path.substr(0, name_start);
    pending.name = path.substr(name_start);
    const char* directory = pending.directory.empty() ? "." : pending.directory.c_str();
    pending.dir = open_guarded(directory, O_RDONLY | O_DIRECTORY, 0);
    return pending.dir == -1 ? errno : 0;
}

// When `pid` started, in seconds since the epoch; 0 when unknown.
long started_at(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line) || line.rfind(')') == std::string::npos) return 0;
    std::istringstream fields(line.substr(line.rfind(')') + 2));
    std::string field;
    for (int i = 3; i < 22 && fields >> field;) ++i;  // state is field 3, start time 22
    unsigned long long ticks = 0;
    std::ifstream boot("/proc/stat");
    std::string word;
    long boot_time = 0;
    while (boot >> word && word != "btime") {
    }
    if (!(fields >> ticks) || !(boot >> boot_time)) return 0;
    return boot_time +
           static_cast<long>(ticks / static_cast<unsigned long long>(sysconf(_SC_CLK_TCK)));
}

// The id on the first line of `name`, or 0 when there is none to be read or
// when the process it names started after the file was written: the id was
// reused, and signalling that process would hit a stranger. `open_error`
// gets the errno of an open that failed.
pid_t pid_in(const std::string& name, int* open_error = nullptr) {
    int fd = openat(pending.dir, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd == -1 && open_error) *open_error = errno;
    if (fd == -1) return 0;
    char text[24];
    ssize_t length = read(fd, text, sizeof text);
    struct stat info {};
    bool dated = fstat(fd, &info) == 0;
    close(fd);
    if (length <= 0) return 0;
    const char* end = text + length;
    pid_t pid = 0;
    auto [stop, error] = std::from_chars(text, end, pid);
    bool whole = error == std::errc() && (stop == end || *stop == '\n');
    if (!whole || pid <= 0) return 0;
    constexpr long kClockSlack = 2;  // the boot time /proc gives is rounded to the second
    return dated && started_at(pid) > info.st_mtime + kClockSlack ? 0 : pid;
}

// Another process the pid file names and that still runs, or 0 for a stale
// file (our own id can only be a reused one).
pid_t running_owner() {
    pid_t pid = pid_in(pending.name);
    return pid != 0 && pid != getpid() ? query_PID(pid) : 0;
}

int already_running(pid_t owner, const std::string& file) {
    if (verbose()) {
        outMessage(0, "Pid file (%s): already running (pid %d)\n", file.c_str(),
                   static_cast<int>(owner));
    }
    return kAlreadyRunning;
}

// mkostemp cannot follow a link or reuse a file, and the rename that publishes
// the file replaces a link instead of following it: only the directory part of
// the path needs the guarded walk. The temporary is checked to have been made
// in the directory that walk opened.
int make_temporary() {
    std::string temporary = pending.directory + "." + pending.name + ".XXXXXX";
    int fd = mkostemp(temporary.data(), O_CLOEXEC);
    if (fd == -1) return errno;
    pending.fd = fd;
    pending.temporary = temporary.substr(pending.directory.size());
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

void remove_if_naming(pid_t owner) {
    if (pending.dir != -1 && pid_in(pending.name) == owner) {
        unlinkat(pending.dir, pending.name.c_str(), 0);
    }
}

}  // namespace

std::string absolute_pidfile(const char* name) {
    if (name[0] == '/') return name;
    std::unique_ptr<char, decltype(&std::free)> here(getcwd(nullptr, 0), &std::free);
    return here ? std::string(here.get()) + "/" + name : name;
}

int prepare_pidfile(const std::string& file) {
    if (file.empty()) return 0;
    int code = open_directory(file);
    if (pid_t owner = code == 0 ? running_owner() : 0) {
        discard_pidfile();
        return already_running(owner, file);
    }
    // ".<name>.XXXXXX" in the same directory, so the rename that publishes it is atomic.
    if (code == 0) code = make_temporary();
    if (code == 0) return 0;
    discard_pidfile();
    return failed(code, "create", file);
}

int check_pidfile(const std::string& file) {
    if (file.empty()) return 0;
    int code = open_directory(file);
    pid_t owner = code == 0 ? running_owner() : 0;
    if (code == 0 && faccessat(pending.dir, ".", W_OK | X_OK, AT_EACCESS) != 0) code = errno;
    discard_pidfile();
    if (owner != 0) return already_running(owner, file);
    return code == 0 ? 0 : failed(code, "create", file);
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
        return failed(code, "write", pending.path);
    }
    pending.committed = true;
    trace("Wrote pid file (%s)\n", pending.path.c_str());
    return 0;
}

void leave_pidfile_to_child() {
    if (pending.fd != -1) close(pending.fd);
    pending.fd = -1;
}

void discard_pidfile() {
    if (pending.fd != -1) close(pending.fd);
    if (pending.committed) {
        remove_if_naming(getpid());
    } else if (!pending.temporary.empty()) {
        unlinkat(pending.dir, pending.temporary.c_str(), 0);
    }
    if (pending.dir != -1) close(pending.dir);
    pending = PendingPidfile{};
}

void remove_pidfile(pid_t child) { remove_if_naming(child); }

PidfileOwner find_owner(const std::string& file) {
    PidfileOwner owner;
    owner.error = open_directory(file);
    if (owner.error == ENOENT) owner.error = 0;  // no directory, no file
    if (owner.error == 0 && pending.dir != -1) {
        int open_error = 0;
        pid_t pid = pid_in(pending.name, &open_error);
        owner.exists = open_error != ENOENT;
        if (owner.exists) owner.error = open_error;
        if (pid != 0 && pid != getpid()) owner.pid = query_PID(pid);
    }
    discard_pidfile();
    return owner;
}

void remove_pidfile_of(const std::string& file, pid_t pid) {
    if (open_directory(file) == 0) remove_if_naming(pid);
    discard_pidfile();
}

}  // namespace qorvel
