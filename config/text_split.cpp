// In-place splitters of the library's interface. Each writes a piece no longer
// than its source text, which is why their C signatures carry no capacity.
#include "config/text_split.h"

#include <strings.h>

#include <cstring>

#include "qorvel/config.h"

namespace qorvel::cfg {
namespace {

// Index of the first `stop` character of `text` not preceded by a backslash.
template <typename Stop>
std::size_t unescaped_end(std::string_view text, Stop stop) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (stop(text[i]) && (i == 0 || text[i - 1] != '\\')) return i;
    }
    return text.size();
}

// Writes `piece` and a NUL into `dst`; `piece` never outgrows the source line.
void put(char* dst, std::string_view piece) {
    std::memmove(dst, piece.data(), piece.size());
    dst[piece.size()] = '\0';
}

}  // namespace

bool equals_nocase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

std::string_view skip_space(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && is_space(text[i])) ++i;
    return text.substr(i);
}

std::string_view first_word(std::string_view text) {
    text = skip_space(text);
    return text.substr(0, unescaped_end(text, is_space));
}

KeyValue split_keyword(std::string_view line) {
    std::string_view text = skip_space(line);
    std::size_t end = unescaped_end(text, [](char c) { return c == '='; });
    return {text.substr(0, end), end < text.size() ? skip_space(text.substr(end + 1)) : ""};
}

}  // namespace qorvel::cfg

using qorvel::cfg::put;
using qorvel::cfg::skip_space;

extern "C" void cfg_getkeyword(char* keyword, char* line) {
    auto [key, value] = qorvel::cfg::split_keyword(line);
    put(keyword, key);
    put(line, value);
}

extern "C" void cfg_getword(char* word, char* line) {
    std::string_view text = skip_space(line);
    std::size_t end = qorvel::cfg::unescaped_end(text, qorvel::cfg::is_space);
    put(word, text.substr(0, end));
    put(line, skip_space(text.substr(end)));
}

extern "C" void getword(char* word, char* text, char delimiter) {
    std::string_view rest = text;
    std::size_t end = rest.find(delimiter);
    if (end == std::string_view::npos) end = rest.size();
    put(word, rest.substr(0, end));
    put(text, end < rest.size() ? rest.substr(end + 1) : "");
}

extern "C" int spc_len(const char* text, int width) {
    if (width <= 0) return 0;
    std::size_t length = strnlen(text, static_cast<std::size_t>(width));
    if (length < static_cast<std::size_t>(width)) return static_cast<int>(length);
    while (length > 0 && text[length - 1] == ' ') --length;
    return static_cast<int>(length);
}

extern "C" void spc_copy(char* destination, const char* text, int width) {
    put(destination, std::string_view(text, static_cast<std::size_t>(spc_len(text, width))));
}
