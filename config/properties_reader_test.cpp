#include "config/properties_reader.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "config/test_file.h"
#include "qorvel/config.h"

namespace {

using qorvel::testing::TempFile;

const std::string kFile =
    "[Common.Linux]\n"
    "classpath=b.jar\n"
    "[Common]\n"
    "classpath=a.jar\n"
    "jvmargs=-Dinstall=${QV_HOME}\n"
    "[OnlyChild.Linux]\n"
    "policyfile=child.policy\n";

struct Case {
    const char* name;
    const char* section;
    const char* classpath;
    const char* jvmargs;
    const char* policyfile;
};

TEST(GetProperties, DeeperSectionsOverride) {
    setenv("QV_HOME", "/opt/q", 1);
    TempFile file(kFile);
    const Case cases[] = {
        {"child overrides parent", "Common.Linux", "b.jar", "-Dinstall=/opt/q", "dflt"},
        {"parent alone", "Common", "a.jar", "-Dinstall=/opt/q", "dflt"},
        {"absent child inherits", "Common.Solaris", "a.jar", "-Dinstall=/opt/q", "dflt"},
        {"missing parent level is skipped", "OnlyChild.Linux", "dflt", "dflt", "child.policy"},
        {"no level exists", "Nowhere.Linux", "dflt", "dflt", "dflt"},
        {"empty components are skipped", "Common..Linux", "b.jar", "-Dinstall=/opt/q", "dflt"},
        {"search ignores case", "COMMON.linux", "b.jar", "-Dinstall=/opt/q", "dflt"},
    };
    for (const auto& c : cases) {
        char cp[4096] = "dflt";
        // Without capacities in the call, each buffer must hold a whole substituted value.
        char args[4096] = "dflt";
        char policy[4096] = "dflt";
        EXPECT_EQ(getProperties(3, 1, file.path(), c.section, "classpath", cp, "jvmargs", args,
                                "policyfile", policy),
                  0)
            << c.name;
        EXPECT_STREQ(cp, c.classpath) << c.name;
        EXPECT_STREQ(args, c.jvmargs) << c.name;
        EXPECT_STREQ(policy, c.policyfile) << c.name;
    }
}

TEST(GetProperties, NullKeyEndsTheListAtEveryLevel) {
    TempFile file(kFile);
    char cp[4096] = "";
    char args[1024] = "untouched";
    EXPECT_EQ(getProperties(3, 0, file.path(), "Common.Linux", "classpath", cp,
                            static_cast<const char*>(nullptr), args, "jvmargs", args),
              0);
    EXPECT_STREQ(cp, "b.jar");
    EXPECT_STREQ(args, "untouched");
}

TEST(GetProperties, ReportsFailures) {
    TempFile file(kFile);
    std::string longSection(CFG_SECTION_NAME_MAX + 1, 's');
    unsetenv("VTX");
    struct Failure {
        const char* name;
        const char* file;
        const char* section;
        long expected;
    } const cases[] = {
        {"null file", nullptr, "Common", CFG_NOT_FOUND},
        {"null section", file.path(), nullptr, CFG_NOT_FOUND},
        {"file under unset VTX", "absent.properties", "Common", CFG_NOT_FOUND},
        {"section too long to search for", file.path(), longSection.c_str(), ENAMETOOLONG},
    };
    for (const auto& c : cases) {
        char cp[4096] = "kept";
        EXPECT_EQ(getProperties(1, 1, c.file, c.section, "classpath", cp), c.expected) << c.name;
        EXPECT_STREQ(cp, "kept") << c.name;
    }
}

TEST(GetProperties, LongestSearchableLevelIsRead) {
    std::string longest(CFG_SECTION_NAME_MAX, 's');
    TempFile file("[" + longest + "]\nclasspath=deep\n");
    std::string dotted = "." + longest + "..";  // stray dots do not count toward the limit
    char cp[4096] = "";
    EXPECT_EQ(getProperties(1, 1, file.path(), dotted.c_str(), "classpath", cp), 0);
    EXPECT_STREQ(cp, "deep");
}

TEST(ReadProperties, CutsValuesAtTheCarriedCapacity) {
    TempFile file("[S]\nk=0123456789\n");
    char small[5] = "";
    const qorvel::PropertyRequest requests[] = {{"k", small, sizeof small}};
    EXPECT_EQ(qorvel::read_properties(1, file.path(), "S", requests), 0);
    EXPECT_STREQ(small, "0123");
}

}  // namespace
