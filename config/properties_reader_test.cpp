#include "qorvel/config.h"
#include "tests/unit.h"

namespace {

const std::string kLongest(CFG_SECTION_NAME_MAX, 's');
const std::string kFile =
    "[Common.Linux]\nclasspath=b.jar\n"
    "[Common]\nclasspath=a.jar\njvmargs=-Dinstall=${QV_HOME}\n"
    "[OnlyChild.Linux]\nclasspath=child\n[.]\nclasspath=dot\n"
    "[" +
    kLongest + "]\nclasspath=deep\n";

TEST(GetProperties, DeeperSectionsOverride) {
    setenv("QV_HOME", "/opt/q", 1);
    TempFile file(kFile);
    std::string dotted = "." + kLongest + "..";  // stray dots do not count toward the limit
    struct Case {
        const char *why, *section, *classpath, *jvmargs;
    } const cases[] = {
        {"child overrides parent", "Common.Linux", "b.jar", "-Dinstall=/opt/q"},
        {"absent child inherits", "Common.Solaris", "a.jar", "-Dinstall=/opt/q"},
        {"missing parent level is skipped", "OnlyChild.Linux", "child", "dflt"},
        {"no level exists", "Nowhere.Linux", "dflt", "dflt"},
        {"empty components are skipped", "Common..Linux", "b.jar", "-Dinstall=/opt/q"},
        {"a name without components is read as it stands", ".", "dot", "dflt"},
        {"the longest searchable level is read", dotted.c_str(), "deep", "dflt"},
    };
    for (const auto& c : cases) {
        // Without capacities in the call, each buffer must hold a whole substituted value.
        char cp[4096] = "dflt", args[4096] = "dflt";
        EXPECT_EQ(getProperties(2, 1, file.path(), c.section, "classpath", cp, "jvmargs", args), 0)
            << c.why;
        EXPECT_STREQ(cp, c.classpath) << c.why;
        EXPECT_STREQ(args, c.jvmargs) << c.why;
    }
}

TEST(GetProperties, NullKeyEndsTheListAtEveryLevel) {
    TempFile file(kFile);
    char cp[4096] = "", args[1024] = "untouched";
    EXPECT_EQ(getProperties(3, 0, file.path(), "Common.Linux", "classpath", cp,
                            static_cast<const char*>(nullptr), args, "jvmargs", args),
              0);
    EXPECT_STREQ(cp, "b.jar");
    EXPECT_STREQ(args, "untouched");
}

TEST(GetProperties, ReportsFailuresLeavingTheBuffers) {
    TempFile file(kFile);
    const std::string tooLong = "a." + kLongest.substr(1);  // its deepest level is one too long
    char cp[4096] = "kept";
    EXPECT_EQ(getProperties(1, 1, file.path(), nullptr, "classpath", cp), CFG_NOT_FOUND);
    EXPECT_EQ(getProperties(1, 1, file.path(), tooLong.c_str(), "classpath", cp), ENAMETOOLONG);
    EXPECT_STREQ(cp, "kept");
}

}  // namespace
