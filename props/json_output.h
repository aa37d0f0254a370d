// The JSON qorvel-props prints: one object per run, versioned, valid for
// any bytes a properties file or a command line holds.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace props {

using Json = nlohmann::ordered_json;

// The version of the shapes qorvel-props(1) documents; a change that could
// break a reader of an older shape raises it.
constexpr int kJsonFormat = 1;

// A new document: {"format": 1}, the fields of a command to follow.
Json document();

// `bytes` as valid UTF-8: a valid sequence stands as it is, and every other
// byte becomes the character of the same number (U+0080 to U+00FF), so a
// Latin-1 file reads as written.
std::string utf8_text(std::string_view bytes);

// Prints `doc` on standard output, every string and key through utf8_text.
void print_json(const Json& doc);

}  // namespace props
