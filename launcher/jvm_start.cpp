#include "launcher/jvm_start.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "launcher/console.h"
#include "launcher/jvm_args.h"
#include "launcher/settings.h"
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

// Puts the opened file on descriptor `target`. The opened descriptor stays
// open as well, close-on-exec: the JVM gets the file on `target` alone, and
// cleanup closes it on a failed launch. Descriptors 0 to 2 are always open
// (main sees to it), so `fd` is never `target` itself.
void redirect(int fd, int target, int& kept) {
    kept = fd;
    dup2(fd, target);  // the copy is inherited
}

// Only a regular file may feed the JVM; the opened file is what is checked, so
// nothing can be swapped in between a check and the open.
int redirect_stdin(const char* name) {
    int fd = open_guarded(name, O_RDONLY, 0);
    if (fd == -1 && errno == EACCES) return open_failed("stdin", name);
    struct stat info;
    if (fd == -1 || fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        if (fd != -1) close(fd);
        report("Error accessing stdin redirection file: (%s)\n", name);
        return EINVAL;
    }
    redirect(fd, 0, settings.stdin_fd);
    return 0;
}

int redirect_output(const char* name, int flags, int target, int& kept, const char* stream) {
    int fd = open_guarded(name, flags, static_cast<mode_t>(settings.open_mode));
    if (fd == -1) return open_failed(stream, name);
    redirect(fd, target, kept);
    return 0;
}

// Every file is opened through open_guarded: the launcher often runs as the
// superuser, and a name in /tmp must not lead it to another user's file.
int redirect_streams() {
    if (const char* name = settings.file_stdin.get()) {
        if (int rc = redirect_stdin(name)) return rc;
    }
    if (const char* name = settings.file_stdout.get()) {
        if (int rc =
                redirect_output(name, settings.oflags_stdout, 1, settings.stdout_fd, "stdout")) {
            return rc;
        }
    }
    if (const char* name = settings.file_stderr.get()) {
        if (int rc =
                redirect_output(name, settings.oflags_stderr, 2, settings.stderr_fd, "stderr")) {
            return rc;
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

int start_jvm(int /*count*/, char** tail) {
    trace("FCN: start_jvm() - UNIX, execute the process\n");
    VectorOwner vector;
    if (int rc = create_argv(tail + 1, &vector.argv, tail[0])) return rc;
    show_cmdLine(vector.argv);
    if (int rc = redirect_streams()) return rc;
    restore_signal_defaults();  // SIGPIPE too: ignored while we write the console
    execvp(vector.argv[0], vector.argv);
    int code = errno;
    tell_caller(code, "Error starting JVM (%s), error %d.\n", vector.argv[0], code);
    return code;
}

}  // namespace qorvel
