// The JVM command in its two forms: the argument vector the launch executes,
// and one quoted line for callers that want a line; both take the settings.
#include "launcher/jvm_args.h"

#include "launcher/cmdline.h"
#include "launcher/console.h"
#include "tests/unit.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

struct Settings {
    const char *classpath = nullptr, *jvmargs = nullptr, *policyfile = nullptr;
};

// The three property-file values, with a silent console.
JvmSettings use(Settings given) {
    bounded_copy(console.outputDesc, "none");
    auto put = [](HeapText& slot, const char* text) {
        if (!text) return;
        std::size_t size = std::strlen(text) + 1;
        slot.reset(new char[size]);
        std::memcpy(slot.get(), text, size);
    };
    JvmSettings jvm;
    put(jvm.classpath, given.classpath);
    put(jvm.jvmargs, given.jvmargs);
    put(jvm.policyfile, given.policyfile);
    return jvm;
}

// "<rc>|<line>" for the words with the settings given; a used setting must be consumed.
std::string render(std::vector<const char*> words, Settings given = {}) {
    JvmSettings jvm = use(given);
    char line[8192];
    int rc = create_cmdLine(line, sizeof line, static_cast<int>(words.size()), words.data(), jvm);
    for (const HeapText* t : {&jvm.classpath, &jvm.jvmargs, &jvm.policyfile}) {
        EXPECT_TRUE(!*t || (*t)[0] == '\0') << "a setting that was used is consumed";
    }
    return std::to_string(rc) + "|" + line;
}

TEST(CreateCmdLine, QuotesWordsWithBlanksAndPutsTheSettingsAfterTheFirst) {
    setenv("JVMARGS", "-Xa -Xb", 1);
    setenv("QV_DIR", "/my dir", 1);
    unsetenv("QV_UNSET");
    const std::string fills(2048 - 5, 'w');  // with "java " before it, exactly 2048
    const std::string too_long = fills + 'w';
    const struct {
        std::vector<const char*> words;
        Settings given;
        std::string expected;
    } cases[] = {
        {{}, {}, "0|"},
        {{"java", "Main", "my file"}, {}, "0|java Main \"my file\" "},
        {{"java", "$JVMARGS"}, {}, "0|java -Xa -Xb "},  // a JVMARGS reference is never quoted
        {{"java", "$QV_DIR/x"}, {}, "0|java \"/my dir/x\" "},
        {{"java", "$QV_UNSET"}, {}, "22|java "},
        {{"java", fills.c_str()}, {}, "0|java " + fills + " "},
        {{"java", too_long.c_str()}, {}, "7|java "},
        {{"java", "M"}, {"/a b/x.jar", "-Xa -Xb"}, "0|java -classpath \"/a b/x.jar\" -Xa -Xb M "},
        {{"java", "M"}, {"a:b", nullptr, "p"}, "0|java -classpath a:b -Djava.security.policy=p M "},
        {{"java", "M"}, {nullptr, nullptr, "/p d"}, "0|java -Djava.security.policy=\"/p d\" M "},
        {{"java", "M"}, {"", "", ""}, "0|java M "},
    };
    for (const auto& c : cases) EXPECT_EQ(render(c.words, c.given), c.expected);
    const char* words[] = {"java", "Main"};
    char small[64];
    JvmSettings jvm;
    jvm.classpath.reset(new char[101]());
    std::memset(jvm.classpath.get(), 'c', 100);
    EXPECT_EQ(create_cmdLine(small, sizeof small, 2, words, jvm), 7)
        << "the caller's buffer is short";
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

using Words = std::vector<std::string>;

// The vector for the program "java" with `options` as the JVM options.
Words build(const std::string& options) {
    JvmSettings jvm = use({nullptr, options.c_str()});
    char* tail[] = {nullptr};
    char** argv = nullptr;
    if (int rc = create_argv(tail, &argv, "java", jvm)) return {"rc=" + std::to_string(rc)};
    Words result;
    for (char** slot = argv; *slot; ++slot) result.emplace_back(*slot);
    destroy_argv(argv);
    return result;
}

// The order of the vector and its failures are checked through the built program (tests/cli).
TEST(CreateArgv, JvmOptionsSplitOnUnquotedBlanks) {
    const struct {
        const char* options;
        Words pieces;
    } cases[] = {
        {"-Xms64m -Xmx512m", {"-Xms64m", "-Xmx512m"}},
        {"-Dname=\"a b\" -Xss1m", {"-Dname=\"a b\"", "-Xss1m"}},  // quotes protect and stay
        {"a  b", {"a", " b"}},                 // the character after a separator never is one
        {"-X \"a b\"", {"-X", "\"a", "b\""}},  // nor counts as a quote
        {"-Xmx512m ", {"-Xmx512m "}},          // a trailing blank is kept
        {"-Da=\"x y -Db", {"-Da=\"x y -Db"}},  // an open quote swallows the rest
        {" -Xmx1m", {"", "-Xmx1m"}},
        {"-Xa\t-Xb", {"-Xa\t-Xb"}},
        {"-Xa\n-Xb -Xc", {"-Xa", "-Xb", "-Xc"}},  // a line feed already there cuts too
        {"", {}},                                 // empty options add nothing
    };
    for (const auto& c : cases) {
        Words expected{"java"};
        expected.insert(expected.end(), c.pieces.begin(), c.pieces.end());
        EXPECT_EQ(build(c.options), expected) << c.options;
    }
}

}  // namespace
}  // namespace qorvel
