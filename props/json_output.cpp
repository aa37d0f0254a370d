#include "json_output.h"

#include <iostream>

namespace props {
namespace {

// Length of the well-formed UTF-8 sequence at `i`, or 0. The second byte's
// range shuts out overlong forms, surrogates and code points past U+10FFFF.
std::size_t sequence_length(std::string_view s, std::size_t i) {
    auto byte = [&s](std::size_t k) {
        return k < s.size() ? static_cast<unsigned char>(s[k]) : 0u;
    };
    unsigned lead = byte(i);
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byte(i + 1) < low || byte(i + 1) > high) return 0;
    for (std::size_t k = 2; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) return 0;
    }
    return length;
}

Json cleaned(const Json& value) {
    if (value.is_string()) return utf8_text(value.get_ref<const std::string&>());
    if (value.is_array()) {
        Json out = Json::array();
        for (const Json& element : value) out.push_back(cleaned(element));
        return out;
    }
    if (!value.is_object()) return value;
    Json out = Json::object();
    for (const auto& [key, element] : value.items()) out[utf8_text(key)] = cleaned(element);
    return out;
}

}  // namespace

Json document() { return {{"format", kJsonFormat}}; }

std::string utf8_text(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        if (std::size_t n = sequence_length(bytes, i); n > 0) {
            out.append(bytes.substr(i, n));
            i += n;
            continue;
        }
        auto byte = static_cast<unsigned char>(bytes[i++]);
        out += static_cast<char>(0xC0 | byte >> 6);
        out += static_cast<char>(0x80 | (byte & 0x3F));
    }
    return out;
}

void print_json(const Json& doc) { std::cout << cleaned(doc).dump(2) << '\n'; }

}  // namespace props
