#include <gtest/gtest.h>

#include <string>

#include "connid/unhex.h"
#include "qorvel/connid.h"

namespace {

// Key bytes of "XKT SESSID WAFERS": X=58 K=4B T=54 ' '=20 S=53 E=45 S=53 S=53
// I=49 D=44 ' '=20 W=57 A=41 F=46 E=45 R=52 S=53.
TEST(EncryptConnId, KnownCipherTexts) {
    struct Case {
        const char* name;
        const char* plain;
        const char* cipher;
    } cases[] = {
        {"first key character gives zero", "X", "00"},
        // 61^58=39 62^4B=29 63^54=37
        {"each byte meets the next key byte", "abc", "392937"},
        // 68^58=30 6F^4B=24 73^54=27 74^20=54 41^53=12
        {"five characters give ten digits", "hostA", "3024275412"},
        // 7F^58=27 4B^4B=00
        {"small values keep a leading zero", "\x7FK", "2700"},
        // byte 18 meets key byte 1 again: 7A^58=22
        {"key starts again after its last character", "XKT SESSID WAFERSz",
         "00000000000000000000000000000000"
         "0022"},
        {"empty plain text", "", ""},
    };
    for (const Case& c : cases) {
        char out[128] = "junk";
        int n = encryptConnId(c.plain, out);
        EXPECT_STREQ(out, c.cipher) << c.name;
        EXPECT_EQ(n, static_cast<int>(std::string(c.cipher).size())) << c.name;
    }
}

TEST(Cipher, EveryByteValueRoundTripsThroughTwoUpperCaseDigits) {
    std::string plain;
    for (int b = 1; b < 256; ++b) plain += static_cast<char>(b);  // far longer than the key
    std::string cipher(2 * plain.size() + 1, '\0');
    ASSERT_EQ(encryptConnId(plain.c_str(), cipher.data()), 2 * static_cast<long>(plain.size()));
    cipher.resize(2 * plain.size());
    EXPECT_EQ(cipher.find_first_not_of("0123456789ABCDEF"), std::string::npos);
    std::string back(plain.size() + 1, '\0');
    ASSERT_EQ(decryptConnId(cipher.c_str(), back.data()), static_cast<long>(plain.size()));
    EXPECT_EQ(back.c_str(), plain);
}

TEST(Cipher, RoundTripsWithOtherKeys) {
    for (const char* key :
         {"k", "a much longer key than the text", "", static_cast<const char*>(nullptr)}) {
        char cipher[64], back[32];
        ubEncrypt("round trip", key, cipher);
        EXPECT_EQ(ubDecrypt(cipher, key, back), 10);
        EXPECT_STREQ(back, "round trip") << (key ? key : "(null)");
    }
    char cipher[8];
    ubEncrypt("ab", "", cipher);
    EXPECT_STREQ(cipher, "6162") << "an empty key changes nothing";
}

TEST(UbDecrypt, ReadsCipherText) {
    struct Case {
        const char* name;
        const char* cipher;
        long length;
        const char* plain;
    } cases[] = {
        {"lower-case digits read like upper-case", "392937", 3, "abc"},
        {"mixed case", "4a4A", 2, "\x12\x01"},          // 4A^58=12, 4A^4B=01
        {"odd last digit read alone", "3", 1, "\x5B"},  // 03^58=5B
        {"empty text", "", 0, ""},
        {"a non-digit is refused", "39G9", 0, ""},
        {"a 0x prefix is refused", "0x41", 0, ""},
        {"a sign is refused", "-1", 0, ""},
        {"a blank is refused", " 41", 0, ""},
    };
    for (const Case& c : cases) {
        char out[16] = "junk";
        EXPECT_EQ(decryptConnId(c.cipher, out), c.length) << c.name;
        EXPECT_STREQ(out, c.plain) << c.name;
    }
    EXPECT_EQ(decryptConnId("4a", nullptr), 0);
    EXPECT_EQ(ubEncrypt("abc", "k", nullptr), 0);
}

TEST(Unhex, ReadsTwoCharactersAsASignedByte) {
    struct Case {
        const char* name;
        const char* digits;
        int value;
    } cases[] = {
        {"lower case", "4a", 0x4A},
        {"upper case", "4A", 0x4A},
        {"top of the signed range", "7F", 127},
        {"wraps to negative", "80", -128},
        {"all bits", "ff", -1},
        {"single digit before the end", "5", 5},
        {"only the first two characters", "123", 0x12},
        {"nothing convertible", "zz", 0},
        {"leading blank", " 5", 5},
        {"sign", "-1", -1},
    };
    for (const Case& c : cases) EXPECT_EQ(qorvel::unhex(c.digits), c.value) << c.name;
}

TEST(CvCrypto, XorsBytesWithTheRepeatingKey) {
    unsigned char all[256], once[256], twice[256];
    for (int b = 0; b < 256; ++b) all[b] = static_cast<unsigned char>(b);
    EXPECT_EQ(cv_crypto("XKT", all, 256, once), 256);
    EXPECT_EQ(once[0], 0x00 ^ 'X');
    EXPECT_EQ(once[3], 0x03 ^ 'X') << "the key restarts after its last character";
    EXPECT_EQ(cv_crypto("XKT", once, 256, twice), 256);
    EXPECT_EQ(std::string(twice, twice + 256), std::string(all, all + 256));

    cv_crypto("XKT", once, 256, once);  // in place
    EXPECT_EQ(std::string(once, once + 256), std::string(all, all + 256));

    unsigned char copy[4] = {};
    EXPECT_EQ(cv_crypto("", "ab\0c", 4, copy), 4);
    EXPECT_EQ(std::string(copy, copy + 4), std::string("ab\0c", 4)) << "an empty key copies";
}

TEST(CvCrypto, NoBytesForNonPositiveLength) {
    for (int length : {0, -1}) {
        unsigned char out[2] = {7, 7};
        EXPECT_EQ(cv_crypto("k", "ab", length, out), 0);
        EXPECT_EQ(out[0], 7) << "nothing written for length " << length;
    }
}

}  // namespace
