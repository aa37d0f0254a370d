// The JVM command rendered as one quoted line, and the program word taken back.
#include "launcher/cmdline.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "launcher/test_settings.h"

namespace qorvel {
namespace {

// "<rc>|<line>" for the words with the three settings given.
std::string render(std::vector<const char*> words, const char* classpath = nullptr,
                   const char* jvmargs = nullptr, const char* policyfile = nullptr) {
    use_settings(classpath, jvmargs, policyfile);
    char line[8192];
    int rc = create_cmdLine(line, sizeof line, static_cast<int>(words.size()), words.data());
    auto left = [](const HeapText& t) { return t && t[0] != '\0'; };
    EXPECT_FALSE(left(settings.classpath) || left(settings.jvmargs) || left(settings.policyfile))
        << "a setting that was used is consumed";
    return std::to_string(rc) + "|" + line;
}

TEST(CreateCmdLine, RendersTheWordsAsOneQuotedLine) {
    setenv("JVMARGS", "-Xa -Xb", 1);
    setenv("QV_DIR", "/my dir", 1);
    unsetenv("QV_UNSET");
    const std::string fills(2048 - 5, 'w');  // with "java " before it, exactly 2048
    const std::string too_long = fills + 'w';
    const struct {
        std::vector<const char*> words;
        std::string expected;
    } cases[] = {
        {{"java"}, "0|java "},
        {{}, "0|"},
        {{"java", "Main", "my file"}, "0|java Main \"my file\" "},
        {{"java", "$JVMARGS"}, "0|java -Xa -Xb "},  // a JVMARGS reference is never quoted
        {{"java", "$QV_DIR/x"}, "0|java \"/my dir/x\" "},
        {{"java", "$QV_UNSET"}, "22|java "},
        {{"java", fills.c_str()}, "0|java " + fills + " "},
        {{"java", too_long.c_str()}, "7|java "},
    };
    for (const auto& c : cases) EXPECT_EQ(render(c.words), c.expected);
}

TEST(CreateCmdLine, PutsTheSettingsAfterTheFirstWord) {
    const struct {
        const char *classpath, *jvmargs, *policyfile, *expected;
    } cases[] = {
        {"/a b/x.jar", "-Xa -Xb", nullptr, "0|java -classpath \"/a b/x.jar\" -Xa -Xb M "},
        {"a.jar:b.jar", nullptr, "p", "0|java -classpath a.jar:b.jar -Djava.security.policy=p M "},
        {nullptr, nullptr, "/p d/x", "0|java -Djava.security.policy=\"/p d/x\" M "},
        {"", "", "", "0|java M "},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(render({"java", "M"}, c.classpath, c.jvmargs, c.policyfile), c.expected);
    }
    settings.classpath = heap(std::string(100, 'c').c_str());
    const char* words[] = {"java", "Main"};
    char small[64];
    EXPECT_EQ(create_cmdLine(small, sizeof small, 2, words), 7) << "the caller's buffer is short";
    EXPECT_LT(std::strlen(small), sizeof small);
}

TEST(GetExecCmdLine, TakesTheProgramWord) {
    const struct {
        const char *line, *word;
    } cases[] = {
        {"\"/opt/my jre/java\" -x", "/opt/my jre/java"},
        {"java -classpath x", "java"},
        {"java", "java"},
        {"\"/a b", "/a b"},  // an unclosed quote runs to the end
    };
    for (const auto& c : cases) {
        char out[64];
        EXPECT_EQ(getExec_cmdLine(c.line, out, sizeof out), std::strlen(c.word)) << c.line;
        EXPECT_STREQ(out, c.word);
    }
    for (const char* text : {"a b", "a\tb", "a\rb", "\v"}) EXPECT_EQ(chkForSpaces(text), 1);
    for (const char* text : {"", "abc"}) EXPECT_EQ(chkForSpaces(text), 0);
}

}  // namespace
}  // namespace qorvel
