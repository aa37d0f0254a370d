#include "qorvel/config.h"
#include "tests/unit.h"

namespace {

constexpr std::uint32_t kWhole = PROP_STRING | PROP_WHOLE_LINE;

const std::string kFile =
    "top=above\n"
    "[UBroker]\n"
    "portNumber=3090\nworkDir=/srv/work dir\nruns=a   b  c\ndup=first\ndup=second\n"
    "sameKey=from ub\n"
    "[S]\n"
    "base=/opt/x y\nr=x\nenvval=${QV_VTX}/lib\nnum=${QV_NUM}\n"
    "loopA=!{value-of:loopB}\nloopB=!{value-of:loopC}\nloopC=!{value-of:loopB}\n"
    "selfCase=!{value-of:s.selfCase}\n"
    "grow=!{value-of:S.g2}\ng2=" +
    std::string(600, 'x') + "!{value-of:S.g2}\n[Next]\nonlyNext=1\n";

class Lookup : public ::testing::Test {
  protected:
    void SetUp() override {
        setenv("QV_VTX", "/vtx", 1);
        setenv("QV_NUM", "42", 1);
        setenv("QV_REF", "!{SystemProperty:x}", 1);
        setenv("QV_Q", "?", 1);
        unsetenv("QV_UNSET");
        ASSERT_EQ(opencfg(nullptr, nullptr, file_.path(), &h_), 0);
    }
    void TearDown() override { closecfg(&h_); }

    // A lookup on a copy of the handle positioned on `section` (nullptr: the top of the file).
    long lookup(const char* section, const char* key, void* out, std::size_t size,
                std::uint32_t flags, int substitute, const char* dflt = nullptr,
                long number = PROP_NO_DEFAULT_NUMBER) {
        CFGHANDLE h = h_;
        EXPECT_TRUE(!section || find_Section(section, &h) == 1);
        return getPropValue(&h, key, out, size, flags, dflt, number, substitute);
    }

