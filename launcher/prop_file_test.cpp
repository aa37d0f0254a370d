#include "launcher/prop_file.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "config/test_file.h"
#include "launcher/option_loop.h"
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

void fresh_settings() {
    settings = LaunchSettings{};
    bounded_copy(settings.outputDesc, "none");  // keep the console quiet
    bounded_copy(settings.osname, "Linux");
}

struct Case {
    const char* name;
    std::string arg;
    int rc;
    const char* classpath;
    const char* jvmargs;
    const char* policyfile;
};

TEST(ProcessPropFile, FillsTheSettingsFromTheSectionAndItsOsChild) {
    setenv("QV_HOME", "/opt/q", 1);
    setenv("QV_SECTION", "Tools", 1);
    unsetenv("QV_UNSET");
    TempFile file(kFile);
    const std::string path = file.path();
    const Case cases[] = {
        {"default section with os child, commas become colons", path, 0, "a.jar:b.jar: c.jar",
         "-Xmx64m -Dq=/opt/q", "linux.policy"},
        {"named section", path + "::Tools", 0, "tools.jar", "<none>", "<none>"},
        {"section from the environment", path + "::$QV_SECTION", 0, "tools.jar", "<none>",
         "<none>"},
        {"unset section variable falls back to Common", path + "::$QV_UNSET", 0,
         "a.jar:b.jar: c.jar", "-Xmx64m -Dq=/opt/q", "linux.policy"},
        {"leading blanks of the file part are skipped", "   " + path + "::Tools", 0, "tools.jar",
         "<none>", "<none>"},
        {"unexpandable file part", "$QV_UNSET/x::Tools", kPropFileFailed, "<none>", "<none>",
         "<none>"},
        {"missing file", "/nonexistent/p.properties", kPropFileFailed, "", "", ""},
        {"section too long for its buffer", path + "::" + std::string(1020, 's'), kPropFileFailed,
         "", "", ""},
    };
    for (const auto& c : cases) {
        fresh_settings();
        EXPECT_EQ(processPropFile(c.arg.c_str()), c.rc) << c.name;
        EXPECT_EQ(text(settings.classpath), c.classpath) << c.name;
        EXPECT_EQ(text(settings.jvmargs), c.jvmargs) << c.name;
        EXPECT_EQ(text(settings.policyfile), c.policyfile) << c.name;
    }
}

TEST(ProcessPropFile, ALaterCallReplacesEarlierValues) {
    TempFile file(kFile);
    fresh_settings();
    ASSERT_EQ(processPropFile(file.path()), 0);
    ASSERT_EQ(processPropFile((std::string(file.path()) + "::Tools").c_str()), 0);
    EXPECT_EQ(text(settings.classpath), "tools.jar");
    EXPECT_EQ(text(settings.jvmargs), "<none>");
    EXPECT_EQ(text(settings.policyfile), "<none>");
}

int scan(std::vector<std::string> words) {
    words.insert(words.begin(), "qorvel");
    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    return scan_options(static_cast<int>(words.size()), argv.data());
}

TEST(ScanOptions, XMovesTheClassPathIntoTheEnvironment) {
    TempFile file(kFile);
    struct XCase {
        const char* name;
        std::string arg;
        int rc;
        const char* env;
        const char* jvmargs;
    } const cases[] = {
        {"class path found", file.path(), 0, "a.jar:b.jar: c.jar", "-Xmx64m -Dq=/opt/q"},
        {"no class path leaves CLASSPATH alone", std::string(file.path()) + "::Nowhere", 0,
         "before", "<none>"},
        {"missing file", "/nonexistent/p.properties", kClasspathFailed, "before", ""},
    };
    setenv("QV_HOME", "/opt/q", 1);
    for (const auto& c : cases) {
        fresh_settings();
        setenv("CLASSPATH", "before", 1);
        EXPECT_EQ(scan({"-x", c.arg, "java"}), c.rc) << c.name;
        EXPECT_STREQ(getenv("CLASSPATH"), c.env) << c.name;
        EXPECT_EQ(text(settings.classpath), c.rc == 0 ? "<none>" : "") << c.name;
        EXPECT_EQ(text(settings.jvmargs), c.jvmargs) << c.name;
    }
    fresh_settings();
    EXPECT_EQ(scan({"-a", "/nonexistent/p.properties", "java"}), kPropFileFailed);
}

}  // namespace
}  // namespace qorvel
