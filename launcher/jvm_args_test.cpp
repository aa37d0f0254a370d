#include "launcher/jvm_args.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

using Words = std::vector<std::string>;

HeapText heap(const char* text) {
    if (text == nullptr) return nullptr;
    HeapText copy(new char[std::strlen(text) + 1]);
    std::memcpy(copy.get(), text, std::strlen(text) + 1);
    return copy;
}

struct Built {
    int rc;
    Words argv;
};

// Runs the builder on `program` and `words` with the three settings given.
Built build(const char* program, Words words, const char* classpath = nullptr,
            const char* jvmargs = nullptr, const char* policyfile = nullptr) {
    settings = LaunchSettings{};
    bounded_copy(settings.outputDesc, "none");
    settings.classpath = heap(classpath);
    settings.jvmargs = heap(jvmargs);
    settings.policyfile = heap(policyfile);
    std::vector<char*> tail;
    for (std::string& w : words) tail.push_back(w.data());
    tail.push_back(nullptr);
    char** argv = nullptr;
    Built result{create_argv(tail.data(), &argv, program), {}};
    for (char** slot = argv; slot && *slot; ++slot) result.argv.emplace_back(*slot);
    destroy_argv(argv);
    return result;
}

struct SplitCase {
    const char* name;
    const char* options;
    Words pieces;
};

TEST(CreateArgv, JvmOptionsSplitOnUnquotedBlanks) {
    const SplitCase cases[] = {
        {"two_options", "-Xms64m -Xmx512m", {"-Xms64m", "-Xmx512m"}},
        {"quotes_protect_and_stay", "-Dname=\"a b\" -Xss1m", {"-Dname=\"a b\"", "-Xss1m"}},
        {"blank_after_separator_starts_piece", "a  b", {"a", " b"}},
        {"quote_after_separator_not_counted", "-X \"a b\"", {"-X", "\"a", "b\""}},
        {"trailing_blank_is_kept", "-Xmx512m ", {"-Xmx512m "}},
        {"open_quote_swallows_blanks", "-Da=\"x y -Db", {"-Da=\"x y -Db"}},
        {"leading_blank_gives_empty_piece", " -Xmx1m", {"", "-Xmx1m"}},
        {"tab_does_not_separate", "-Xa\t-Xb", {"-Xa\t-Xb"}},
        {"existing_line_feed_cuts_too", "-Xa\n-Xb -Xc", {"-Xa", "-Xb", "-Xc"}},
    };
    for (const SplitCase& c : cases) {
        Built b = build("java", {}, nullptr, c.options);
        Words expected{"java"};
        expected.insert(expected.end(), c.pieces.begin(), c.pieces.end());
        EXPECT_EQ(b.rc, 0) << c.name;
        EXPECT_EQ(b.argv, expected) << c.name;
    }
}

TEST(CreateArgv, ElementsComeInFixedOrder) {
    setenv("QV_HOME", "/opt/app", 1);
    Built b = build("$QV_HOME/bin/java", {"Main", "${QV_HOME}/conf"}, "/lib/a.jar", "-Xmx1m",
                    "/etc/java.policy");
    EXPECT_EQ(b.rc, 0);
    EXPECT_EQ(b.argv, (Words{"/opt/app/bin/java", "-classpath", "/lib/a.jar", "-Xmx1m",
                             "-Djava.security.policy=/etc/java.policy", "Main", "/opt/app/conf"}));
    EXPECT_STREQ(settings.policyfile.get(), "-Djava.security.policy=/etc/java.policy");
}

TEST(CreateArgv, EmptySettingsAddNothing) {
    Built b = build("java", {}, "", "", "");
    EXPECT_EQ(b.rc, 0);
    EXPECT_EQ(b.argv, Words{"java"});
}

struct LimitCase {
    const char* name;
    const char* program;
    Words words;
    int rc;
};

TEST(CreateArgv, RefusesWhatCannotBePassedOn) {
    unsetenv("QV_UNSET");
    const std::string half(kMaxArgumentChars / 2, 'a');
    const LimitCase cases[] = {
        {"exactly_the_limit_passes", "java", {half, half}, 0},
        {"one_over_the_limit", "java", {half, half + "a"}, 7},
        {"unset_variable_in_program", "$QV_UNSET/java", {}, 22},
        {"unset_variable_in_word", "java", {"ok", "$QV_UNSET"}, 22},
        {"open_brace_in_word", "java", {"${HOME"}, 22},
    };
    for (const LimitCase& c : cases) {
        EXPECT_EQ(build(c.program, c.words).rc, c.rc) << c.name;
    }
}

}  // namespace
}  // namespace qorvel
