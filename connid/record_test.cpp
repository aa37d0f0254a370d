#include <gtest/gtest.h>

#include <string>

#include "qorvel/connid.h"

namespace {

TEST(ParseConnID, SplitsTheFields) {
    const std::string f(100, 'f'), s(300, 's'), r(300, 'r'), x(509, 'x');
    struct Case {
        const char* name;
        std::string text;
        std::string first, second;
        long number;
        std::string rest;
    } cases[] = {
        {"four fields, rest keeps further separators", "hostA::brokerB::3055::x::y", "hostA",
         "brokerB", 3055, "x::y"},
        {"empty field between separators", "a::::7::z", "a", "", 7, "z"},
        {"three colons are a separator and a colon", "a:::b::1::r", "a", ":b", 1, "r"},
        {"number stops at a non-digit", "a::b::12ab::r", "a", "b", 12, "r"},
        {"empty number is 0", "a::b::::r", "a", "b", 0, "r"},
        {"negative number", "a::b::-5::r", "a", "b", -5, "r"},
        {"number kept to 32 bits", "a::b::4294967297::r", "a", "b", 1, "r"},
        {"no separator: all is the first field", "alone", "alone", "", 0, ""},
        {"one separator: second runs to the end", "a::b:c", "a", "b:c", 0, ""},
        {"two separators: number runs to the end", "a::b::77", "a", "b", 77, ""},
        {"empty text", "", "", "", 0, ""},
        {"first field cut to 63", f + "::b::1::r", f.substr(0, 63), "b", 1, "r"},
        {"second field cut to 255", "a::" + s + "::1::r", "a", s.substr(0, 255), 1, "r"},
        {"rest cut to 255", "a::b::1::" + r, "a", "b", 1, r.substr(0, 255)},
        {"number read from its first 15 characters", "a::b::000000000000000999::r", "a", "b", 0,
         "r"},
        {"split after the text is cut to 511", x + "::b::1::r", x.substr(0, 63), "", 0, ""},
    };
    for (const Case& c : cases) {
        CONNIDINFO info{};
        EXPECT_EQ(makeConnIDInfo(c.text.c_str(), &info), 0);
        EXPECT_EQ(info.connId, c.text.substr(0, CONNID_TEXT_SIZE - 1)) << c.name;
        EXPECT_EQ(info.idFirst, c.first) << c.name;
        EXPECT_EQ(info.idSecond, c.second) << c.name;
        EXPECT_EQ(info.idNumber, c.number) << c.name;
        EXPECT_EQ(info.idRest, c.rest) << c.name;
    }
}

TEST(ParseConnID, AcceptsTheRecordsOwnFields) {
    CONNIDINFO info{};
    std::string text = "h::b::9::x::y";
    text.copy(info.connId, text.size());
    parseConnID(info.connId, &info);
    EXPECT_STREQ(info.idRest, "x::y");
    parseConnID(info.idRest, &info);  // the source is overwritten while it is split
    EXPECT_STREQ(info.connId, "x::y");
    EXPECT_STREQ(info.idFirst, "x");
    EXPECT_STREQ(info.idSecond, "y");
}

TEST(ParseConnID, LeavesTheEncipheredTextAlone) {
    CONNIDINFO info{};
    info.encryptedIdLength = 4;
    std::string("ABCD").copy(info.encryptedId, 4);
    parseConnID("a::b::1::c", &info);
    EXPECT_STREQ(info.encryptedId, "ABCD");
    EXPECT_EQ(info.encryptedIdLength, 4);
}

TEST(ConnIdRecord, EncipheredRecordDeciphersToTheSameFields) {
    for (const std::string& text :
         {std::string("hostA::brokerB::3055::x::y"), std::string("solo"), std::string(127, 'q')}) {
        CONNIDINFO made{};
        makeConnIDInfo(text.c_str(), &made);
        EXPECT_EQ(encryptIDInConnIDInfo(&made), 0);
        EXPECT_EQ(made.encryptedIdLength, 2 * static_cast<long>(text.size()));

        CONNIDINFO read{};
        EXPECT_EQ(decryptAndFillConnIDInfo(made.encryptedId, &read),
                  static_cast<long>(text.size()));
        EXPECT_STREQ(read.connId, made.connId);
        EXPECT_STREQ(read.idFirst, made.idFirst);
        EXPECT_STREQ(read.idSecond, made.idSecond);
        EXPECT_EQ(read.idNumber, made.idNumber);
        EXPECT_STREQ(read.idRest, made.idRest);
        EXPECT_STREQ(read.encryptedId, "") << "deciphering does not fill encryptedId";
    }
}

TEST(EncryptIDInConnIDInfo, RefusesWhatCannotBeEncipheredWhole) {
    struct Case {
        const char* name;
        std::string connId;
        long length;
    } cases[] = {
        {"empty identifier gives nothing", "", 0},
        {"127 characters fit", std::string(127, 'a'), 254},
        {"128 characters are refused, not cut", std::string(128, 'a'), 0},
    };
    for (const Case& c : cases) {
        CONNIDINFO info{};
        std::string("stale").copy(info.encryptedId, 5);
        makeConnIDInfo(c.connId.c_str(), &info);
        EXPECT_EQ(encryptIDInConnIDInfo(&info), 0);
        EXPECT_EQ(info.encryptedIdLength, c.length) << c.name;
        EXPECT_EQ(std::string(info.encryptedId).size(), static_cast<size_t>(c.length)) << c.name;
    }
}

TEST(DecryptAndFillConnIDInfo, RefusesCipherTextItCannotHold) {
    CONNIDINFO ok{};
    EXPECT_EQ(decryptAndFillConnIDInfo(std::string(1022, '0').c_str(), &ok), 511)
        << "511 deciphered characters fill connId exactly";

    struct Case {
        const char* name;
        std::string cipher;
    } cases[] = {
        {"too long for connId", std::string(1024, '0')},
        {"odd digit past the limit", std::string(1023, '0')},
        {"not hexadecimal", "3024zz"},
    };
    for (const Case& c : cases) {
        CONNIDINFO info{};
        makeConnIDInfo("old::stale::1::left", &info);
        EXPECT_EQ(decryptAndFillConnIDInfo(c.cipher.c_str(), &info), 0) << c.name;
        EXPECT_STREQ(info.connId, "") << c.name;
        EXPECT_STREQ(info.idFirst, "") << c.name;
        EXPECT_STREQ(info.idRest, "") << c.name;
        EXPECT_EQ(info.idNumber, 0) << c.name;
    }
}

}  // namespace
