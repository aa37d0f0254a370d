#include "launcher/control.h"

#include <poll.h>
#include <signal.h>
#include <string.h>
#include <strings.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>

#include "launcher/console.h"
#include "launcher/pidfile.h"

namespace qorvel {
namespace {

constexpr int kPollMilliseconds = 50;  // how often a process without a pidfd is looked at

// "RTMIN", "RTMIN+N", "RTMAX", "RTMAX-N" as `kill -l` lists the real-time signals.
int realtime_number(std::string_view name) {
    int base = 0, sign = 1;
    if (strncasecmp(name.data(), "RTMIN", 5) == 0) {
        base = SIGRTMIN;
    } else if (strncasecmp(name.data(), "RTMAX", 5) == 0) {
        base = SIGRTMAX;
        sign = -1;
    } else {
        return 0;
    }
    std::string_view rest = name.substr(5);
    if (rest.empty()) return base;
    int offset = 0;
    auto [end, error] = std::from_chars(rest.data() + 1, rest.data() + rest.size(), offset);
    if (rest[0] != (sign > 0 ? '+' : '-') || error != std::errc() ||
        end != rest.data() + rest.size()) {
        return 0;
    }
    int number = base + sign * offset;
    return number >= SIGRTMIN && number <= SIGRTMAX ? number : 0;
}

std::string signal_name(int number) {
    const char* name = sigabbrev_np(number);
    return name ? std::string("SIG") + name : "signal " + std::to_string(number);
}

// The row's option as written: "-d" or "--dry-run".
std::string option_text(const OptionUse& use) {
    if (use.row->letter != '\0') return std::string("-") + use.row->letter;
    return "--" + std::string(use.row->name);
}

int bad_combination(const std::string& message) {
    std::fprintf(stderr, "%s: %s\n", program_invocation_name, message.c_str());
    return kBadOption;
}

// A process that ended is a zombie until its parent reaps it, and a zombie
// still takes signals: a pidfd (Linux 5.3) tells the end itself. Without one
// the process is looked at until kill finds it gone.
class ProcessEnd {
  public:
    explicit ProcessEnd(pid_t pid)
        : pid_(pid), fd_(static_cast<int>(syscall(SYS_pidfd_open, pid, 0))) {}
    ~ProcessEnd() {
        if (fd_ != -1) close(fd_);
    }
    ProcessEnd(const ProcessEnd&) = delete;
    ProcessEnd& operator=(const ProcessEnd&) = delete;

    // Waits up to `seconds`; true once the process has ended.
    bool wait(int seconds) const {
        using Clock = std::chrono::steady_clock;
        Clock::time_point deadline = Clock::now() + std::chrono::seconds(seconds);
        for (;;) {
            if (ended(0)) return true;
            auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
            if (left.count() <= 0) return false;
            // With a pidfd poll wakes at the end; without one it paces the looks.
            ended(static_cast<int>(
                fd_ != -1 ? left.count() : std::min<long long>(left.count(), kPollMilliseconds)));
        }
    }

  private:
    bool ended(int milliseconds) const {
        pollfd end{fd_, POLLIN, 0};
        if (fd_ != -1) return poll(&end, 1, milliseconds) == 1;
        if (milliseconds > 0) poll(nullptr, 0, milliseconds);
        return kill(pid_, 0) == -1 && errno == ESRCH;
    }

