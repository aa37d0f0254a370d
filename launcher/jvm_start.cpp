#include "launcher/jvm_start.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>

#include "launcher/console.h"
#include "launcher/jvm_args.h"
#include "launcher/settings.h"
#include "qorvel/config.h"

namespace qorvel {
namespace {

// Owns the argument vector on every path that does not reach exec.
struct VectorOwner {
    char** argv = nullptr;
    ~VectorOwner() { destroy_argv(argv); }
};

// Opens `name` and puts it on descriptor `target`. The opened descriptor stays
// open as well, close-on-exec: the JVM gets the file on `target` alone, and
// cleanup closes it on a failed launch.
int redirect(const char* name, int flags, int target, int& fd, const char* stream) {
    fd = open(name, flags | O_CLOEXEC, settings.open_mode);
    if (fd == -1) {
        int code = errno;
        report("Error opening %s redirection file: (%s), error %d\n", stream, name, code);
        return code;
    }
    // Started with `target` closed, open hands us `target` itself; closing it
    // then would lose the file.
    if (fd == target) {
        fcntl(fd, F_SETFD, 0);
    } else {
        close(target);
        dup2(fd, target);  // the copy is inherited
    }
    return 0;
}

int redirect_streams() {
    if (const char* name = settings.file_stdin.get()) {
        // Only a regular file may feed the JVM: a directory or a device is refused unopened.
        if (!is_afile(name)) {
            report("Error accessing stdin redirection file: (%s)\n", name);
            return EINVAL;
        }
        if (int rc = redirect(name, O_RDONLY, 0, settings.stdin_fd, "stdin")) return rc;
    }
    if (const char* name = settings.file_stdout.get()) {
        if (int rc = redirect(name, settings.oflags_stdout, 1, settings.stdout_fd, "stdout")) {
            return rc;
        }
    }
    if (const char* name = settings.file_stderr.get()) {
        if (int rc = redirect(name, settings.oflags_stderr, 2, settings.stderr_fd, "stderr")) {
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
    return errno;
}

}  // namespace qorvel
