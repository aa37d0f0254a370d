#include "launcher/cmdline.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

HeapText heap(const char* text) {
    if (!text) return nullptr;
    std::size_t size = std::strlen(text) + 1;
    HeapText t(new char[size]);
    bounded_copy(t.get(), size, text);
    return t;
}

struct Case {
    const char* name;
    std::vector<const char*> words;
    const char* classpath;
    const char* jvmargs;
    const char* policyfile;
    int rc;
    std::string line;
};

TEST(CreateCmdLine, RendersTheCommandAsOneQuotedLine) {
    setenv("JVMARGS", "-Xa -Xb", 1);
    setenv("QV_DIR", "/my dir", 1);
    unsetenv("QV_UNSET");
    const std::string fills(2048 - 5, 'w');  // with "java " before it, exactly 2048
    const std::string tooLong(2049, 'w');
    const Case cases[] = {
        {"single word", {"java"}, nullptr, nullptr, nullptr, 0, "java "},
        {"no words", {}, nullptr, nullptr, nullptr, 0, ""},
        {"settings after the first word, blanks quoted",
         {"java", "Main", "my file"},
         "/a b/x.jar",
         "-Xmx512m -Xss1m",
         nullptr,
         0,
         "java -classpath \"/a b/x.jar\" -Xmx512m -Xss1m Main \"my file\" "},
        {"plain class path and policy unquoted",
         {"java", "M"},
         "a.jar:b.jar",
         nullptr,
         "p.policy",
         0,
         "java -classpath a.jar:b.jar -Djava.security.policy=p.policy M "},
        {"policy with a blank is quoted",
         {"java"},
         nullptr,
         nullptr,
         "/p d/x",
         0,
         "java -Djava.security.policy=\"/p d/x\" "},
        {"empty settings add nothing", {"java"}, "", "", "", 0, "java "},
        {"JVMARGS reference is never quoted",
         {"java", "$JVMARGS"},
         nullptr,
         nullptr,
         nullptr,
         0,
         "java -Xa -Xb "},
        {"expanded blanks are quoted",
         {"java", "$QV_DIR/x"},
         nullptr,
         nullptr,
         nullptr,
         0,
         "java \"/my dir/x\" "},
        {"unexpandable word", {"java", "$QV_UNSET"}, nullptr, nullptr, nullptr, 22, "java "},
        {"line of exactly 2048 characters",
         {"java", fills.c_str()},
         nullptr,
         nullptr,
         nullptr,
         0,
         "java " + fills + " "},
        {"line over 2048 characters",
         {"java", tooLong.c_str()},
         nullptr,
         nullptr,
         nullptr,
         7,
         "java "},
    };
    for (const auto& c : cases) {
        settings.classpath = heap(c.classpath);
        settings.jvmargs = heap(c.jvmargs);
        settings.policyfile = heap(c.policyfile);
        bounded_copy(settings.outputDesc, "none");
        char line[8192];
        EXPECT_EQ(
            create_cmdLine(line, sizeof line, static_cast<int>(c.words.size()), c.words.data()),
            c.rc)
            << c.name;
        EXPECT_EQ(std::string(line), c.line) << c.name;
    }
}

TEST(CreateCmdLine, ConsumesTheSettings) {
    settings.classpath = heap("cp.jar");
    settings.jvmargs = heap("-Xmx1m");
    settings.policyfile = heap("p");
    const char* words[] = {"java"};
    char line[256];
    ASSERT_EQ(create_cmdLine(line, sizeof line, 1, words), 0);
    EXPECT_STREQ(line, "java -classpath cp.jar -Xmx1m -Djava.security.policy=p ");
    ASSERT_EQ(create_cmdLine(line, sizeof line, 1, words), 0);
    EXPECT_STREQ(line, "java ");
}

TEST(CreateCmdLine, RefusesWhatTheCallersBufferCannotHold) {
    settings.classpath = heap(std::string(100, 'c').c_str());
    const char* words[] = {"java", "Main"};
    char line[64];
    EXPECT_EQ(create_cmdLine(line, sizeof line, 2, words), 7);
    EXPECT_LT(std::strlen(line), sizeof line);
}

TEST(GetExecCmdLine, TakesTheProgramWord) {
    struct ExecCase {
        const char* name;
        const char* line;
        const char* word;
    } const cases[] = {
        {"quoted program", "\"/opt/my jre/java\" -x", "/opt/my jre/java"},
        {"unquoted program", "java -classpath x", "java"},
        {"line of one word", "java", "java"},
        {"unclosed quote runs to the end", "\"/a b", "/a b"},
    };
    for (const auto& c : cases) {
        char out[64];
        EXPECT_EQ(getExec_cmdLine(c.line, out, sizeof out), std::strlen(c.word)) << c.name;
        EXPECT_STREQ(out, c.word) << c.name;
    }
}

TEST(ChkForSpaces, FindsAnyWhiteSpace) {
    struct SpaceCase {
        const char* text;
        int expected;
    } const cases[] = {{"", 0}, {"abc", 0}, {"a b", 1}, {"a\tb", 1}, {"a\rb", 1}, {"\v", 1}};
    for (const auto& c : cases) EXPECT_EQ(chkForSpaces(c.text), c.expected) << c.text;
}

}  // namespace
}  // namespace qorvel
