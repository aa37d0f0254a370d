// Environment references and alternative lists. The expansion is all or
// nothing: one unset variable leaves every reference of the value as written,
// and an alternative list then passes over only an alternative that begins
// with "${" (and of it, only that reference). What the author meant and what
// a reader takes part there, so the list is judged by the reader's own result.
#include <cstdlib>

#include "check_parts.h"

namespace props {
namespace {

struct EnvReference {
    std::string text;  // as written: "${NAME}" or "$NAME"
    std::string name;
};

// The references of `text` as the expansion reads them: "${NAME}", and
// "$NAME" running to the next '/' or '$' (which it takes), blanks included;
// "~$" is a plain '$'.
std::vector<EnvReference> env_references(std::string_view text) {
    std::vector<EnvReference> found;
    for (std::size_t at = text.find('$'); at != std::string_view::npos; at = text.find('$', at)) {
        if (at > 0 && text[at - 1] == '~') {
            ++at;
            continue;
        }
        std::size_t end;
        std::string name;
        if (at + 1 < text.size() && text[at + 1] == '{') {
            std::size_t close = text.find('}', at + 2);
            end = close == std::string_view::npos ? text.size() : close + 1;
            name = text.substr(at + 2, close == std::string_view::npos ? close : close - at - 2);
        } else {
            end = std::min(text.find_first_of("/$", at + 1), text.size());
            name = text.substr(at + 1, end - at - 1);
            if (end < text.size() && text[end] == '$') ++end;
        }
        found.push_back({std::string(text.substr(at, end - at)), name});
        at = end;
    }
    return found;
}

bool is_set(const std::string& name) { return !name.empty() && std::getenv(name.c_str()); }

void report_unset(std::string_view text, int line, Findings& out) {
    for (const EnvReference& ref : env_references(text)) {
        if (is_set(ref.name)) continue;
        std::string message = ref.text +
                              " is not set here: the value keeps its references "
                              "unexpanded";
        std::size_t blank = ref.name.find_first_of(" \t");
        if (ref.text[1] != '{' && blank != std::string::npos) {
            message = "'" + ref.name +
                      "' is one variable name, not set here: a reference "
                      "without braces runs to the next '/' or '$' (write ${" +
                      ref.name.substr(0, blank) + "})";
        }
        out.push_back({line, false, std::move(message)});
    }
}

// `text` as a reader of `key` gets it; "" when the substitution fails.
std::string filtered(const CFGHANDLE& handle, const std::string& key, const std::string& text) {
    char out[CFG_VALUE_SIZE];
    return filterValue(&handle, key.c_str(), out, text.c_str()) == 1 ? out : "";
}

bool expands(const std::string& text) {
    for (const EnvReference& ref : env_references(text)) {
        if (!is_set(ref.name)) return false;
    }
    return true;
}

}  // namespace

void check_environment(const CFGHANDLE& handle, const std::string& key, std::string_view value,
                       std::string_view resolved, int line, Findings& out) {
    std::size_t first = value.find('?'), last = value.rfind('?');
    if (first == std::string_view::npos || first == last) {
        report_unset(value, line, out);
        return;
    }
    report_unset(value.substr(0, first), line, out);
    report_unset(value.substr(last + 1), line, out);
    // The first alternative that expands whole is what the list is for; with
    // none, the list stands for nothing.
    std::string_view list = value.substr(first + 1, last - first - 1);
    std::string chosen;
    for (std::size_t at = 0; at <= list.size() && chosen.empty();) {
        std::size_t end = std::min(list.find('?', at), list.size());
        std::string alternative(list.substr(at, end - at));
        if (!alternative.empty() && expands(filtered(handle, key, alternative)))
            chosen = alternative;
        at = end + 1;
    }
    std::string intended = filtered(
        handle, key,
        std::string(value.substr(0, first)) + chosen + std::string(value.substr(last + 1)));
    if (resolved == intended) return;
    out.push_back({line, false,
                   "the alternatives give '" + std::string(resolved) + "' here, not '" + intended +
                       "': with one reference unset a reader expands none, then skips only a "
                       "leading ${...} of an alternative"});
}

}  // namespace props
