#include "launcher/jvm_start.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "launcher/console.h"
#include "launcher/jvm_args.h"
#include "util/safe_open.h"

namespace qorvel {
namespace {

// Owns the argument vector on every path that does not reach exec.
struct VectorOwner {
    char** argv = nullptr;
    ~VectorOwner() { destroy_argv(argv); }
};

int open_failed(const char* stream, const char* name) {
    int code = errno;
    report("Error opening %s redirection file: (%s), error %d\n", stream, name, code);
    return code;
}

// Permission bits of a created output file, less the file-creation mask.
constexpr mode_t kOpenMode = 0100664;

// One redirection as the options set it.
struct Stream {
    const char* name;  // nullptr: not redirected
    int flags;
    int target;
    const char* label;
};

// Only a regular file may feed the JVM; the opened file is what is checked, so
// nothing can be swapped in between a check and the open. Returns the
// descriptor, or -1 with the code in `code`, reported.
int open_stdin(const char* name, int& code) {
    int fd = open_guarded(name, O_RDONLY, 0);
    if (fd == -1 && errno == EACCES) {
        code = open_failed("stdin", name);
        return -1;
    }
    struct stat info;
    if (fd == -1 || fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        if (fd != -1) close(fd);
        report("Error accessing stdin redirection file: (%s)\n", name);
        code = EINVAL;
        return -1;
    }
    return fd;
}

int open_stream(const Stream& stream, int& code) {
    if (stream.target == 0) return open_stdin(stream.name, code);
    int fd = open_guarded(stream.name, stream.flags, kOpenMode);
    if (fd == -1) code = open_failed(stream.label, stream.name);
    return fd;
}

// An output file that is not there yet must not be made by a check: the
// directory that would hold it must let us make it instead.
int check_creatable(const Stream& stream) {
    std::string_view path = stream.name;
    std::size_t slash = path.rfind('/');
    std::string directory(slash == std::string_view::npos ? "." : path.substr(0, slash + 1));
    int dir = open_guarded(directory.c_str(), O_RDONLY | O_DIRECTORY, 0);
    bool usable = dir != -1 && faccessat(dir, ".", W_OK | X_OK, AT_EACCESS) == 0;
    int code = usable ? 0 : open_failed(stream.label, stream.name);
    if (dir != -1) close(dir);
    return code;
}

// Opens each configured file in the order input, output, error, and puts it
// on its descriptor; the opened descriptor stays open too, close-on-exec, so
// the JVM gets the file on its standard number alone (an exit closes it). Descriptors 0 to 2 are
// always open (main sees to it), so an opened file never lands on one of them.
// With `check` nothing is redirected, created or changed: an existing file is
// opened without O_TRUNC and closed again. Every file is opened through
// open_guarded: the launcher often runs as the superuser, and a name in /tmp
// must not lead it to another user's file.
int open_streams(const LaunchSettings& launch, bool check) {
    const Stream streams[] = {
        {launch.file_stdin.get(), O_RDONLY, 0, "stdin"},
        {launch.file_stdout.get(), launch.oflags_stdout, 1, "stdout"},
        {launch.file_stderr.get(), launch.oflags_stderr, 2, "stderr"},
    };
    for (const Stream& stream : streams) {
        if (!stream.name) continue;
        struct stat info;
        if (check && stream.target != 0 && stat(stream.name, &info) != 0 && errno == ENOENT) {
            if (int code = check_creatable(stream)) return code;
            continue;
        }
        int code = 0;
        int fd = open_stream(stream, code);
        if (fd == -1) return code;
        if (check) {
            close(fd);
        } else {
            dup2(fd, stream.target);  // the copy is inherited
        }
    }
    return 0;
}

// An ignored signal stays ignored across exec, and so does the blocked mask:
// a caller that ignored TERM or blocked HUP would leave the JVM deaf to them.
void restore_signal_defaults() {
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action {};
        if (sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
            signal(number, SIG_DFL);
        }
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

}  // namespace

int start_jvm(LaunchSettings& launch, int /*count*/, char** tail) {
    trace("FCN: start_jvm() - UNIX, execute the process\n");
    VectorOwner vector;
    if (int rc = create_argv(tail + 1, &vector.argv, tail[0], launch.jvm)) return rc;
    show_cmdLine(vector.argv);
    if (int rc = open_streams(launch, false)) return rc;
    restore_signal_defaults();  // SIGPIPE too: ignored while we write the console
    execvp(vector.argv[0], vector.argv);
    int code = errno;
    tell_caller(code, "Error starting JVM (%s), error %d.\n", vector.argv[0], code);
    return code;
}

int check_streams(const LaunchSettings& launch) { return open_streams(launch, true); }

}  // namespace qorvel
