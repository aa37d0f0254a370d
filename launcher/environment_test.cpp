#include "launcher/environment.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

struct PathCase {
    const char* name;
    const char* path;  // nullptr: unset
    const char* jre;
    const char* vtx;
    int rc;
    const char* expected;  // PATH afterwards, nullptr: unset
};

void set_or_unset(const char* name, const char* value) {
    if (value) {
        setenv(name, value, 1);
    } else {
        unsetenv(name);
    }
}

TEST(PrefixPath, PutsRuntimeAndInstallationFirst) {
    const std::string long_home(1100, 'j');
    const PathCase cases[] = {
        {"prefixed", "/usr/bin", "/opt/jre", "/opt/app", 0,
         "/opt/jre/bin:/opt/app/bin:/opt/app/lib:/usr/bin"},
        {"unset_path_needs_nothing", nullptr, nullptr, nullptr, 0, nullptr},
        {"jrehome_required", "/usr/bin", nullptr, "/opt/app", kNoJreHome, "/usr/bin"},
        {"vtx_required", "/usr/bin", "/opt/jre", nullptr, kNoVtx, "/usr/bin"},
        {"empty_values_taken_as_they_are", "", "", "", 0, "/bin:/bin:/lib:"},
        {"too_long_jrehome_refused", "/usr/bin", long_home.c_str(), "/opt/app", kNoJreHome,
         "/usr/bin"},
    };
    const char* saved = std::getenv("PATH");
    std::string saved_path = saved ? saved : "";
    for (const PathCase& c : cases) {
        settings = LaunchSettings{};
        bounded_copy(settings.outputDesc, "none");
        set_or_unset("PATH", c.path);
        set_or_unset("JREHOME", c.jre);
        set_or_unset("VTX", c.vtx);
        EXPECT_EQ(prefix_path(), c.rc) << c.name;
        const char* now = std::getenv("PATH");
        EXPECT_EQ(now ? std::string(now) : "<unset>", c.expected ? c.expected : "<unset>")
            << c.name;
    }
    setenv("PATH", saved_path.c_str(), 1);
}

TEST(QueryPid, TellsLivingFromGone) {
    EXPECT_EQ(query_PID(getpid()), getpid());
    pid_t child = fork();
    if (child == 0) _exit(0);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(query_PID(child), 0) << "a reaped child no longer exists";
}

}  // namespace
}  // namespace qorvel
