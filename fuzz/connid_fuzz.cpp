// Deciphers and splits arbitrary text, and checks that every identifier short
// enough to encipher comes back unchanged and that a longer one is refused
// whole. Records live on the heap so the address sanitizer sees any write past one.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "qorvel/connid.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    const char* c_text = text.c_str();  // stops at the first NUL
    std::size_t length = std::strlen(c_text);

    auto plain = std::make_unique<char[]>((length + 1) / 2 + 1);
    if (decryptConnId(c_text, plain.get()) > static_cast<long>((length + 1) / 2)) std::abort();

    auto info = std::make_unique<CONNIDINFO>();
    parseConnID(c_text, info.get());
    decryptAndFillConnIDInfo(c_text, info.get());

    makeConnIDInfo(c_text, info.get());
    // A refusal must leave neither an older cipher text nor its length.
    std::memset(info->encryptedId, 'x', 8);
    info->encryptedIdLength = 8;
    if (encryptIDInConnIDInfo(info.get()) != 0) std::abort();
    long expected = length > CONNID_ENCIPHER_MAX ? 0 : 2 * static_cast<long>(length);
    if (info->encryptedIdLength != expected ||
        std::strlen(info->encryptedId) != static_cast<std::size_t>(expected)) {
        std::abort();
    }
    if (length > CONNID_ENCIPHER_MAX) return 0;
    auto back = std::make_unique<CONNIDINFO>();
    if (decryptAndFillConnIDInfo(info->encryptedId, back.get()) != static_cast<long>(length)) {
        std::abort();
    }
    if (std::strcmp(back->connId, info->connId) != 0 || back->idNumber != info->idNumber) {
        std::abort();
    }
    return 0;
}
