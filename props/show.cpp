// qorvel-props show and get: what a section resolves to, whole or one key.
#include <cstdio>

#include "commands.h"

namespace props {

int run_show(Invocation& c) {
    if (c.has(kLaunch)) {
        if (c.has(kRaw)) return c.fail("show takes --raw or --launch, not both");
        return run_launch_view(c);
    }
    const std::string& path = c.operands[0];
    const std::string& section = c.operands[1];
    c.doc["file"] = path;
    c.doc["section"] = section;
    Resolution resolution;
    if (!resolve_section(c, path, section, resolution)) return kFailure;
    bool any = put_levels(c, resolution);
    Json& keys = c.doc["keys"] = Json::array();
    for (const Setting& setting : resolution.settings) {
        keys.push_back(setting_json(setting));
        if (!c.json) std::printf("%s\n", setting_text(setting).c_str());
    }
    if (!any) return c.fail("no level of " + section + " is in " + path, kNo);
    return report_failed_substitutions(c, resolution.settings);
}

int run_get(Invocation& c) {
    const std::string& section = c.operands[1];
    const std::string& key = c.operands[2];
    c.doc["file"] = c.operands[0];
    c.doc["section"] = section;
    c.doc["key"] = key;
    Resolution resolution;
    if (!resolve_section(c, c.operands[0], section, resolution)) return kFailure;
    const Setting* setting = find_setting(resolution, key);
    if (!setting) return c.fail(key + " is set in no level of " + section, kNo);
    c.doc.update(setting_json(*setting));
    if (setting->failed) return report_failed_substitutions(c, {*setting});
    if (!c.json) std::printf("%s\n", setting->value.c_str());
    return kSuccess;
}

}  // namespace props
