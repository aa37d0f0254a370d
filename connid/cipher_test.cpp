#include "qorvel/connid.h"
#include "tests/unit.h"

namespace {

// Key bytes: X=58 K=4B T=54 ' '=20 S=53 E=45 S=53 S=53 I=49 D=44 ' '=20 W=57
// A=41 F=46 E=45 R=52 S=53. Plain bytes: a=61 b=62 h=68 o=6F s=73 t=74 z=7A.
constexpr char kKey[] = "XKT SESSID WAFERS";

TEST(Cipher, KnownCipherTextsDecipherBack) {
    struct Case {
        const char* name;
        const char* key;
        const char* plain;
        const char* cipher;
    } cases[] = {
        {"a byte equal to the key byte keeps its zero", kKey, "X", "00"},
        // 68^58=30 6F^4B=24 73^54=27 74^20=54 41^53=12
        {"each byte meets the next key byte", kKey, "hostA", "3024275412"},
        // byte 18 meets key byte 1 again: 7A^58=22
        {"key restarts", kKey, "XKT SESSID WAFERSz", "000000000000000000000000000000000022"},
        {"empty plain text", kKey, "", ""},
        {"one-character key", "k", "ab", "0A09"},  // 61^6B=0A 62^6B=09
        {"an empty key changes nothing", "", "ab", "6162"},
        {"nor does a null key", nullptr, "ab", "6162"},
    };
    char identifier[16];
    EXPECT_EQ(encryptConnId("hostA", identifier), 10);
    EXPECT_STREQ(identifier, "3024275412") << "identifiers use the key above";
    for (const Case& c : cases) {
        char cipher[64] = "junk", back[32] = "junk";
        EXPECT_EQ(ubEncrypt(c.plain, c.key, cipher), static_cast<long>(std::strlen(c.cipher)));
        EXPECT_STREQ(cipher, c.cipher) << c.name;
        EXPECT_EQ(ubDecrypt(cipher, c.key, back), static_cast<long>(std::strlen(c.plain)));
        EXPECT_STREQ(back, c.plain) << c.name;
    }
}

// Anything but hex digits is refused whole: read leniently, a corrupt
// identifier would decipher into plausible garbage.
TEST(DecryptConnId, ReadsEitherCaseAndRefusesMalformedText) {
    const std::pair<const char*, const char*> cases[] = {
        {"4a4A", "\x12\x01"},  // 4A^58=12, 4A^4B=01
        {"3", "\x5B"},         // an odd last digit is read alone: 03^58=5B
        // refused: a non-digit, "0x", a sign, a blank
        {"39G9", ""},
        {"0x41", ""},
        {" 41", ""}};
    for (auto [cipher, plain] : cases) {
        char out[16] = "junk";
        EXPECT_EQ(decryptConnId(cipher, out), static_cast<long>(std::strlen(plain))) << cipher;
        EXPECT_STREQ(out, plain) << cipher;
    }
    EXPECT_EQ(decryptConnId("4a", nullptr), 0);
    EXPECT_EQ(ubEncrypt("abc", "k", nullptr), 0);
}

TEST(CvCrypto, XorsWithTheRepeatingKeyInPlaceAndWritesNothingForNoLength) {
    unsigned char all[256], once[256];
    for (int b = 0; b < 256; ++b) all[b] = static_cast<unsigned char>(b);
    EXPECT_EQ(cv_crypto("XKT", all, 256, once), 256);
    EXPECT_EQ(once[1], 0x01 ^ 'K');
    EXPECT_EQ(once[3], 0x03 ^ 'X') << "the key restarts after its last character";
    cv_crypto("XKT", once, 256, once);
    EXPECT_EQ(std::string(once, once + 256), std::string(all, all + 256));
    for (int length : {0, -1}) EXPECT_EQ(cv_crypto("k", "xy", length, once), 0);
    EXPECT_EQ(once[0], 0) << "nothing written";
}

}  // namespace
