#include "launcher/launch_summary.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "launcher/rlimits.h"
#include "launcher/settings.h"

namespace qorvel {
namespace {

// "name (id)", or "(id)" for an id without a name.
std::string named_id(const char* name, unsigned id) {
    std::string text = name ? name : "";
    if (!text.empty()) text += ' ';
    return text.append("(").append(std::to_string(id)).append(")");
}

// The account switched to goes by the name given, since two names may share one id.
std::string user_name(const Credentials& credentials) {
    if (!credentials.user.empty()) return named_id(credentials.user.c_str(), credentials.uid);
    const passwd* entry = getpwuid(credentials.uid);
    return named_id(entry ? entry->pw_name : nullptr, credentials.uid);
}

std::string group_name(gid_t gid) {
    const group* entry = getgrgid(gid);
    return named_id(entry ? entry->gr_name : nullptr, gid);
}

std::string group_list(const std::vector<gid_t>& groups) {
    std::string list;
    for (gid_t gid : groups) {
        if (!list.empty()) list += ',';
        list += std::to_string(gid);
    }
    return list.empty() ? "none" : list;
}

bool daemon_start(const LaunchSettings& launch) { return launch.user[0] != '\0' || launch.daemon; }

// The daemon child sets -r; every other start keeps the mask we inherited.
unsigned file_mask(const LaunchSettings& launch) {
    if (daemon_start(launch) && launch.umask_value >= 0) return launch.umask_value;
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

void print_launch_summary(const LaunchSettings& launch, const Identity& identity) {
    Credentials credentials = credentials_after(launch.user, identity);
    std::unique_ptr<char, decltype(&std::free)> here(getcwd(nullptr, 0), &std::free);
    const char* mode = !daemon_start(launch) ? "foreground"
                       : launch.suspend      ? "daemon, waiting"
                                             : "daemon";
    std::printf("mode: %s\nuser: %s\ngroup: %s\ngroups: %s\numask: %04o\ndirectory: %s\n", mode,
                user_name(credentials).c_str(), group_name(credentials.gid).c_str(),
                group_list(credentials.groups).c_str(), file_mask(launch), here ? here.get() : "?");
    std::printf("stdin: %s\nstdout: %s\nstderr: %s\npid file: %s\nlimits: %s\n",
                redirection(launch.file_stdin.get(), -1).c_str(),
                redirection(launch.file_stdout.get(), launch.oflags_stdout).c_str(),
                redirection(launch.file_stderr.get(), launch.oflags_stderr).c_str(),
                launch.pidfile.empty() ? "none" : launch.pidfile.c_str(),
                describe_rlimits(launch).c_str());
}

}  // namespace qorvel
