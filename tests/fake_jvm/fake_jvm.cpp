// Stands in for the JVM in the launcher's tests. It prints what it was started
// with, one "key=value" line each, so a test can read it back with grep:
//   arg[N]=word, env=NAME=value, cwd=..., umask=0NNN, pid, ppid, sid,
//   uid/euid/gid/egid, groups, its open descriptors (fds=0,1,2), its SIGPIPE
//   disposition (sigpipe=default|ignored), its parent's arguments (parent_args=,
//   NULs as spaces), and "stdin=" lines for every line of its input when its
//   first argument is --read-stdin. With --wait-signals it then prints "ready"
//   and waits up to 20 s, printing "signal=N" for each of TERM, INT, HUP,
//   QUIT, USR1 and USR2 and dying of any but the USRs. It writes "fake_jvm
//   stderr" on standard error and exits with the status given by --exit N.
#include <dirent.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern char** environ;

namespace {

void print_identity() {
    std::cout << "pid=" << getpid() << "\nppid=" << getppid() << "\nsid=" << getsid(0) << '\n';
    std::cout << "uid=" << getuid() << "\neuid=" << geteuid() << "\ngid=" << getgid()
              << "\negid=" << getegid() << '\n';
    gid_t groups[256];
    int count = getgroups(256, groups);
    std::cout << "groups=";
    for (int i = 0; i < count; ++i) std::cout << (i ? "," : "") << groups[i];
    std::cout << '\n';
}

void print_descriptors() {
    DIR* dir = opendir("/proc/self/fd");
    std::string fds;
    for (dirent* entry; dir && (entry = readdir(dir));) {
        if (entry->d_name[0] == '.' || std::atoi(entry->d_name) == dirfd(dir)) continue;
        if (!fds.empty()) fds += ',';
        fds += entry->d_name;
    }
    if (dir) closedir(dir);
    std::cout << "fds=" << fds << '\n';
    struct sigaction pipe;
    sigaction(SIGPIPE, nullptr, &pipe);
    std::cout << "sigpipe=" << (pipe.sa_handler == SIG_IGN ? "ignored" : "default") << '\n';
}

void print_parent_args() {
    std::ifstream in("/proc/" + std::to_string(getppid()) + "/cmdline");
    std::string args((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    for (char& c : args) c = c == '\0' ? ' ' : c;
    std::cout << "parent_args=" << args << '\n';
}

void record_signal(int number) {
    char line[32];
    int length = std::snprintf(line, sizeof line, "signal=%d\n", number);
    [[maybe_unused]] ssize_t written = write(1, line, static_cast<std::size_t>(length));
    if (number == SIGUSR1 || number == SIGUSR2) return;
    signal(number, SIG_DFL);
    raise(number);
}

void wait_for_signals() {
    for (int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGUSR1, SIGUSR2}) {
        signal(number, record_signal);
    }
    std::cout << "ready" << std::endl;
    for (int i = 0; i < 200; ++i) usleep(100000);
}

void print_process_state() {
    char cwd[4096];
    std::cout << "cwd=" << (getcwd(cwd, sizeof cwd) ? cwd : "?") << '\n';
    mode_t mask = umask(0);
    umask(mask);
    std::printf("umask=0%03o\n", static_cast<unsigned>(mask));
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    int status = 0;
    bool read_stdin = false, wait_signals = false;
    for (int i = 0; i < argc; ++i) {
        std::cout << "arg[" << i << "]=" << argv[i] << '\n';
        if (std::strcmp(argv[i], "--read-stdin") == 0) read_stdin = true;
        if (std::strcmp(argv[i], "--wait-signals") == 0) wait_signals = true;
        if (std::strcmp(argv[i], "--exit") == 0 && i + 1 < argc) status = std::atoi(argv[i + 1]);
    }
    for (char** e = environ; *e; ++e) std::cout << "env=" << *e << '\n';
    print_process_state();
    print_identity();
    print_descriptors();
    print_parent_args();
    if (read_stdin) {
        for (std::string line; std::getline(std::cin, line);) std::cout << "stdin=" << line << '\n';
    }
    std::cout.flush();
    if (wait_signals) wait_for_signals();
    std::cerr << "fake_jvm stderr\n";
    return status;
}
