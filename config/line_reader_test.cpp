#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "qorvel/config.h"

namespace {

// Every logical line cfg_getline yields before it reports the end.
std::vector<std::string> read_lines(const std::string& text, int limit) {
    FILE* fp = fmemopen(const_cast<char*>(text.data()), text.size(), "r");
    std::vector<std::string> lines;
    std::vector<char> buf(static_cast<std::size_t>(limit));
    while (cfg_getline(buf.data(), limit, fp) == 0) lines.emplace_back(buf.data());
    fclose(fp);
    return lines;
}

struct LineCase {
    const char* name;
    std::string text;
    std::vector<std::string> lines;
};

TEST(CfgGetline, LineGrammar) {
    const LineCase cases[] = {
        {"leading blanks are skipped", "  \tkey=v\n", {"key=v"}},
        {"a blank run reads as its first character", "a   b\t \tc\n", {"a b\tc"}},
        {"a trailing space is dropped, a trailing tab stays", "a \nb\t\n", {"a", "b\t"}},
        {"a comma joins the next line with one blank",
         "classpath=a.jar,\n    b.jar,\n\n    c.jar\n",
         {"classpath=a.jar, b.jar, c.jar"}},
        {"a comment ending in a comma swallows the next line",
         "# note,\nkey=v\n",
         {"# note,key=v"}},
        {"an entry ending in a comma swallows a header", "k=a,\n[S]\nx=1\n", {"k=a,[S]", "x=1"}},
        {"carriage return ends no continuation", "k=a,\r\nb\r\n", {"k=a,\r", "b\r"}},
        {"empty lines come through empty", "a\n\nb\n", {"a", "", "b"}},
        {"a last line without newline is not seen", "a\nb", {"a"}},
    };
    for (const auto& c : cases) EXPECT_EQ(read_lines(c.text, 2048), c.lines) << c.name;
}

TEST(CfgGetline, LongLinesAreCutAndTheRestReadsOn) {
    std::string physical(3000, 'x');
    for (int limit : {2047, 2048}) {
        auto lines = read_lines(physical + "\n", limit);
        ASSERT_EQ(lines.size(), 2u) << limit;
        EXPECT_EQ(lines[0].size(), static_cast<std::size_t>(limit - 1));
        EXPECT_EQ(lines[1].size(), 3000u - static_cast<std::size_t>(limit));  // one lost at the cut
    }
}

TEST(CfgGetline, BlankAtTheCutIsDiscarded) {
    auto lines = read_lines("abc    def\n", 4);
    EXPECT_EQ(lines, (std::vector<std::string>{"abc", "def"}));
}

struct SplitCase {
    const char* name;
    const char* line;
    const char* first;  // keyword or word
    const char* rest;
};

TEST(CfgGetkeyword, SplitsAtTheFirstUnescapedEquals) {
    const SplitCase cases[] = {
        {"plain entry", "key=value", "key", "value"},
        {"blanks before = stay in the key", "key =value", "key ", "value"},
        {"blanks after = are skipped", "key= \tvalue x", "key", "value x"},
        {"escaped = stays in the key", "a\\=b=c", "a\\=b", "c"},
        {"leading = gives an empty key", "=v", "", "v"},
        {"no = gives an empty value", "  lonely", "lonely", ""},
        {"a # inside is ordinary text", "key=value # note", "key", "value # note"},
    };
    for (const auto& c : cases) {
        char line[64];
        char keyword[64];
        snprintf(line, sizeof line, "%s", c.line);
        cfg_getkeyword(keyword, line);
        EXPECT_STREQ(keyword, c.first) << c.name;
        EXPECT_STREQ(line, c.rest) << c.name;
    }
}

TEST(CfgGetword, SplitsAtUnescapedWhiteSpace) {
    const SplitCase cases[] = {
        {"first word and the rest", " a   b  c", "a", "b  c"},
        {"escaped blank stays in the word", "a\\ b c", "a\\ b", "c"},
        {"carriage return ends a word", "v\r", "v", ""},
        {"single word", "word", "word", ""},
    };
    for (const auto& c : cases) {
        char line[64];
        char word[64];
        snprintf(line, sizeof line, "%s", c.line);
        cfg_getword(word, line);
        EXPECT_STREQ(word, c.first) << c.name;
        EXPECT_STREQ(line, c.rest) << c.name;
    }
}

TEST(Getword, SplitsAtTheDelimiterWithoutSkippingBlanks) {
    const SplitCase cases[] = {
        {"delimiter found", " a:b:c", " a", "b:c"},
        {"no delimiter takes everything", "abc", "abc", ""},
        {"delimiter first", ":x", "", "x"},
    };
    for (const auto& c : cases) {
        char text[64];
        char word[64];
        snprintf(text, sizeof text, "%s", c.line);
        getword(word, text, ':');
        EXPECT_STREQ(word, c.first) << c.name;
        EXPECT_STREQ(text, c.rest) << c.name;
    }
}

TEST(SpcLen, MeasuresSpacePaddedFields) {
    struct Case {
        const char* name;
        const char* text;
        int width;
        int expected;
        const char* copy;
    } const cases[] = {
        {"short text keeps its trailing spaces", "ab  ", 8, 4, "ab  "},
        {"full field drops trailing spaces", "ab  cd", 4, 2, "ab"},
        {"all-space field is empty", "     ", 3, 0, ""},
        {"zero width", "abc", 0, 0, ""},
        {"negative width", "abc", -2, 0, ""},
        {"tab is not padding", "a\t  ", 4, 2, "a\t"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(spc_len(c.text, c.width), c.expected) << c.name;
        char out[16];
        spc_copy(out, c.text, c.width);
        EXPECT_STREQ(out, c.copy) << c.name;
    }
}

}  // namespace
