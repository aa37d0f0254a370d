// Word and keyword rules shared by the line splitters and the section search.
#pragma once

#include <string_view>

namespace qorvel::cfg {

// White space as the POSIX locale's isspace sees it; bytes above 127 never are.
constexpr bool is_space(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// `text` without its leading white space.
std::string_view skip_space(std::string_view text);

// The first word of `text` (leading white space skipped): it ends at the first
// white-space character not preceded by a backslash.
std::string_view first_word(std::string_view text);

}  // namespace qorvel::cfg
