// Value substitution: property references, environment references,
// system-property removal and alternatives, each stage on the result of the
// one before.

#include <new>
#include <string>
#include <string_view>
#include <unordered_map>

#include "config/expand_envvars.h"
#include "config/lookup.h"
#include "config/text_split.h"
#include "util/bounded_text.h"

namespace qorvel::config {
namespace {

constexpr std::string_view kValueOf = "!{value-of:";
constexpr std::string_view kSystemProperty = "!{SystemProperty:";
constexpr std::size_t kTextMax = CFG_VALUE_SIZE - 1;
constexpr std::size_t kReferenceMax = 1023;
// References that keep producing references (keys naming each other) would
// otherwise never settle. A whole value of 1023 characters holds at most 93
// "!{value-of:" markers; the bound leaves room for every one of them and a
// few levels of references inside inserted values.
constexpr int kMaxReferencePasses = 256;

// The value of `ref` ("key" or "section.key") as it appears inside
// "!{value-of:...}" while reading `key` in `section`; empty when absent.
std::string resolve_reference(const Section& section, std::string_view key, std::string_view ref,
                              std::size_t* cutAt) {
    char value[CFG_VALUE_SIZE] = "";
    std::size_t dot = ref.rfind('.');
    if (dot == std::string_view::npos) {
        if (cfg::equals_nocase(ref, key)) return {};  // refers to itself
        std::string name(ref);
        long rc = lookup_value(section, name.c_str(), value, sizeof value, PROP_STRING, nullptr,
                               PROP_NO_DEFAULT_NUMBER, 0, cutAt);
        return rc == 0 ? value : "";
    }
    std::string other_name(ref.substr(0, dot));
    std::string name(dot + 1 < ref.size() ? ref.substr(dot + 1) : key);
    // An empty section name means the current one.
    std::string header = other_name.empty() ? section.header : "[" + other_name + "]";
    if (cfg::equals_nocase(name, key) && header == section.header) return {};

    constexpr unsigned kWhole = PROP_STRING | PROP_WHOLE_LINE;
    long rc = CFG_NOT_FOUND;
    if (other_name.empty()) {
        rc = lookup_value(section, name.c_str(), value, sizeof value, kWhole, nullptr,
                          PROP_NO_DEFAULT_NUMBER, 0, cutAt);
    } else if (section.file) {
        // Read as a second handle would: the shared stream stays where it was.
        // A section that does not exist resolves to nothing rather than to the
        // entries above the first header.
        std::size_t stop = section.file->stop();
        Section other{section.file};
        if (find_section(other, other_name.c_str())) {
            rc = lookup_value(other, name.c_str(), value, sizeof value, kWhole, nullptr,
                              PROP_NO_DEFAULT_NUMBER, 0, cutAt);
        }
        section.file->set_stop(stop);
    }
    return rc == 0 ? value : "";
}

// Each distinct reference is looked up once per substitution: a loop of
// references then costs string work, not a scan of the file per pass.
class ReferenceCache {
  public:
    ReferenceCache(const Section& section, std::string_view key, std::size_t* cutAt)
        : section_(section), key_(key), cutAt_(cutAt) {}
    const std::string& value(std::string_view ref) {
        auto [it, added] = values_.try_emplace(std::string(ref));
        if (added) it->second = resolve_reference(section_, key_, ref, cutAt_);
        return it->second;
    }

  private:
    const Section& section_;
    std::string_view key_;
    std::size_t* cutAt_;
    std::unordered_map<std::string, std::string> values_;
};

// Replaces every "!{value-of:...}"; false when the text never settles or outgrows its bound.
bool replace_references(const Section& section, std::string_view key, std::string& text,
                        std::size_t* cutAt) {
    ReferenceCache cache(section, key, cutAt);
    for (int pass = 0;; ++pass) {
        std::size_t at = text.find(kValueOf);
        if (at == std::string::npos) return true;
        if (pass == kMaxReferencePasses) return false;
        std::size_t open = at + kValueOf.size();
        std::size_t close = text.find('}', open);
        std::string next = text.substr(0, at);
        if (close == std::string::npos) {
            next += text.substr(open);  // an unclosed reference loses only its marker
        } else {
            std::string_view ref = std::string_view(text).substr(open, close - open);
            if (ref.size() > kReferenceMax) return false;
            next += cache.value(ref);
            next += text.substr(close + 1);
        }
        // A reference that yields itself would yield itself on every pass.
        if (next.size() > kTextMax || next == text) return false;
        text = std::move(next);
    }
}

// An unset variable leaves every reference of the text unexpanded.
void expand_environment(std::string& text, std::size_t* cutAt) {
    char expanded[QORVEL_EXPAND_MAX];
    Expansion result = expand_references(expanded, text.c_str());
    if (result == Expansion::kCut) note_cut(cutAt, QORVEL_EXPAND_MAX - 1);
    if (result != Expansion::kFailed) text = expanded;
}

void remove_system_properties(std::string& text) {
    for (std::size_t at; (at = text.find(kSystemProperty)) != std::string::npos;) {
        std::size_t close = text.find('}', at + kSystemProperty.size());
        text.erase(at, close == std::string::npos ? kSystemProperty.size() : close + 1 - at);
    }
}

// "?alt?alt?default?": takes the first alternative that does not begin with a
// still unexpanded "${...}" or "@{...}" reference. When no "?" closes the
// chosen alternative it runs to the end of the text and is taken whole.
void choose_alternative(std::string& text) {
    std::size_t first = text.find('?');
    if (first == std::string::npos || text.find('?', first + 1) == std::string::npos) return;
    std::string chosen = text.substr(0, first);
    std::size_t p = first;
    do {
        ++p;
        std::string_view rest = std::string_view(text).substr(p);
        if (rest.starts_with("${") || rest.starts_with("@{")) {
            if (std::size_t close = rest.find('}'); close != std::string_view::npos) p += close + 1;
        }
    } while (p < text.size() && text[p] == '?');
    std::size_t end = text.find('?', p);
    if (end == std::string::npos) {
        chosen += text.substr(p);
    } else {
        chosen += text.substr(p, end - p);
        chosen += text.substr(text.rfind('?') + 1);
    }
    text = std::move(chosen);
}

int substitute(const Section& section, const char* key, char* out, std::size_t outSize,
               const char* value, std::size_t* cutAt) {
    std::string text = value;
    if (text.size() > kTextMax) return 0;
    if (!replace_references(section, key ? key : "", text, cutAt)) return 0;
    expand_environment(text, cutAt);
    remove_system_properties(text);
    choose_alternative(text);
    if (!bounded_copy(out, outSize, text)) note_cut(cutAt, outSize - 1);
    return 1;
}

}  // namespace

int filter_value(const Section& section, const char* key, char* out, std::size_t outSize,
                 const char* value, std::size_t* cutAt) {
    if (!out) return 0;
    if (!value) value = "";
    if (std::string_view(value).find_first_of("$@!?") == std::string_view::npos) {
        if (!bounded_copy(out, outSize, value)) note_cut(cutAt, outSize - 1);
        return 1;
    }
    try {
        return substitute(section, key, out, outSize, value, cutAt);
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

}  // namespace qorvel::config
