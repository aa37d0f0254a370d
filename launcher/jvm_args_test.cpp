// The argument vector of the launch.
#include "launcher/jvm_args.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "launcher/test_settings.h"

namespace qorvel {
namespace {

using Words = std::vector<std::string>;

// The vector built from `program` and `words` with the three settings given,
// or "rc=<code>" when the builder refused.
Words build(const char* program, Words words, const char* classpath = nullptr,
            const char* jvmargs = nullptr, const char* policyfile = nullptr) {
    use_settings(classpath, jvmargs, policyfile);
    std::vector<char*> tail;
    for (std::string& w : words) tail.push_back(w.data());
    tail.push_back(nullptr);
    char** argv = nullptr;
    if (int rc = create_argv(tail.data(), &argv, program)) return {"rc=" + std::to_string(rc)};
    Words result;
    for (char** slot = argv; *slot; ++slot) result.emplace_back(*slot);
    destroy_argv(argv);
    return result;
}

TEST(CreateArgv, JvmOptionsSplitOnUnquotedBlanks) {
    const struct {
        const char* options;
        Words pieces;
    } cases[] = {
        {"-Xms64m -Xmx512m", {"-Xms64m", "-Xmx512m"}},
        {"-Dname=\"a b\" -Xss1m", {"-Dname=\"a b\"", "-Xss1m"}},  // quotes protect and stay
        {"a  b", {"a", " b"}},                 // the character after a separator never is one
        {"-X \"a b\"", {"-X", "\"a", "b\""}},  // nor counts as a quote
        {"-Xmx512m ", {"-Xmx512m "}},          // a trailing blank is kept
        {"-Da=\"x y -Db", {"-Da=\"x y -Db"}},  // an open quote swallows the rest
        {" -Xmx1m", {"", "-Xmx1m"}},
        {"-Xa\t-Xb", {"-Xa\t-Xb"}},
        {"-Xa\n-Xb -Xc", {"-Xa", "-Xb", "-Xc"}},  // a line feed already there cuts too
    };
    for (const auto& c : cases) {
        Words expected{"java"};
        expected.insert(expected.end(), c.pieces.begin(), c.pieces.end());
        EXPECT_EQ(build("java", {}, nullptr, c.options), expected) << c.options;
    }
}

// The length limit and the unusable words are checked through the built program (tests/cli).
TEST(CreateArgv, ElementsComeInFixedOrder) {
    setenv("QV_HOME", "/opt/app", 1);
    EXPECT_EQ(build("$QV_HOME/bin/java", {"Main", "${QV_HOME}/conf"}, "/lib/a.jar", "-Xmx1m",
                    "/etc/java.policy"),
              (Words{"/opt/app/bin/java", "-classpath", "/lib/a.jar", "-Xmx1m",
                     "-Djava.security.policy=/etc/java.policy", "Main", "/opt/app/conf"}));
    EXPECT_STREQ(settings.policyfile.get(), "-Djava.security.policy=/etc/java.policy");
    EXPECT_EQ(build("java", {}, "", "", ""), Words{"java"}) << "empty settings add nothing";
    EXPECT_EQ(build("java", {"${HOME"}), Words{"rc=22"}) << "an open brace cannot be expanded";
}

}  // namespace
}  // namespace qorvel
