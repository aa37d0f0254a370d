// How a resolved section is read, printed and written as JSON: the pieces
// show, get and diff share.
#include <cstdio>

#include "commands.h"
#include "load.h"

namespace props {

bool resolve_section(Invocation& c, const std::string& path, const std::string& section,
                     Resolution& out) {
    FileText file;
    if (!load_operand(c, path, file)) return false;
    resolve(file, section, c.has(kRaw), out);
    return true;
}

bool put_levels(Invocation& c, const Resolution& resolution) {
    bool any = false;
    Json& levels = c.doc["levels"] = Json::array();
    for (const Level& level : resolution.levels) {
        any = any || level.found;
        Json line = level.found ? Json(level.line) : Json(nullptr);
        levels.push_back({{"name", level.name}, {"found", level.found}, {"line", line}});
        if (c.json) continue;
        if (level.found) std::printf("level %s: line %d\n", level.name.c_str(), level.line);
        if (!level.found) std::printf("level %s: absent\n", level.name.c_str());
    }
    return any;
}

Json setting_json(const Setting& setting) {
    Json value = setting.failed ? Json(nullptr) : Json(setting.value);
    return {{"key", setting.key},
            {"value", value},
            {"level", setting.level},
            {"line", setting.line},
            {"substitution_failed", setting.failed}};
}

std::string setting_text(const Setting& setting) {
    return setting.key + " = " + setting.value + "  [" + setting.level + ':' +
           std::to_string(setting.line) + ']' + (setting.failed ? " substitution failed" : "");
}

int report_failed_substitutions(Invocation& c, const std::vector<Setting>& settings) {
    std::string keys;
    for (const Setting& setting : settings) {
        if (!setting.failed) continue;
        if (!keys.empty()) keys += ", ";
        keys += setting.key + " (" + setting.level + ':' + std::to_string(setting.line) + ')';
    }
    if (keys.empty()) return kSuccess;
    return c.fail("the substitution of " + keys +
                      " cannot complete: references that never "
                      "settle, or a result past 4095 characters",
                  kNo);
}

}  // namespace props
