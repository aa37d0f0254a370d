#include "util/safe_open.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string>
#include <utility>

namespace qorvel {
namespace {

constexpr int kMaxLinks = 40;  // the kernel's own limit per resolution

class Descriptor {
  public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor() {
        if (fd_ != -1) close(fd_);
    }
    int get() const { return fd_; }
    int release() { return std::exchange(fd_, -1); }

  private:
    int fd_;
};

int fail(int code) {
    errno = code;
    return -1;
}

bool refuse(int code) {
    errno = code;
    return false;
}

Descriptor start_of(const std::string& path) {
    return Descriptor(open(path[0] == '/' ? "/" : ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
}

// In a sticky directory anyone may write, an entry belonging to someone other
// than us or the directory's owner was planted there and must not steer us.
bool trusted(int dir, const struct stat& entry) {
    struct stat info;
    if (fstat(dir, &info) != 0) return false;
    if ((info.st_mode & (S_ISVTX | S_IWOTH)) != (S_ISVTX | S_IWOTH)) return true;
    return entry.st_uid == geteuid() || entry.st_uid == info.st_uid;
}

// Takes the next component off `rest`. A trailing slash leaves "." behind, so
// the name before it is entered as a directory, as open would.
std::string next_component(std::string& rest) {
    std::size_t start = rest.find_first_not_of('/');
    if (start == std::string::npos) {
        rest.clear();
        return ".";
    }
    std::size_t end = rest.find('/', start);
    std::string name = rest.substr(start, end - start);
    rest = end == std::string::npos ? "" : rest.substr(end);
    if (!rest.empty() && rest.find_first_not_of('/') == std::string::npos) rest = ".";
    return name;
}

// Puts the link's target in front of what is left to resolve.
bool follow(Descriptor& dir, const char* name, const struct stat& link, std::string& rest,
            int& links) {
    if (++links > kMaxLinks) return refuse(ELOOP);
    if (!trusted(dir.get(), link)) return refuse(EACCES);
    std::string target(PATH_MAX, '\0');
    ssize_t length = readlinkat(dir.get(), name, target.data(), target.size());
    if (length < 0) return false;
    if (static_cast<std::size_t>(length) == target.size()) return refuse(ENAMETOOLONG);
    target.resize(static_cast<std::size_t>(length));
    rest = rest.empty() ? target : target + "/" + rest;
    if (target[0] == '/') dir = start_of(target);
    return dir.get() != -1;
}

// Opens the last component; a file planted between the check and the open is
// caught by checking the opened descriptor again. O_NONBLOCK keeps a FIFO from
// holding us up before it can be refused.
int open_last(const Descriptor& dir, const char* name, int flags, mode_t mode) {
    Descriptor file(openat(dir.get(), name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, mode));
    if (file.get() == -1) return -1;
    struct stat info;
    if (fstat(file.get(), &info) != 0) return -1;
    if ((flags & O_CREAT) && !trusted(dir.get(), info)) return fail(EACCES);
    if (!(flags & O_NONBLOCK)) fcntl(file.get(), F_SETFL, fcntl(file.get(), F_GETFL) & ~O_NONBLOCK);
    return file.release();
}

// open_guarded, which may run out of memory for the path's pieces.
int resolve_and_open(const char* path, int flags, mode_t mode) {
    std::string rest = path != nullptr ? path : "";
    if (rest.empty()) return fail(ENOENT);
    Descriptor dir = start_of(rest);
    int links = 0;
    while (dir.get() != -1) {
        std::string name = next_component(rest);
        struct stat entry;
        bool exists = fstatat(dir.get(), name.c_str(), &entry, AT_SYMLINK_NOFOLLOW) == 0;
        if (!exists && (errno != ENOENT || !rest.empty())) return -1;
        bool last = rest.empty();
        if (exists && S_ISLNK(entry.st_mode) && !(last && (flags & O_NOFOLLOW))) {
            if (!follow(dir, name.c_str(), entry, rest, links)) return -1;
            continue;
        }
        if (last) {
            if (exists && (flags & O_CREAT) && !trusted(dir.get(), entry)) return fail(EACCES);
            return open_last(dir, name.c_str(), flags, mode);
        }
        dir = Descriptor(
            openat(dir.get(), name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    }
    return -1;
}

}  // namespace

// Its callers include the library's C functions: no exception may leave it.
int open_guarded(const char* path, int flags, mode_t mode) {
    try {
        return resolve_and_open(path, flags, mode);
    } catch (const std::bad_alloc&) {
        return fail(ENOMEM);
    }
}

int open_private(const char* path, int flags) {
    Descriptor file(open_guarded(path, (flags & ~O_TRUNC) | O_CREAT | O_NOFOLLOW, 0600));
    if (file.get() == -1) return -1;
    struct stat info;
    if (fstat(file.get(), &info) != 0) return -1;
    if (!S_ISREG(info.st_mode) || info.st_uid != geteuid() || info.st_nlink != 1) {
        return fail(EPERM);
    }
    if ((flags & O_TRUNC) && ftruncate(file.get(), 0) != 0) return -1;
    return file.release();
}

}  // namespace qorvel
