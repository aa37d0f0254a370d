// The JVM options of a properties file split into words of the argument vector.
#include "launcher/jvm_args.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

using Words = std::vector<std::string>;

// The vector for the program "java" with `options` as the JVM options.
Words build(const std::string& options) {
    settings = LaunchSettings{};
    bounded_copy(settings.outputDesc, "none");
    settings.jvmargs.reset(new char[options.size() + 1]);
    options.copy(settings.jvmargs.get(), options.size());
    settings.jvmargs[options.size()] = '\0';
    char* tail[] = {nullptr};
    char** argv = nullptr;
    if (int rc = create_argv(tail, &argv, "java")) return {"rc=" + std::to_string(rc)};
    Words result;
    for (char** slot = argv; *slot; ++slot) result.emplace_back(*slot);
    destroy_argv(argv);
    return result;
}

// The order of the vector and its failures are checked through the built program (tests/cli).
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
        {"", {}},                                 // empty options add nothing
    };
    for (const auto& c : cases) {
        Words expected{"java"};
        expected.insert(expected.end(), c.pieces.begin(), c.pieces.end());
        EXPECT_EQ(build(c.options), expected) << c.options;
    }
}

}  // namespace
}  // namespace qorvel
