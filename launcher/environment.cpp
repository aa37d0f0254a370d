#include "launcher/environment.h"

#include <signal.h>

#include <cerrno>
#include <cstdlib>

#include "launcher/console.h"
#include "launcher/env_lines.h"
#include "util/bounded_text.h"

extern char** environ;

namespace qorvel {
namespace {

// putenv keeps a pointer to env_path, so all three live as long as the process.
char env_jre[1024];
char env_vtx[1024];
char env_path[4096];

// A cut directory would put some other directory on the PATH: refuse instead.
int refuse_long(const char* name, int code) {
    report("Unable to add JAVA and VTX directories to PATH: %s is too long\n", name);
    return code;
}

}  // namespace

int prefix_path() {
    const char* path = std::getenv("PATH");
    if (path == nullptr) return 0;  // nothing to prefix, nothing required

    const char* jre = std::getenv("JREHOME");
    if (jre == nullptr) {
        report(
            "Unabled to get JREHOME environment variable. This is required for proper "
            "operation\n");
        report(
            "Hint: JREHOME names the Java runtime's directory, the one holding bin/java; "
            "with PATH unset neither JREHOME nor VTX is needed\n");
        return kNoJreHome;
    }
    if (!bounded_format(env_jre, sizeof env_jre, "%s%c%s", jre, '/', "bin")) {
        return refuse_long("JREHOME", kNoJreHome);
    }
    const char* vtx = std::getenv("VTX");
    if (vtx == nullptr) {
        report(
            "Unabled to get VTX environment variable. This is required for proper "
            "operation\n");
        report(
            "Hint: VTX names the installation's directory, the one holding bin, lib and "
            "properties; with PATH unset neither JREHOME nor VTX is needed\n");
        return kNoVtx;
    }
    if (!bounded_format(env_vtx, sizeof env_vtx, "%s%c%s%c%s%c%s", vtx, '/', "bin", ':', vtx, '/',
                        "lib")) {
        return refuse_long("VTX", kNoVtx);
    }
    trace("Adding JAVA (%s) and VTX (%s) directories to beginning of PATH\n", env_jre, env_vtx);
    if (!bounded_format(env_path, sizeof env_path, "%s=%s%c%s%c%s", "PATH", env_jre, ':', env_vtx,
                        ':', path)) {
        return refuse_long("PATH", kNoVtx);
    }
    putenv(env_path);
    return 0;
}

void dump_Env() {
    if (!console.fDebug) return;
    trace("FCN: dump_Env() - Environment Variables defined for this process\n");
    for (char** entry = environ; *entry != nullptr; ++entry) {
        trace("env: (%s).\n", shown_entry(*entry).c_str());
    }
    trace("dump_Env() - complete.\n");
}

pid_t query_PID(pid_t pid) {
    if (kill(pid, 0) == 0 || errno == EPERM) return pid;
    return 0;
}

}  // namespace qorvel
