#include "util/bounded_text.h"

#include <cstdio>
#include <cstring>

namespace qorvel {

std::size_t bounded_length(const char* buf, std::size_t size) {
    const void* nul = std::memchr(buf, '\0', size);
    return nul ? static_cast<std::size_t>(static_cast<const char*>(nul) - buf) : size;
}

bool bounded_copy(char* dst, std::size_t size, std::string_view src) {
    if (size == 0) return src.empty();
    std::size_t n = src.size() < size ? src.size() : size - 1;
    std::memmove(dst, src.data(), n);  // src may be dst's own text, or part of it
    dst[n] = '\0';
    return n == src.size();
}

bool bounded_append(char* dst, std::size_t size, std::string_view src) {
    if (size == 0) return src.empty();
    std::size_t used = bounded_length(dst, size);
    if (used == size) {  // an unterminated buffer loses its last byte to the terminator
        dst[size - 1] = '\0';
        return false;
    }
    std::size_t room = size - 1 - used;
    std::size_t n = src.size() < room ? src.size() : room;
    std::memcpy(dst + used, src.data(), n);
    dst[used + n] = '\0';
    return n == src.size();
}

bool bounded_vformat(char* dst, std::size_t size, const char* format, std::va_list args) {
    if (size == 0) return false;
    int n = std::vsnprintf(dst, size, format, args);
    if (n < 0) {
        dst[0] = '\0';
        return false;
    }
    return static_cast<std::size_t>(n) < size;
}

bool bounded_format(char* dst, std::size_t size, const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    bool whole = bounded_vformat(dst, size, format, args);
    va_end(args);
    return whole;
}

}  // namespace qorvel
