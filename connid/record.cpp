#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "qorvel/connid.h"
#include "util/bounded_text.h"

namespace {

static_assert(sizeof(long) == 8, "the record's layout assumes LP64");
static_assert(offsetof(CONNIDINFO, connId) == 256);
static_assert(offsetof(CONNIDINFO, idFirst) == 768);
static_assert(offsetof(CONNIDINFO, idSecond) == 832);
static_assert(offsetof(CONNIDINFO, idRest) == 1088);
static_assert(offsetof(CONNIDINFO, idNumber) == 1344);
static_assert(sizeof(CONNIDINFO) == 1360);

constexpr std::string_view kSeparator = "::";
constexpr std::size_t kNumberSize = 16;  // the number is read from its first 15 characters

// The four fields of "first::second::number::rest". Only the first three
// separators split; each search starts just past the previous separator.
// With fewer separators the last field present runs to the end of the text
// and the missing ones stay empty.
struct Fields {
    // Missing fields are empty texts, never null views, so they copy like any other.
    std::string_view part[4] = {"", "", "", ""};
};

Fields split(std::string_view text) {
    Fields f;
    int i = 0;
    for (; i < 3; ++i) {
        std::size_t sep = text.find(kSeparator);
        if (sep == std::string_view::npos) break;
        f.part[i] = text.substr(0, sep);
        text.remove_prefix(sep + kSeparator.size());
    }
    f.part[i] = text;
    return f;
}

// Read as strtol reads it, then kept to 32 bits: 4294967297 becomes 1.
long to_number(std::string_view field) {
    char digits[kNumberSize];
    qorvel::bounded_copy(digits, field);
    return static_cast<std::int32_t>(std::strtol(digits, nullptr, 10));
}

}  // namespace

extern "C" {

// Over-long texts are cut to their fields' widths; the record is never overrun
// and connId always holds the text the fields were split from.
void parseConnID(const char* text, CONNIDINFO* info) {
    if (!info) return;
    // Copied through a local buffer: text may be connId itself or another field
    // of this record, and a connId filled by the caller may lack its terminator.
    std::string_view source =
        text == info->connId
            ? std::string_view(text, qorvel::bounded_length(text, CONNID_TEXT_SIZE))
            : std::string_view(text ? text : "");
    char copy[CONNID_TEXT_SIZE];
    qorvel::bounded_copy(copy, source);
    qorvel::bounded_copy(info->connId, copy);
    Fields f = split(info->connId);
    qorvel::bounded_copy(info->idFirst, f.part[0]);
    qorvel::bounded_copy(info->idSecond, f.part[1]);
    info->idNumber = to_number(f.part[2]);
    qorvel::bounded_copy(info->idRest, f.part[3]);
}

int makeConnIDInfo(const char* text, CONNIDINFO* info) {
    if (!info) return EINVAL;
    parseConnID(text, info);
    return 0;
}

// connId takes at most 511 deciphered characters, that is 1022 digits; longer
// cipher text is refused whole rather than deciphered in part.
long decryptAndFillConnIDInfo(const char* cipher, CONNIDINFO* info) {
    if (!info) return 0;
    constexpr std::size_t kMaxDigits = std::size_t{2} * (CONNID_TEXT_SIZE - 1);
    long n = 0;
    // connId itself may hold the cipher text: it is deciphered in place.
    if (cipher && std::strlen(cipher) <= kMaxDigits) {
        n = decryptConnId(cipher, info->connId);
    } else {
        info->connId[0] = '\0';
    }
    parseConnID(info->connId, info);
    return n;
}

// A cut identifier would decipher into a different one, so an identifier too
// long for encryptedId is refused: empty text, length 0.
int encryptIDInConnIDInfo(CONNIDINFO* info) {
    if (!info) return EINVAL;
    info->encryptedId[0] = '\0';
    info->encryptedIdLength = 0;
    if (qorvel::bounded_length(info->connId, CONNID_TEXT_SIZE) > CONNID_ENCIPHER_MAX) return 0;
    int n = encryptConnId(info->connId, info->encryptedId);
    info->encryptedIdLength = n > 0 ? n : 0;
    return 0;
}

}  // extern "C"
