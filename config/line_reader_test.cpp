#include "qorvel/config.h"
#include "tests/unit.h"

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

TEST(CfgGetline, LineGrammar) {
    struct Case {
        const char *why, *text;
        int limit;
        std::vector<std::string> lines;
    } const cases[] = {
        {"leading blanks are skipped", "  \tkey=v\n", 64, {"key=v"}},
        {"a blank run reads as its first character", "a   b\t \tc\n", 64, {"a b\tc"}},
        {"a trailing space is dropped, a trailing tab stays", "a \nb\t\n", 64, {"a", "b\t"}},
        {"a comma joins lines", "cp=a.jar,\n    b.jar,\n\n    c\n", 64, {"cp=a.jar, b.jar, c"}},
        {"an entry ending in a comma swallows a header",
         "k=a,\n[S]\nx=1\n",
         64,
         {"k=a,[S]", "x=1"}},
        {"carriage return ends no continuation", "k=a,\r\nb\r\n", 64, {"k=a,\r", "b\r"}},
        {"a last line without newline is not seen", "a\nb", 64, {"a"}},
        {"a long line is cut, one character lost", "abcdefg\n", 4, {"abc", "efg"}},
        {"a blank at the cut is discarded", "abc    def\n", 4, {"abc", "def"}},
    };
    for (const auto& c : cases) EXPECT_EQ(read_lines(c.text, c.limit), c.lines) << c.why;
}

void split_at_colon(char* word, char* text) { getword(word, text, ':'); }

TEST(Splitters, SplitInPlace) {
    struct Case {
        void (*split)(char*, char*);
        const char *line, *first, *rest;
    } const cases[] = {
        {cfg_getkeyword, "key = \tvalue x", "key ", "value x"},  // a blank before = stays
        {cfg_getkeyword, "a\\=b=c", "a\\=b", "c"},               // an escaped = stays in the key
        {cfg_getkeyword, "=v", "", "v"},
        {cfg_getkeyword, "  lonely", "lonely", ""},
        {cfg_getkeyword, "k=value # note", "k", "value # note"},  // a # inside is plain text
        {cfg_getword, " a\\ b   c  d", "a\\ b", "c  d"},  // an escaped blank stays in the word
        {cfg_getword, "v\r", "v", ""},
        {split_at_colon, " a:b:c", " a", "b:c"},  // blanks are kept
        {split_at_colon, "abc", "abc", ""},
    };
    for (const auto& c : cases) {
        char line[64], first[64];
        snprintf(line, sizeof line, "%s", c.line);
        c.split(first, line);
        EXPECT_STREQ(first, c.first) << c.line;
        EXPECT_STREQ(line, c.rest) << c.line;
    }
}

TEST(SpcLen, TrimsOnlyAFullFieldsTrailingSpaces) {
    struct Case {
        const char* text;
        int width;
        const char* copy;
    } const cases[] = {{"ab  ", 8, "ab  "},
                       {"ab  cd", 4, "ab"},
                       {"     ", 3, ""},
                       {"abc", -2, ""},
                       {"a\t  ", 4, "a\t"}};
    for (const auto& c : cases) {
        char out[16];
        spc_copy(out, c.text, c.width);
        EXPECT_STREQ(out, c.copy) << c.text << c.width;
        EXPECT_EQ(spc_len(c.text, c.width), static_cast<int>(std::strlen(c.copy))) << c.text;
    }
}

}  // namespace
