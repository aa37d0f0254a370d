#include "launcher/prop_file.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "config/test_file.h"
#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

using testing::TempFile;

const std::string kFile =
    "[Common]\n"
    "classpath=a.jar,b.jar,\n"
    "  c.jar\n"
    "jvmargs=-Xmx64m -Dq=${QV_HOME}\n"
    "[Common.Linux]\n"
    "policyfile=linux.policy\n"
    "[Tools]\n"
    "classpath=tools.jar\n"
    "[Tools.Linux]\n";

std::string text(const HeapText& t) { return t ? t.get() : "<none>"; }

// The three settings as "classpath | jvmargs | policyfile".
std::string read_settings(const std::string& arg, int expected_rc) {
    EXPECT_EQ(processPropFile(arg.c_str()), expected_rc) << arg;
    return text(settings.classpath) + " | " + text(settings.jvmargs) + " | " +
           text(settings.policyfile);
}

// -x, and the console lines and exit statuses, are checked through the built program (tests/cli).
TEST(ProcessPropFile, FillsTheSettingsFromTheSectionAndItsOsChild) {
    setenv("QV_HOME", "/opt/q", 1);
    setenv("QV_SECTION", "Tools", 1);
    unsetenv("QV_UNSET");
    TempFile file(kFile);
    const std::string path = file.path();
    const std::string common = "a.jar:b.jar: c.jar | -Xmx64m -Dq=/opt/q | linux.policy";
    const struct {
        std::string arg;
        int rc;
        std::string expected;
    } cases[] = {
        {path, 0, common},  // commas become colons
        {path + "::Tools", 0, "tools.jar | <none> | <none>"},
        {path + "::$QV_SECTION", 0, "tools.jar | <none> | <none>"},
        {path + "::$QV_UNSET", 0, common},  // an unset section falls back to Common
        {"   " + path + "::Tools", 0, "tools.jar | <none> | <none>"},  // leading blanks skipped
        {"$QV_UNSET/x::Tools", kPropFileFailed, "<none> | <none> | <none>"},
        {"/nonexistent/p.properties", kPropFileFailed, " |  | "},
        {path + "::" + std::string(1020, 's'), kPropFileFailed, " |  | "},  // the section won't fit
    };
    for (const auto& c : cases) {
        settings = LaunchSettings{};
        bounded_copy(settings.outputDesc, "none");
        bounded_copy(settings.osname, "Linux");
        EXPECT_EQ(read_settings(c.arg, c.rc), c.expected) << c.arg;
    }
    // A later call replaces the earlier values instead of merging with them.
    ASSERT_EQ(read_settings(path, 0), common);
    EXPECT_EQ(read_settings(path + "::Tools", 0), "tools.jar | <none> | <none>");
}

}  // namespace
}  // namespace qorvel