    pid_t pid_;
    int fd_;
};

// Sends `number` to `pid`'s group when it leads one, else to `pid` alone.
// Returns 0, or the errno (ESRCH: it has ended).
int send(pid_t pid, int number) {
    pid_t target = getpgid(pid) == pid ? -pid : pid;
    return kill(target, number) == 0 ? 0 : errno;
}

int stopped(const LaunchSettings& launch, pid_t pid, const char* how) {
    remove_pidfile_of(launch.pidfile, pid);
    report("Stopped pid %d (%s)\n", static_cast<int>(pid), how);
    return 0;
}

int stop(const LaunchSettings& launch, pid_t pid) {
    ProcessEnd end(pid);
    std::string first = signal_name(launch.stopSignal);
    int code = send(pid, launch.stopSignal);
    if (code == ESRCH || (code == 0 && end.wait(launch.stopTimeout))) {
        return stopped(launch, pid, first.c_str());
    }
    if (code != 0) {
        if (verbose()) outMessage(code, "Unable to send %s to pid %d\n", first.c_str(), pid);
        return kStopFailed;
    }
    report("Pid %d still runs %d s after %s: sending SIGKILL\n", static_cast<int>(pid),
           launch.stopTimeout, first.c_str());
    code = send(pid, SIGKILL);
    if (code == ESRCH || (code == 0 && end.wait(std::max(launch.stopTimeout, 1)))) {
        return stopped(launch, pid, "SIGKILL");
    }
    if (code != 0) {
        if (verbose()) outMessage(code, "Unable to send SIGKILL to pid %d\n", pid);
    } else {
        report("Pid %d still runs after SIGKILL\n", static_cast<int>(pid));
    }
    return kStopFailed;
}

int unreadable(const LaunchSettings& launch, int code, int status) {
    if (verbose()) outMessage(code, "Unable to read pid file (%s)\n", launch.pidfile.c_str());
    return status;
}

int stop_command(const LaunchSettings& launch) {
    PidfileOwner owner = find_owner(launch.pidfile);
    if (owner.error != 0) return unreadable(launch, owner.error, kStopFailed);
    if (!owner.exists) {
        report("Nothing running: no pid file (%s)\n", launch.pidfile.c_str());
        return 0;
    }
    if (owner.pid == 0) {
        report("Nothing running: pid file (%s) names no running process\n", launch.pidfile.c_str());
        return 0;
    }
    return stop(launch, owner.pid);
}

int status_command(const LaunchSettings& launch) {
    PidfileOwner owner = find_owner(launch.pidfile);
    const char* file = launch.pidfile.c_str();
    if (owner.error != 0) return unreadable(launch, owner.error, kStatusUnknown);
    if (!owner.exists) {
        std::printf("not running: no pid file (%s)\n", file);
        return kStatusNoFile;
    }
    if (owner.pid == 0) {
        std::printf("not running: pid file (%s) names no running process\n", file);
        return kStatusStale;
    }
    std::printf("running (pid %d)\n", static_cast<int>(owner.pid));
    return kStatusRunning;
}

}  // namespace

int signal_number(const char* name) {
    std::string_view word = name;
    if (strncasecmp(name, "SIG", 3) == 0) word.remove_prefix(3);
    if (word.empty()) return 0;
    for (int number = 1; number < SIGRTMIN; ++number) {
        const char* known = sigabbrev_np(number);
        if (known && strcasecmp(known, word.data()) == 0) return number;
    }
    return realtime_number(word);
}

int check_control_options(const OptionParser& parser, int argc, char* const* argv,
                          const LaunchSettings& launch) {
    std::string command = launch.control == Control::kStop ? "--stop" : "--status";
    bool stop = false, status = false;
    bool stop_only = false;  // --timeout or --signal
    for (const OptionUse& use : parser.uses()) {
        std::string_view name = use.row ? use.row->name : "";
        bool extra = name == "timeout" || name == "signal";
        stop |= name == "stop";
        status |= name == "status";
        stop_only |= extra;
        bool allowed = name == "stop" || name == "status" || name == "pidfile" ||
                       (extra && launch.control == Control::kStop);
        if (use.row && launch.control != Control::kLaunch && !allowed) {
            return bad_combination(command + " takes no " + option_text(use));
        }
    }
    if (launch.control == Control::kLaunch) {
        return stop_only ? bad_combination("--timeout and --signal are for --stop only") : 0;
    }
    if (stop && status) return bad_combination("--stop and --status exclude each other");
    if (launch.pidfile.empty()) return bad_combination(command + " needs --pidfile=FILE");
    if (parser.command() < argc) {
        return bad_combination(command + " takes no command: (" + argv[parser.command()] + ")");
    }
    return 0;
}

int run_control(const LaunchSettings& launch) {
    return launch.control == Control::kStop ? stop_command(launch) : status_command(launch);
}

}  // namespace qorvel
