// Expands arbitrary text against a small fixed environment.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "qorvel/config.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("HOME", "/home/fuzz", 1);
    setenv("A", "1", 1);
    setenv("EMPTY", "", 1);
    setenv("LONG", std::string(3000, 'L').c_str(), 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string src(reinterpret_cast<const char*>(data), size);  // stops at the first NUL
    char dst[QORVEL_EXPAND_MAX + 1];
    dst[QORVEL_EXPAND_MAX] = '\x5a';
    if (expand_envvars(dst, src.c_str()) == 1) {
        if (std::strlen(dst) >= QORVEL_EXPAND_MAX) std::abort();
    }
    if (dst[QORVEL_EXPAND_MAX] != '\x5a') std::abort();
    return 0;
}
