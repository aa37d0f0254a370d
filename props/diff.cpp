// qorvel-props diff: the keys two resolved sections disagree on, of one file
// (two services) or of two (production against staging).
#include <algorithm>
#include <cstdio>

#include "commands.h"

namespace props {
namespace {

struct Side {
    std::string path, section;
    Resolution resolution;
};

// "value [level:line]", or "(unset)".
std::string side_text(const Setting* s) {
    if (!s) return "(unset)";
    return s->value + " [" + s->level + ':' + std::to_string(s->line) + ']';
}

bool same(const Setting* left, const Setting* right) {
    return left && right && left->value == right->value;
}

// Adds the difference for `key`, if any, to the document and the text.
bool compare_key(Invocation& c, const std::string& key, const Side& left, const Side& right) {
    const Setting* l = find_setting(left.resolution, key);
    const Setting* r = find_setting(right.resolution, key);
    if (same(l, r)) return false;
    c.doc["differences"].push_back({{"key", key},
                                    {"left", l ? setting_json(*l) : Json(nullptr)},
                                    {"right", r ? setting_json(*r) : Json(nullptr)}});
    if (!c.json)
        std::printf("%s: %s | %s\n", key.c_str(), side_text(l).c_str(), side_text(r).c_str());
    return true;
}

// Resolves one side; kSuccess, or the status of a failure already reported.
int resolve_side(Invocation& c, Side& side, const char* name) {
    c.doc[name] = {{"file", side.path}, {"section", side.section}};
    if (!resolve_section(c, side.path, side.section, side.resolution)) return kFailure;
    const std::vector<Level>& levels = side.resolution.levels;
    if (std::none_of(levels.begin(), levels.end(), [](const Level& l) { return l.found; })) {
        return c.fail("no level of " + side.section + " is in " + side.path);
    }
    // A value that cannot be read cannot be compared.
    if (report_failed_substitutions(c, side.resolution.settings) != kSuccess) return kFailure;
    return kSuccess;
}

}  // namespace

// 0 when the sections agree on every key, 1 when not, 2 when one cannot be read.
int run_diff(Invocation& c) {
    bool one_file = c.operands.size() == 3;
    Side left{c.operands[0], c.operands[1], {}};
    Side right{one_file ? c.operands[0] : c.operands[2], c.operands.back(), {}};
    if (int status = resolve_side(c, left, "left"); status != kSuccess) return status;
    if (int status = resolve_side(c, right, "right"); status != kSuccess) return status;
    c.doc["differences"] = Json::array();
    bool differ = false;
    for (const Setting& s : left.resolution.settings) differ |= compare_key(c, s.key, left, right);
    for (const Setting& s : right.resolution.settings) {
        if (!find_setting(left.resolution, s.key)) differ |= compare_key(c, s.key, left, right);
    }
    c.doc["equal"] = !differ;
    return differ ? kNo : kSuccess;
}

}  // namespace props
