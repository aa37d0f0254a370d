// Word and keyword rules shared by the line splitters and the section search.
#pragma once

#include <string_view>

namespace qorvel::cfg {

// White space as the POSIX locale's isspace sees it; bytes above 127 never are.
constexpr bool is_space(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// Keys and section headers are compared without regard to case.
bool equals_nocase(std::string_view a, std::string_view b);

// `text` without its leading white space.
std::string_view skip_space(std::string_view text);

// The first word of `text` (leading white space skipped): it ends at the first
// white-space character not preceded by a backslash.
std::string_view first_word(std::string_view text);

// "key=value" split as cfg_getkeyword splits it: the key up to the first
// unescaped "=", the value after it with its leading white space removed.
struct KeyValue {
    std::string_view key, value;
};
KeyValue split_keyword(std::string_view line);

}  // namespace qorvel::cfg
