#include <cctype>
#include <cstdlib>
#include <string_view>

#include "connid/unhex.h"
#include "qorvel/connid.h"

namespace {

// Built into the library: every product program enciphers identifiers with it.
constexpr char kConnIdKey[] = "XKT SESSID WAFERS";

// Steps through a key's characters, starting again after the last one. An
// empty key yields 0, which leaves every byte unchanged.
class RepeatingKey {
  public:
    explicit RepeatingKey(const char* key) : key_(key ? key : "") {}
    unsigned char next() {
        if (key_.empty()) return 0;
        if (pos_ == key_.size()) pos_ = 0;
        return static_cast<unsigned char>(key_[pos_++]);
    }

  private:
    std::string_view key_;
    std::size_t pos_ = 0;
};

bool all_hex_digits(std::string_view text) {
    for (char c : text) {
        if (!std::isxdigit(static_cast<unsigned char>(c))) return false;
    }
    return true;
}

}  // namespace

namespace qorvel {

int unhex(const char* digits) {
    char pair[3] = {digits[0], digits[0] ? digits[1] : '\0', '\0'};
    return static_cast<signed char>(std::strtol(pair, nullptr, 16));
}

}  // namespace qorvel

extern "C" {

long ubEncrypt(const char* plain, const char* key, char* out) {
    if (!out) return 0;
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string_view text = plain ? plain : "";
    RepeatingKey k(key);
    char* o = out;
    for (char c : text) {
        unsigned b = static_cast<unsigned char>(c) ^ k.next();
        *o++ = kDigits[b >> 4];
        *o++ = kDigits[b & 0xF];
    }
    *o = '\0';
    return static_cast<long>(o - out);
}

// Text with a character that is no hex digit is refused (0, empty `out`):
// read leniently, a corrupt identifier would decipher into plausible garbage.
// Byte n is written after digits 2n and 2n + 1 are read, so `out` may be
// `cipher` itself.
long ubDecrypt(const char* cipher, const char* key, char* out) {
    if (!out) return 0;
    std::string_view text = cipher ? cipher : "";
    if (!all_hex_digits(text)) {
        out[0] = '\0';
        return 0;
    }
    RepeatingKey k(key);
    long n = 0;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        out[n++] = static_cast<char>((qorvel::unhex(text.data() + i) & 0xFF) ^ k.next());
    }
    out[n] = '\0';
    return n;
}

int encryptConnId(const char* plain, char* out) {
    return static_cast<int>(ubEncrypt(plain, kConnIdKey, out));
}

long decryptConnId(const char* cipher, char* out) { return ubDecrypt(cipher, kConnIdKey, out); }

int cv_crypto(const char* key, const void* in, int length, void* out) {
    if (length <= 0 || !in || !out) return 0;
    const auto* src = static_cast<const unsigned char*>(in);
    auto* dst = static_cast<unsigned char*>(out);
    RepeatingKey k(key);
    for (int i = 0; i < length; ++i)
        dst[i] = src[i] ^ k.next();  // read before write: in may be out
    return length;
}

void cv_encrypt(void) {}
void cv_decrypt(void) {}

}  // extern "C"
