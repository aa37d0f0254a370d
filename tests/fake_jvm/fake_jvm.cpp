// Stands in for the JVM in the launcher's tests. It prints what it was started
// with, one "key=value" line each, so a test can read it back with grep:
//   arg[N]=word, env=NAME=value, cwd=..., umask=0NNN, pid, ppid, sid,
//   uid/euid/gid/egid, groups, and "stdin=" lines for every line of its input
//   when its first argument is --read-stdin. It writes "fake_jvm stderr" on
//   standard error and exits with the status given by --exit N (default 0).
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
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
    bool read_stdin = false;
    for (int i = 0; i < argc; ++i) {
        std::cout << "arg[" << i << "]=" << argv[i] << '\n';
        if (std::strcmp(argv[i], "--read-stdin") == 0) read_stdin = true;
        if (std::strcmp(argv[i], "--exit") == 0 && i + 1 < argc) status = std::atoi(argv[i + 1]);
    }
    for (char** e = environ; *e; ++e) std::cout << "env=" << *e << '\n';
    print_process_state();
    print_identity();
    if (read_stdin) {
        for (std::string line; std::getline(std::cin, line);) std::cout << "stdin=" << line << '\n';
    }
    std::cout.flush();
    std::cerr << "fake_jvm stderr\n";
    return status;
}
