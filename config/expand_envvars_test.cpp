#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "qorvel/config.h"

namespace {

class ExpandEnvvars : public ::testing::Test {
  protected:
    void SetUp() override {
        setenv("HOME", "/home/u", 1);
        setenv("A", "1", 1);
        setenv("B", "2", 1);
        setenv("A/B", "slash", 1);
        setenv("EMPTY", "", 1);
        unsetenv("UNSET_QV");
        unsetenv("HOME.x");
    }
};

struct Case {
    const char* src;
    const char* expected;  // nullptr: the expansion fails
};

TEST_F(ExpandEnvvars, ReferenceForms) {
    const Case cases[] = {
        {"", ""},
        {"$HOME/bin", "/home/u/bin"},
        {"${HOME}/bin", "/home/u/bin"},
        {"$HOME", "/home/u"},
        {"$A$B", "1B"},  // the second "$" only closes the first reference
        {"${A}${B}", "12"},
        {"${A/B}", "slash"},  // inside braces "/" belongs to the name
        {"x$EMPTY/y", "x/y"},
        {"pre${A}post", "pre1post"},
    };
    for (const Case& c : cases) {
        char dst[QORVEL_EXPAND_MAX];
        ASSERT_EQ(expand_envvars(dst, c.src), 1) << c.src;
        EXPECT_STREQ(dst, c.expected) << c.src;
    }
}

TEST_F(ExpandEnvvars, LiteralCharacters) {
    const Case cases[] = {
        {"price~$5", "price$5"},
        {"~/x", "~/x"},
        {"a}b", "a}b"},
        {"{x}", "{x}"},
        {"$A}", "}1"},  // "}" closes only a braced reference
        {"plain text", "plain text"},
        {"\xC3\xA9\xFF", "\xC3\xA9\xFF"},
    };
    for (const Case& c : cases) {
        char dst[QORVEL_EXPAND_MAX];
        ASSERT_EQ(expand_envvars(dst, c.src), 1) << c.src;
        EXPECT_STREQ(dst, c.expected) << c.src;
    }
}

TEST_F(ExpandEnvvars, FailuresLeaveTheDestinationUntouched) {
    const char* failing[] = {
        "$UNSET_QV", "a/${UNSET_QV}/b", "$HOME.x", "${A", "$", "$$", "$/", "ok $A then $UNSET_QV",
    };
    for (const char* src : failing) {
        char dst[QORVEL_EXPAND_MAX] = "sentinel";
        EXPECT_EQ(expand_envvars(dst, src), 0) << src;
        EXPECT_STREQ(dst, "sentinel") << src;
    }
}

TEST_F(ExpandEnvvars, LongResultsAreCutTo2047Characters) {
    std::string long_value(3000, 'v');
    setenv("LONG_QV", long_value.c_str(), 1);
    const std::string sources[] = {std::string(3000, 's'), "$LONG_QV", "ab${LONG_QV}cd"};
    for (const std::string& src : sources) {
        char dst[QORVEL_EXPAND_MAX + 16];
        std::memset(dst, '#', sizeof dst);
        ASSERT_EQ(expand_envvars(dst, src.c_str()), 1);
        EXPECT_EQ(std::strlen(dst), QORVEL_EXPAND_MAX - 1u);
        EXPECT_EQ(dst[QORVEL_EXPAND_MAX], '#');
    }
}

TEST_F(ExpandEnvvars, OverlongNamesAreRefused) {
    std::string name(300, 'N');
    setenv(name.c_str(), "value", 1);
    char dst[QORVEL_EXPAND_MAX] = "sentinel";
    EXPECT_EQ(expand_envvars(dst, ("${" + name + "}").c_str()), 0);
    EXPECT_STREQ(dst, "sentinel");
    unsetenv(name.c_str());
}

}  // namespace
