#include "config/expand_envvars.h"

#include "qorvel/config.h"
#include "tests/unit.h"

namespace {

const std::string kLongName(300, 'N'), kLongValue(3000, 'v');

class ExpandEnvvars : public ::testing::Test {
  protected:
    void SetUp() override {
        for (auto [name, value] : {std::pair{"HOME", "/home/u"},
                                   {"A", "1"},
                                   {"B", "2"},
                                   {"A/B", "slash"},
                                   {"EMPTY", ""},
                                   {"LONG_QV", kLongValue.c_str()},
                                   {kLongName.c_str(), "value"}}) {
            setenv(name, value, 1);
        }
        unsetenv("UNSET_QV");
        unsetenv("HOME.x");
    }
    void TearDown() override { unsetenv(kLongName.c_str()); }

    // What a buffer holding "sentinel" holds after expanding `src`, marked when it failed.
    static std::string expand(const std::string& src) {
        char dst[QORVEL_EXPAND_MAX + 1] = "sentinel";
        dst[QORVEL_EXPAND_MAX] = '#';  // a write past the buffer shows here
        int rc = expand_envvars(dst, src.c_str());
        EXPECT_EQ(dst[QORVEL_EXPAND_MAX], '#') << src.substr(0, 16);
        return rc == 1 ? dst : "failed, dst " + std::string(dst);
    }
};

TEST_F(ExpandEnvvars, ReferencesAndLiterals) {
    const std::pair<const char*, const char*> cases[] = {
        {"$HOME/bin", "/home/u/bin"},
        {"$HOME", "/home/u"},  // the end of the text closes a reference
        {"$A$B", "1B"},        // the second "$" only closes the first reference
        {"${A}${B}", "12"},
        {"${A/B}", "slash"},  // inside braces "/" belongs to the name
        {"x$EMPTY/y", "x/y"},
        {"price~$5", "price$5"},
        {"~/x", "~/x"},
        {"{x}", "{x}"},
        {"$A}", "}1"},  // "}" closes only a braced reference
    };
    for (auto [src, expected] : cases) EXPECT_EQ(expand(src), expected) << src;
}

TEST_F(ExpandEnvvars, FailuresLeaveTheDestinationUntouched) {
    const std::string failing[] = {
        "$UNSET_QV",
        "a/${UNSET_QV}/b",
        "$HOME.x",
        "${A",
        "$",
        "$/",
        "ok $A then $UNSET_QV",
        "${" + kLongName + "}",  // a name past its buffer would be cut to some other name
    };
    for (const auto& src : failing) EXPECT_EQ(expand(src), "failed, dst sentinel") << src;
}

// Every case yields 2047 characters; only the first one had no more.
TEST_F(ExpandEnvvars, ACutIsReportedExactly) {
    using qorvel::Expansion;
    const std::pair<std::string, Expansion> cases[] = {
        {std::string(QORVEL_EXPAND_MAX - 1, 's'), Expansion::kWhole},
        {std::string(QORVEL_EXPAND_MAX, 's'), Expansion::kCut},
        {"$LONG_QV", Expansion::kCut},  // a value past the bound on its own
        // Once the result is full the rest of the text is not read, references included.
        {std::string(3000, 's') + "${UNSET_QV}", Expansion::kCut},
    };
    for (const auto& [src, expected] : cases) {
        char dst[QORVEL_EXPAND_MAX + 1] = "";
        dst[QORVEL_EXPAND_MAX] = '#';  // a write past the buffer shows here
        EXPECT_EQ(qorvel::expand_references(dst, src.c_str()), expected) << src.substr(0, 16);
        EXPECT_EQ(std::strlen(dst), QORVEL_EXPAND_MAX - 1u) << src.substr(0, 16);
        EXPECT_EQ(dst[QORVEL_EXPAND_MAX], '#');
    }
}

}  // namespace
