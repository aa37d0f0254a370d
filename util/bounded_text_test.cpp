#include "util/bounded_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace qorvel {
namespace {

struct Case {
    const char* name;
    const char* initial;
    std::string text;
    std::size_t size;
    const char* expected;
    bool whole;
};

TEST(BoundedText, AppendCutsAndAlwaysTerminates) {
    const Case cases[] = {
        {"fits", "ab", "cd", 8, "abcd", true},
        {"exactly_fills", "ab", "cde", 6, "abcde", true},
        {"one_too_many", "ab", "cdef", 6, "abcde", false},
        {"already_full", "abcde", "x", 6, "abcde", false},
        {"empty_text_into_full", "abcde", "", 6, "abcde", true},
        {"room_for_terminator_only", "", "xyz", 1, "", false},
    };
    for (const Case& c : cases) {
        char buf[16] = {};
        std::memset(buf, '#', sizeof buf);  // bytes past `size` must stay untouched
        std::memcpy(buf, c.initial, std::strlen(c.initial) + 1);
        EXPECT_EQ(bounded_append(buf, c.size, c.text), c.whole) << c.name;
        EXPECT_STREQ(buf, c.expected) << c.name;
        EXPECT_EQ(buf[c.size], '#') << c.name;
    }
}

TEST(BoundedText, CopyReplacesAndReportsCut) {
    char buf[4];
    EXPECT_TRUE(bounded_copy(buf, "abc"));
    EXPECT_STREQ(buf, "abc");
    EXPECT_FALSE(bounded_copy(buf, "abcd"));
    EXPECT_STREQ(buf, "abc");
    EXPECT_TRUE(bounded_copy(buf, ""));
    EXPECT_STREQ(buf, "");
}

TEST(BoundedText, AppendTerminatesAnUnterminatedBuffer) {
    char buf[4] = {'a', 'b', 'c', 'd'};
    EXPECT_FALSE(bounded_append(buf, sizeof buf, "x"));
    EXPECT_STREQ(buf, "abc");
}

TEST(BoundedText, FormatCutsAtBufferEnd) {
    char buf[8];
    EXPECT_TRUE(bounded_format(buf, sizeof buf, "%s=%d", "ab", 42));
    EXPECT_STREQ(buf, "ab=42");
    EXPECT_FALSE(bounded_format(buf, sizeof buf, "%s=%d", "abcdef", 42));
    EXPECT_STREQ(buf, "abcdef=");
}

TEST(BoundedText, ZeroSizeWritesNothing) {
    char guard = '#';
    EXPECT_FALSE(bounded_copy(&guard, 0, "x"));
    EXPECT_FALSE(bounded_format(&guard, 0, "%s", "x"));
    EXPECT_EQ(guard, '#');
}

}  // namespace
}  // namespace qorvel
