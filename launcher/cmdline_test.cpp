// The program word taken back from a rendered command line.
#include "launcher/cmdline.h"

#include <gtest/gtest.h>

#include <cstring>

namespace qorvel {
namespace {

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
