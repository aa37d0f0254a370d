#include "launcher/launch_summary.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "launcher/settings.h"

namespace qorvel {
namespace {

// The account switched to goes by the name given, since two names may share one id.
std::string user_name(const Credentials& credentials) {
    std::string name = credentials.user;
    if (const passwd* entry = name.empty() ? getpwuid(credentials.uid) : nullptr) {
        name = entry->pw_name;
    }
    return (name.empty() ? "" : name + " ") + "(" + std::to_string(credentials.uid) + ")";
}

std::string group_name(gid_t gid) {
    const group* entry = getgrgid(gid);
    return (entry ? std::string(entry->gr_name) + " " : "") + "(" + std::to_string(gid) + ")";
}

std::string group_list(const std::vector<gid_t>& groups) {
    std::string list;
    for (gid_t gid : groups) list += (list.empty() ? "" : ",") + std::to_string(gid);
    return list.empty() ? "none" : list;
}

bool daemon_start() { return settings.user[0] != '\0' || (settings.fOption & DAEMON_START); }

// The daemon child sets -r; every other start keeps the mask we inherited.
unsigned file_mask() {
    if (daemon_start() && settings.umask_value >= 0) return settings.umask_value;
    mode_t inherited = umask(0);
    umask(inherited);
    return inherited;
}

std::string redirection(const char* name, int flags) {
    if (!name) return "inherited";
    if (flags == -1) return name;
    return std::string(name) + (flags == OFLAGS_APPEND ? " (append)" : " (create)");
}

}  // namespace

void print_launch_summary(const Identity& identity) {
    Credentials credentials = credentials_after(settings.user, identity);
    std::unique_ptr<char, decltype(&std::free)> here(getcwd(nullptr, 0), &std::free);
    const char* mode = !daemon_start()                            ? "foreground"
                       : (settings.fOption & SUSPEND_AFTER_START) ? "daemon, waiting"
                                                                  : "daemon";
    std::printf("mode: %s\nuser: %s\ngroup: %s\ngroups: %s\numask: %04o\ndirectory: %s\n", mode,
                user_name(credentials).c_str(), group_name(credentials.gid).c_str(),
                group_list(credentials.groups).c_str(), file_mask(), here ? here.get() : "?");
    std::printf("stdin: %s\nstdout: %s\nstderr: %s\npid file: %s\n",
                redirection(settings.file_stdin.get(), -1).c_str(),
                redirection(settings.file_stdout.get(), settings.oflags_stdout).c_str(),
                redirection(settings.file_stderr.get(), settings.oflags_stderr).c_str(),
                settings.pidfile.empty() ? "none" : settings.pidfile.c_str());
}

}  // namespace qorvel
