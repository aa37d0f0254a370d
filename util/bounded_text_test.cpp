#include "util/bounded_text.h"

#include "tests/unit.h"

namespace qorvel {
namespace {

TEST(BoundedText, CopyAndAppendCutTerminateAndStayInsideTheSize) {
    struct Case {
        const char* name;
        bool (*write)(char*, std::size_t, std::string_view);
        const char* initial;
        std::string text;
        std::size_t size;
        const char* expected;
        bool whole;
    } cases[] = {
        {"append exactly fills", bounded_append, "ab", "cde", 6, "abcde", true},
        {"append one too many", bounded_append, "ab", "cdef", 6, "abcde", false},
        {"append to a full buffer", bounded_append, "abcde", "x", 6, "abcde", false},
        {"room for the terminator only", bounded_append, "", "xyz", 1, "", false},
        {"unterminated buffer is terminated", bounded_append, "abcd", "x", 4, "abc", false},
        {"copy replaces", bounded_copy, "xyz", "ab", 8, "ab", true},
        {"copy cut", bounded_copy, "xyz", "abcd", 4, "abc", false},
        {"copy into no room", bounded_copy, "#", "x", 0, "#", false},
    };
    for (const Case& c : cases) {
        char buf[16];
        std::memset(buf, '#', sizeof buf);
        std::memcpy(buf, c.initial, std::strlen(c.initial) + 1);
        char before[sizeof buf];
        std::memcpy(before, buf, sizeof buf);
        EXPECT_EQ(c.write(buf, c.size, c.text), c.whole) << c.name;
        EXPECT_STREQ(buf, c.expected) << c.name;
        EXPECT_EQ(std::memcmp(buf + c.size, before + c.size, sizeof buf - c.size), 0) << c.name;
    }
}

TEST(BoundedText, FormatCutsAtTheBufferEndAndReportsIt) {
    char buf[8];
    EXPECT_TRUE(bounded_format(buf, sizeof buf, "%s=%d", "abcd", 42));
    EXPECT_STREQ(buf, "abcd=42");
    EXPECT_FALSE(bounded_format(buf, sizeof buf, "%s=%d", "abcde", 42));
    EXPECT_STREQ(buf, "abcde=4");
    EXPECT_FALSE(bounded_format(buf, 0, "%s", "x"));
    EXPECT_STREQ(buf, "abcde=4") << "no room: nothing written";
}

}  // namespace
}  // namespace qorvel
