#include "config/lookup.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "config/test_file.h"

namespace {

using qorvel::filterValue;
using qorvel::getPropValue;
using qorvel::kNoNumericDefault;
using qorvel::PROP_INTEGER;
using qorvel::PROP_STRING;
using qorvel::PROP_WHOLE_LINE;
using qorvel::testing::TempFile;

constexpr std::uint32_t kWhole = PROP_STRING | PROP_WHOLE_LINE;

const std::string kFile =
    "top=above\n"
    "[UBroker]\n"
    "portNumber=3090\n"
    "workDir=/srv/work dir\n"
    "key =spaced\n"
    "spaced= value\n"
    "runs=a   b  c\n"
    "dup=first\n"
    "dup=second\n"
    "sameKey=from ub\n"
    "[S]\n"
    "a=!{value-of:a}\n"
    "b=!{value-of:S.b}\n"
    "base=/opt/x y\n"
    "cp=!{value-of:base}/lib\n"
    "cpWhole=!{value-of:S.base}/lib\n"
    "fromOther=!{value-of:UBroker.workDir}/log\n"
    "sameKey=!{value-of:UBroker.}\n"
    "unclosed=x!{value-of:base\n"
    "missing=<!{value-of:nothere}>\n"
    "ghost=<!{value-of:Ghost.key}>\n"
    "loopA=!{value-of:loopB}\n"
    "loopB=!{value-of:loopC}\n"
    "loopC=!{value-of:loopB}\n"
    "grow=!{value-of:S.g2}\n"
    "g2=" +
    std::string(600, 'x') +
    "!{value-of:S.g2}\n"
    "sys=!{SystemProperty:user.dir}/x\n"
    "alt=?${QV_JRE}?/usr/jre?\n"
    "mixed=${QV_VTX}/a?${QV_UNSET}?b?\n"
    "single=a?b\n"
    "open=a?${QV_UNSET}?b\n"
    "envInRef=!{value-of:envval}\n"
    "envval=${QV_VTX}/lib\n"
    "num=${QV_NUM}\n"
    "r=x\n"
    "many=" +
    [] {
        std::string refs;  // as many references as a whole value can hold
        for (int i = 0; i < 78; ++i) refs += "!{value-of:r}";
        return refs;
    }() +
    "\n"
    "[Next]\n"
    "onlyNext=1\n";

const std::string kManyX(78, 'x');

class Lookup : public ::testing::Test {
  protected:
    void SetUp() override {
        setenv("QV_VTX", "/vtx", 1);
        setenv("QV_NUM", "42", 1);
        unsetenv("QV_UNSET");
        unsetenv("QV_JRE");
        ASSERT_EQ(opencfg(nullptr, nullptr, file_.path(), &h_), 0);
    }
    void TearDown() override { closecfg(&h_); }

    // Text lookup in `section`; returns the status, the value in `out`.
    long text(const char* section, const char* key, std::uint32_t flags, int substitute,
              const char* dflt = nullptr) {
        EXPECT_EQ(find_Section(section, &h_), 1) << section;
        return getPropValue(&h_, key, out_, sizeof out_, flags, dflt, kNoNumericDefault,
                            substitute);
    }

