#include "launcher/daemon.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

struct ScanCase {
    const char* name;
    const char* text;
    int ok;
    long value;
};

TEST(ScanLong, AcceptsOneNumberBetweenBlanks) {
    const ScanCase cases[] = {
        {"plain", "1001", 1, 1001},    {"blanks_around", "  42  ", 1, 42},
        {"negative", "-5", 1, -5},     {"trailing_letters", "10x1", 0, 0},
        {"second_word", "12 a", 0, 0}, {"empty", "", 0, 0},
        {"no_digits", "abc", 0, 0},
    };
    for (const ScanCase& c : cases) {
        long value = 0;
        EXPECT_EQ(scan_long(c.text, &value), c.ok) << c.name;
        if (c.ok) {
            EXPECT_EQ(value, c.value) << c.name;
        }
    }
}

struct IdCase {
    const char* name;
    const char* text;
    unsigned expected;
};

TEST(NameToId, NumbersAndNames) {
    settings = LaunchSettings{};
    bounded_copy(settings.outputDesc, "none");
    const IdCase users[] = {
        {"number", "#1001", 1001},     {"number_with_junk", "#10x1", 0},
        {"negative_number", "#-1", 0}, {"beyond_ids", "#4294967295", 0},
        {"root_by_name", "root", 0},   {"unknown_name", "no-such-user-qv", 0},
    };
    for (const IdCase& c : users) EXPECT_EQ(uname2id(c.text), c.expected) << c.name;
    const IdCase groups[] = {
        {"number", "#77", 77},
        {"number_with_blank_word", "#7 7", 0},
        {"unknown_name", "no-such-group-qv", 0},
    };
    for (const IdCase& c : groups) EXPECT_EQ(gname2id(c.text), c.expected) << c.name;
}

TEST(ChildStart, ARefusedPasswordIsWipedAndNothingForks) {
    settings = LaunchSettings{};
    bounded_copy(settings.outputDesc, "none");
    unsetenv("QRB_AUTH_DEBUG");
    char password[kIdentityFieldSize] = "secret";
    EXPECT_EQ(child_start("no-such-user-qv", "", password, 0), kPasswordRefused);
    EXPECT_EQ(std::string(password, 6), std::string(6, '\0'));
}

}  // namespace
}  // namespace qorvel
