#include <tuple>

#include "qorvel/connid.h"
#include "tests/unit.h"

namespace {

// connId, first, second, number and rest of a record, compared in one expectation.
using Fields = std::tuple<std::string, std::string, std::string, long, std::string>;
Fields fields(const CONNIDINFO& i) {
    return {i.connId, i.idFirst, i.idSecond, i.idNumber, i.idRest};
}

TEST(ParseConnID, SplitsTheFieldsAndCutsEachToItsWidth) {
    const std::string s(300, 's'), r(300, 'r'), x(509, 'x');
    struct Case {
        const char* name;
        std::string text;
        std::string first, second;
        long number;
        std::string rest;
    } cases[] = {
        {"rest keeps further separators", "h::b::3055::x::y", "h", "b", 3055, "x::y"},
        {"empty field between separators", "a::::7::z", "a", "", 7, "z"},
        {"three colons are a separator and a colon", "a:::b::1::r", "a", ":b", 1, "r"},
        {"number stops at a non-digit", "a::b::12ab::r", "a", "b", 12, "r"},
        {"number kept to 32 bits", "a::b::4294967297::r", "a", "b", 1, "r"},
        {"number read from 15 characters", "a::b::000000000000000999::r", "a", "b", 0, "r"},
        {"no separator: all is the first field", "alone", "alone", "", 0, ""},
        {"one separator: second runs to the end", "a::b:c", "a", "b:c", 0, ""},
        {"second field cut to 255", "a::" + s + "::1::r", "a", s.substr(0, 255), 1, "r"},
        {"text cut to 511, then first to 63", x + "::b::1::r", x.substr(0, 63), "", 0, ""},
    };
    for (const Case& c : cases) {
        CONNIDINFO info{};
        EXPECT_EQ(makeConnIDInfo(c.text.c_str(), &info), 0);
        EXPECT_EQ(fields(info), Fields(c.text.substr(0, CONNID_TEXT_SIZE - 1), c.first, c.second,
                                       c.number, c.rest))
            << c.name;
    }
}

TEST(DecryptAndFillConnIDInfo, RefusesCipherTextItCannotHoldAndClearsTheFields) {
    CONNIDINFO ok{};
    EXPECT_EQ(decryptAndFillConnIDInfo(std::string(1022, '0').c_str(), &ok), 511)
        << "511 deciphered characters fill connId exactly";
    for (const std::string& cipher :
         {std::string(1024, '0'), std::string(1023, '0'), std::string("3024zz")}) {
        CONNIDINFO info{};
        makeConnIDInfo("old::stale::1::left", &info);
        EXPECT_EQ(decryptAndFillConnIDInfo(cipher.c_str(), &info), 0) << cipher.size();
        EXPECT_EQ(fields(info), Fields()) << cipher.size();
    }
}

}  // namespace