    TempFile file_{kFile};
    CFGHANDLE h_;
    char out_[qorvel::kSubstitutionSize];
};

struct TextCase {
    const char* name;
    const char* section;
    const char* key;
    std::uint32_t flags;
    const char* expected;
    long status;
};

TEST_F(Lookup, ReadsKeysOfTheCurrentSection) {
    const TextCase cases[] = {
        {"key match ignores case", "UBroker", "WORKDIR", PROP_STRING, "/srv/work", 0},
        {"whole value keeps every word", "UBroker", "workDir", kWhole, "/srv/work dir", 0},
        {"blank before = hides the key", "UBroker", "key", PROP_STRING, "key", 2},
        {"blank after = is skipped", "UBroker", "spaced", PROP_STRING, "value", 0},
        {"first word of a blank run", "UBroker", "runs", PROP_STRING, "a", 0},
        {"whole value folds blank runs", "UBroker", "runs", kWhole, "a b c", 0},
        {"first duplicate wins", "UBroker", "dup", PROP_STRING, "first", 0},
        {"lookup stops at the next header", "S", "onlyNext", PROP_STRING, "onlyNext", 2},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(text(c.section, c.key, c.flags, 0), c.status) << c.name;
        EXPECT_STREQ(out_, c.expected) << c.name;
    }
}

TEST_F(Lookup, WithoutSectionReadsTheEntriesAboveTheFirstHeader) {
    EXPECT_EQ(
        getPropValue(&h_, "top", out_, sizeof out_, PROP_STRING, nullptr, kNoNumericDefault, 0), 0);
    EXPECT_STREQ(out_, "above");
}

TEST_F(Lookup, AppliesDefaults) {
    char dflt[] = "fallback";
    EXPECT_EQ(text("UBroker", "absent", PROP_STRING, 0, dflt), 0);
    EXPECT_STREQ(out_, "fallback");
    std::strcpy(out_, "in place");
    EXPECT_EQ(text("UBroker", "absent", PROP_STRING, 0, out_), 0);
    EXPECT_STREQ(out_, "in place");

    struct Case {
        const char* name;
        const char* key;
        long dflt;
        long expected;
        long status;
    } const numbers[] = {
        {"number read", "PORTNUMBER", 7, 3090, 0},
        {"absent with default", "absent", 7, 7, 0},
        {"absent without default", "absent", kNoNumericDefault, 4294967295L, 2},
    };
    ASSERT_EQ(find_Section("UBroker", &h_), 1);
    for (const auto& c : numbers) {
        long value = 0;
        EXPECT_EQ(getPropValue(&h_, c.key, &value, sizeof value, PROP_INTEGER, nullptr, c.dflt, 0),
                  c.status)
            << c.name;
        EXPECT_EQ(value, c.expected) << c.name;
    }
    long value = 0;
    ASSERT_EQ(find_Section("S", &h_), 1);
    EXPECT_EQ(getPropValue(&h_, "num", &value, sizeof value, PROP_INTEGER, nullptr, 0, 1), 0);
    EXPECT_EQ(value, 42);
}

TEST_F(Lookup, CutsValuesToTheDestination) {
    char small[6];
    ASSERT_EQ(find_Section("UBroker", &h_), 1);
    EXPECT_EQ(
        getPropValue(&h_, "workDir", small, sizeof small, kWhole, nullptr, kNoNumericDefault, 1),
        0);
    EXPECT_STREQ(small, "/srv/");
    EXPECT_EQ(getPropValue(nullptr, "workDir", small, sizeof small, kWhole, nullptr,
                           kNoNumericDefault, 1),
              CFG_NULL_HANDLE);
    EXPECT_STREQ(small, "/srv/");
}

TEST_F(Lookup, SubstitutesReferences) {
    const TextCase cases[] = {
        {"self reference adds nothing", "S", "a", kWhole, "", 0},
        {"dotted self reference adds nothing", "S", "b", kWhole, "", 0},
        {"same-section reference takes the first word", "S", "cp", kWhole, "/opt/x/lib", 0},
        {"dotted reference takes the whole value", "S", "cpWhole", kWhole, "/opt/x y/lib", 0},
        {"reference into another section", "S", "fromOther", kWhole, "/srv/work dir/log", 0},
        {"empty key name reads the same key there", "S", "sameKey", kWhole, "from ub", 0},
        {"unclosed reference loses its marker", "S", "unclosed", kWhole, "xbase", 0},
        {"missing key resolves to nothing", "S", "missing", kWhole, "<>", 0},
        {"missing section resolves to nothing", "S", "ghost", kWhole, "<>", 0},
        {"inserted values are substituted too", "S", "envInRef", kWhole, "/vtx/lib", 0},
        {"every reference of a full value resolves", "S", "many", kWhole, kManyX.c_str(), 0},
        {"keys naming each other end in failure", "S", "loopA", kWhole, "loopA", CFG_BAD_VALUE},
        {"a value that keeps growing ends in failure", "S", "grow", kWhole, "grow", CFG_BAD_VALUE},
        {"system properties are removed", "S", "sys", kWhole, "/x", 0},
        {"unset alternative falls to the default", "S", "alt", kWhole, "/usr/jre", 0},
        {"failed expansion leaves every reference", "S", "mixed", kWhole, "${QV_VTX}/ab", 0},
        {"a single ? is kept", "S", "single", kWhole, "a?b", 0},
        {"an unclosed chosen alternative runs to the end", "S", "open", kWhole, "ab", 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(text(c.section, c.key, c.flags, 1), c.status) << c.name;
        EXPECT_STREQ(out_, c.expected) << c.name;
    }
    setenv("QV_JRE", "/opt/jre", 1);
    EXPECT_EQ(text("S", "alt", kWhole, 1), 0);
    EXPECT_STREQ(out_, "/opt/jre");
}

TEST(FilterValue, StagesRunInOrder) {
    TempFile file("[S]\nk=v\n");
    CFGHANDLE h;
    ASSERT_EQ(opencfg("S", nullptr, file.path(), &h), 0);
    setenv("QV_REF", "!{SystemProperty:x}", 1);
    setenv("QV_Q", "?", 1);
    unsetenv("QV_UNSET");
    struct Case {
        const char* name;
        const char* value;
        const char* expected;
    } const cases[] = {
        {"plain text is copied", "plain text", "plain text"},
        {"null value gives empty", nullptr, ""},
        {"environment before system properties", "a${QV_REF}b", "ab"},
        {"environment before alternatives", "${QV_Q}a?b", "ab"},
        {"property reference before environment", "!{value-of:k}$QV_Q", "v?"},
        {"@ reference counts as unresolved", "?@{n}?d?", "d"},
        {"empty alternatives are passed over", "??x?", "x"},
        {"system property without } loses its marker", "!{SystemProperty:a", "a"},
    };
    for (const auto& c : cases) {
        char out[64] = "untouched";
        EXPECT_EQ(filterValue(&h, "other", out, sizeof out, c.value), 1) << c.name;
        EXPECT_STREQ(out, c.expected) << c.name;
    }
    char out[8] = "keep";
    EXPECT_EQ(filterValue(nullptr, "k", out, sizeof out, "x"), CFG_NULL_HANDLE);
    EXPECT_STREQ(out, "keep");
    closecfg(&h);
}

}  // namespace