    qorvel::testing::TempFile file_{kFile};
    CFGHANDLE h_;
    char out_[CFG_VALUE_SIZE];
};

TEST_F(Lookup, ReadsKeysOfTheCurrentSection) {
    struct Case {
        const char *why, *section, *key;
        std::uint32_t flags;
        int substitute;
        const char* expected;
        long status;
    } const cases[] = {
        {"no section: above the first header", nullptr, "top", PROP_STRING, 0, "above", 0},
        {"key match ignores case", "UBroker", "WORKDIR", PROP_STRING, 0, "/srv/work", 0},
        {"whole value folds blank runs", "UBroker", "runs", kWhole, 0, "a b c", 0},
        {"first duplicate wins", "UBroker", "dup", PROP_STRING, 0, "first", 0},
        {"lookup stops at the next header", "S", "onlyNext", PROP_STRING, 0, "onlyNext", 2},
        {"keys naming each other", "S", "loopA", kWhole, 1, "loopA", CFG_BAD_VALUE},
        {"a value that keeps growing", "S", "grow", kWhole, 1, "grow", CFG_BAD_VALUE},
        {"self reference through the section's other case", "S", "selfCase", kWhole, 1, "selfCase",
         CFG_BAD_VALUE},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(lookup(c.section, c.key, out_, sizeof out_, c.flags, c.substitute), c.status)
            << c.why;
        EXPECT_STREQ(out_, c.expected) << c.why;
    }
}

TEST_F(Lookup, AppliesDefaults) {
    EXPECT_EQ(lookup("UBroker", "absent", out_, sizeof out_, PROP_STRING, 0, "fallback"), 0);
    EXPECT_STREQ(out_, "fallback");
    std::snprintf(out_, sizeof out_, "in place");
    EXPECT_EQ(lookup("UBroker", "absent", out_, sizeof out_, PROP_STRING, 0, out_), 0);
    EXPECT_STREQ(out_, "in place");
    struct Case {
        const char* key;
        long dflt, expected, status;
    } const numbers[] = {{"PORTNUMBER", 7, 3090, 0},
                         {"absent", PROP_NO_DEFAULT_NUMBER, 4294967295L, 2}};
    long value = 0;
    for (const auto& c : numbers) {
        EXPECT_EQ(lookup("UBroker", c.key, &value, sizeof value, PROP_INTEGER, 0, nullptr, c.dflt),
                  c.status);
        EXPECT_EQ(value, c.expected) << c.key << c.dflt;
    }
    EXPECT_EQ(lookup("S", "num", &value, sizeof value, PROP_INTEGER, 1, nullptr, 0), 0);
    EXPECT_EQ(value, 42);
    int narrow = 7;  // a number never goes into less than a long
    EXPECT_EQ(lookup("UBroker", "PORTNUMBER", &narrow, sizeof narrow, PROP_INTEGER, 0), EINVAL);
    EXPECT_EQ(narrow, 7);
}

// Past the entries a section's index holds, lookups read on by the same rules.
TEST(LookupInAHugeSection, FindsEntriesPastTheIndexAndNotComments) {
    std::string text = "[Big]\n";
    for (int i = 0; i < 1500; ++i) {  // appended: GCC 12 at -O3 warns on "k" + a temporary
        std::string n = std::to_string(i);
        text.append("k").append(n).append("=v").append(n).append("\n");
    }
    text += "#hidden=1\n[Next]\nafter=1\n";
    qorvel::testing::TempFile file(text);
    CFGHANDLE h;
    ASSERT_EQ(opencfg("Big", nullptr, file.path(), &h), 0);
    char out[64];
    const struct {
        const char* key;
        long status;
        const char* value;
    } cases[] = {{"k1499", 0, "v1499"}, {"#hidden", 2, "#hidden"}, {"after", 2, "after"}};
    for (const auto& c : cases) {
        EXPECT_EQ(getPropValue(&h, c.key, out, sizeof out, PROP_STRING, nullptr, 0, 0), c.status);
        EXPECT_STREQ(out, c.value) << c.key;
    }
    closecfg(&h);
}

// A file rewritten shorter under an open handle reads as it was when opened,
// consistently, and never crashes its host; the next open sees the new
// bytes. Null handles give their status.
TEST_F(Lookup, AFileRewrittenUnderAHandleReadsAsOpened) {
    CFGHANDLE h = h_;
    ASSERT_EQ(truncate(file_.path(), 20), 0);
    ASSERT_EQ(find_Section("S", &h), 1);
    EXPECT_EQ(getPropValue(&h, "base", out_, sizeof out_, PROP_STRING, nullptr, 0, 0), 0);
    EXPECT_EQ(find_Section("Next", &h), 1);
    CFGHANDLE reopened;
    ASSERT_EQ(opencfg(nullptr, nullptr, file_.path(), &reopened), 0);
    EXPECT_EQ(find_Section("S", &reopened), 0);
    closecfg(&reopened);
    EXPECT_EQ(opencfg(nullptr, nullptr, file_.path(), nullptr), CFG_NULL_HANDLE);
    closecfg(nullptr);
    EXPECT_EQ(filterValue(nullptr, "k", out_, "v"), CFG_NULL_HANDLE);
}

TEST_F(Lookup, ATextToSubstituteLeavesRoomForItsNul) {
    char out[CFG_VALUE_SIZE];
    std::string fits = "$" + std::string(CFG_VALUE_SIZE - 2, 'y');
    EXPECT_EQ(filterValue(&h_, "k", out, fits.c_str()), 1);
    EXPECT_EQ(out, fits);
    EXPECT_EQ(filterValue(&h_, "k", out, (fits + "y").c_str()), 0);
}

TEST_F(Lookup, SubstitutionStagesRunInOrder) {
    CFGHANDLE h = h_;
    ASSERT_EQ(find_Section("S", &h), 1);
    const std::string longest = std::string("<!{value-of:").append(1023, 'r').append("}>");
    std::string many;  // as many references as a whole value can hold
    for (int i = 0; i < 78; ++i) many += "!{value-of:r}";
    struct Case {
        const char *why, *key, *value;
        std::string expected;
    } const cases[] = {
        {"self reference adds nothing", "a", "!{value-of:a}", ""},
        {"dotted self reference adds nothing", "b", "!{value-of:S.b}", ""},
        {"same-section reference takes the first word", "k", "!{value-of:base}/lib", "/opt/x/lib"},
        {"dotted reference takes the whole value", "k", "!{value-of:UBroker.workDir}/log",
         "/srv/work dir/log"},
        {"empty key name reads the same key there", "sameKey", "!{value-of:UBroker.}", "from ub"},
        {"unclosed reference loses its marker", "k", "x!{value-of:base", "xbase"},
        {"missing key resolves to nothing", "k", "<!{value-of:nothere}>", "<>"},
        {"missing section resolves to nothing", "k", "<!{value-of:Ghost.key}>", "<>"},
        {"the longest reference is looked up", "k", longest.c_str(), "<>"},
        {"every reference of a full value resolves", "k", many.c_str(), std::string(78, 'x')},
        {"property references before environment", "k", "!{value-of:envval}", "/vtx/lib"},
        {"environment before system properties", "k", "a${QV_REF}b", "ab"},
        {"system property without } loses its marker", "k", "!{SystemProperty:a", "a"},
        {"environment before alternatives", "k", "${QV_Q}a?b", "ab"},
        {"a set alternative is taken", "k", "?${QV_VTX}?d?", "/vtx"},
        {"an unset alternative falls to the default", "k", "?${QV_UNSET}?/usr/jre?", "/usr/jre"},
        {"@ reference counts as unresolved", "k", "?@{n}?d?", "d"},
        {"empty alternatives are passed over", "k", "??x?", "x"},
        {"failed expansion leaves every reference", "k", "${QV_VTX}/a?${QV_UNSET}?b?",
         "${QV_VTX}/ab"},
        {"a single ? is kept", "k", "a?b", "a?b"},
        {"an unclosed chosen alternative runs to the end", "k", "a?${QV_UNSET}?b", "ab"},
    };
    for (const auto& c : cases) {
        char out[CFG_VALUE_SIZE];
        EXPECT_EQ(filterValue(&h, c.key, out, c.value), 1) << c.why;
        EXPECT_EQ(out, c.expected) << c.why;
    }
}

}  // namespace
