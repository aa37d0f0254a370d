// qorvel-props show --launch: what qorvel -a FILE::SECTION gives the JVM on
// this machine, each value with the level and line it comes from. The values
// are read as the launcher reads them, by getPropertiesSized with the
// launcher's capacities; the origins come from the resolution show prints.
#include <qorvel/config.h>
#include <sys/utsname.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "commands.h"
#include "load.h"

namespace props {
namespace {

// The keys -a reads, each with the room the launcher gives it (a value cut
// to fit makes it refuse to start) and whether its ',' become ':'.
struct LaunchKey {
    const char* name;
    std::size_t capacity;
    bool path_list;
};
constexpr LaunchKey kLaunchKeys[] = {
    {"classpath", 4096, true}, {"jvmargs", 2048, false}, {"policyfile", 2048, false}};
constexpr std::size_t kPartSize = 1024;  // for either part of "FILE::SECTION", expanded
constexpr const char* kDefaultFile = "JavaTools.properties";
constexpr const char* kDefaultSection = "Common";

// The operands as the launcher reads "FILE::SECTION": references expanded, a
// section that does not expand taken as the default, the operating system's
// name appended as the deepest level.
struct Target {
    std::string file, section, deepest, os;
};

bool make_target(const std::string& file, const std::string& section, Target& t) {
    char expanded[QORVEL_EXPAND_MAX];
    if (section.size() >= kPartSize) return false;
    t.section = expand_envvars(expanded, section.c_str()) ? expanded : "";
    if (t.section.empty()) t.section = kDefaultSection;
    std::string name = file.empty() ? kDefaultFile : file;
    name.erase(0, std::min(name.find_first_not_of(' '), name.size()));
    if (name.size() >= kPartSize || !expand_envvars(expanded, name.c_str())) return false;
    t.file = expanded;
    utsname system{};
    t.os = uname(&system) == 0 ? system.sysname : "";
    t.deepest = t.os.empty() ? t.section : t.section + '.' + t.os;
    return t.file.size() < kPartSize && t.section.size() < kPartSize &&
           t.deepest.size() < kPartSize;
}

// The values -a would take, read as the launcher reads them.
struct Values {
    long rc = 0;
    std::string text[std::size(kLaunchKeys)];
};

Values read_values(const std::string& path, const std::string& deepest) {
    std::string buffers[std::size(kLaunchKeys)];
    for (std::size_t i = 0; i < std::size(kLaunchKeys); ++i) {
        buffers[i].assign(kLaunchKeys[i].capacity, '\0');
    }
    Values values;
    static_assert(std::size(kLaunchKeys) == 3);
    values.rc = getPropertiesSized(3, 1, path.c_str(), deepest.c_str(), kLaunchKeys[0].name,
                                   buffers[0].data(), buffers[0].size(), kLaunchKeys[1].name,
                                   buffers[1].data(), buffers[1].size(), kLaunchKeys[2].name,
                                   buffers[2].data(), buffers[2].size());
    for (std::size_t i = 0; i < std::size(kLaunchKeys); ++i) {
        values.text[i] = buffers[i].c_str();
    }
    return values;
}

// The text of the entry at `line` after its "=", as the file holds it.
std::string written_value(const FileText& file, int line) {
    const std::vector<LogicalLine>& lines = file.lines();  // in line order
    auto at = std::lower_bound(lines.begin(), lines.end(), line,
                               [](const LogicalLine& l, int number) { return l.number < number; });
    return at != lines.end() && at->number == line ? split_entry(at->text).value : "";
}

// How many characters of the value reach the launcher when it is cut on the
// way, else 0: read short of what the file holds, or filling its room. A
// substituted value passes through the environment expansion's buffer, which
// cuts in silence, so one that fills that buffer is taken as cut.
std::size_t kept_length(const FileText& file, const Setting& substituted, const Setting* raw,
                        const LaunchKey& key) {
    if (raw && written_value(file, raw->line).size() > raw->value.size()) return raw->value.size();
    std::size_t room = std::min<std::size_t>(key.capacity, QORVEL_EXPAND_MAX) - 1;
    return substituted.value.size() >= room ? room : 0;
}

// Adds each value -a takes, with its origin; the launcher's refusal, or "".
std::string put_values(Invocation& c, const FileText& file, const Resolution& resolution,
                       const Resolution& raw, const Values& values) {
    std::string refusal;
    Json& keys = c.doc["keys"] = Json::array();
    for (std::size_t i = 0; i < std::size(kLaunchKeys); ++i) {
        const LaunchKey& key = kLaunchKeys[i];
        const Setting* setting = find_setting(resolution, key.name);
        std::string value = values.text[i];
        if (key.path_list) std::replace(value.begin(), value.end(), ',', ':');
        if (!setting || value.empty()) {  // the launcher drops an empty value
            keys.push_back(
                {{"key", key.name}, {"value", nullptr}, {"level", nullptr}, {"line", nullptr}});
            if (!c.json) std::printf("%s unset\n", key.name);
            continue;
        }
        Setting shown = *setting;
        shown.value = value;
        keys.push_back(setting_json(shown));
        if (!c.json) std::printf("%s\n", setting_text(shown).c_str());
        std::size_t kept = kept_length(file, *setting, find_setting(raw, key.name), key);
        if (kept > 0 && refusal.empty()) {
            refusal = "qorvel -a refuses to start: " + std::string(key.name) + " (" +
                      setting->level + ':' + std::to_string(setting->line) + ") is longer than " +
                      std::to_string(kept) + " characters";
        }
    }
    return refusal;
}

// Opens the file as -a does (here, else under $VTX/properties) and resolves
// the deepest level twice: substituted and raw. False after c.fail.
bool read_target(Invocation& c, const Target& target, FileText& file, Resolution& resolution,
                 Resolution& raw) {
    if (!load_operand(c, target.file, file)) return false;
    c.doc["path"] = file.path();
    resolve(file, target.deepest, false, resolution);
    resolve(file, target.deepest, true, raw);
    return true;
}

}  // namespace

int run_launch_view(Invocation& c) {
    const std::string& file_operand = c.operands[0];
    const std::string& section = c.operands[1];
    c.doc["file"] = file_operand;
    c.doc["section"] = section;
    Target target;
    if (!make_target(file_operand, section, target)) {
        return c.fail("qorvel -a refuses " + file_operand + "::" + section +
                      ": a part does not expand, or is 1024 characters or more");
    }
    c.doc["os"] = target.os;
    if (level_names(target.deepest).back().size() > CFG_SECTION_NAME_MAX) {
        return c.fail("qorvel -a refuses " + target.deepest + ": a level's name is over " +
                      std::to_string(CFG_SECTION_NAME_MAX) + " characters");
    }
    FileText file;
    Resolution resolution, raw;
    if (!read_target(c, target, file, resolution, raw)) return kFailure;
    if (!put_levels(c, resolution)) {
        return c.fail("no level of " + target.deepest + " is in " + file.path(), kNo);
    }
    Values values = read_values(file.path(), target.deepest);
    if (values.rc == CFG_BAD_VALUE) {
        std::vector<Setting> read;  // the keys -a reads, as the deepest level gives them
        for (const LaunchKey& key : kLaunchKeys) {
            if (const Setting* s = find_setting(resolution, key.name)) read.push_back(*s);
        }
        if (report_failed_substitutions(c, read) != kSuccess) return kNo;
        return c.fail("the substitution of a value a deeper level overrides cannot complete", kNo);
    }
    if (values.rc != 0) return c.fail(cannot_read(file.path(), read_failure(values.rc)));
    std::string refusal = put_values(c, file, resolution, raw, values);
    return refusal.empty() ? kSuccess : c.fail(refusal, kNo);
}

}  // namespace props
