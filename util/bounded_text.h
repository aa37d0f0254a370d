// The one way to write text into a fixed-size buffer: every call truncates,
// always terminates (when the buffer has room for at least the terminator)
// and reports whether the whole text fitted.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string_view>

namespace qorvel {

// Replaces the buffer's content with `src`, which may lie inside the buffer;
// false when `src` was cut.
bool bounded_copy(char* dst, std::size_t size, std::string_view src);

// Appends `src` after the buffer's current text; false when it was cut.
bool bounded_append(char* dst, std::size_t size, std::string_view src);

// printf into the buffer; false when the formatted text was cut.
bool bounded_format(char* dst, std::size_t size, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
bool bounded_vformat(char* dst, std::size_t size, const char* format, std::va_list args)
    __attribute__((format(printf, 3, 0)));

template <std::size_t N>
bool bounded_copy(char (&dst)[N], std::string_view src) {
    return bounded_copy(dst, N, src);
}

template <std::size_t N>
bool bounded_append(char (&dst)[N], std::string_view src) {
    return bounded_append(dst, N, src);
}

// Length of the text in `buf`, never reading past `size` bytes.
std::size_t bounded_length(const char* buf, std::size_t size);

}  // namespace qorvel
