#include "resolve.h"

#include <qorvel/config.h>
#include <strings.h>

#include <cstring>

namespace props {
namespace {

bool same_key(const std::string& a, const std::string& b) {
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

// The entries of the section the handle is on, each key once (the first
// entry of a key is the one lookups find), in file order.
std::vector<const LogicalLine*> section_entries(const FileText& file, long start) {
    std::vector<const LogicalLine*> entries;
    std::vector<std::string> seen;
    for (const LogicalLine& line : file.lines()) {
        if (line.offset < start) continue;
        if (!line.text.empty() && line.text[0] == '[') break;
        if (line.text.empty() || line.text[0] == '#') continue;
        std::string key = entry_key(line.text).key;
        bool repeated = false;
        for (const std::string& s : seen) repeated = repeated || same_key(s, key);
        if (repeated) continue;
        seen.push_back(key);
        entries.push_back(&line);
    }
    return entries;
}

Setting read_setting(const CFGHANDLE& handle, const LogicalLine& line, const std::string& level,
                     bool raw) {
    Setting setting{entry_key(line.text).key, "", level, line.number};
    char value[CFG_VALUE_SIZE];
    long rc =
        getPropValue(&handle, setting.key.c_str(), value, sizeof value,
                     PROP_STRING | PROP_WHOLE_LINE, nullptr, PROP_NO_DEFAULT_NUMBER, raw ? 0 : 1);
    setting.failed = rc == CFG_BAD_VALUE;
    if (rc == 0) setting.value = value;
    return setting;
}

void merge(Resolution& out, Setting setting) {
    for (Setting& known : out.settings) {
        if (same_key(known.key, setting.key)) {
            known = std::move(setting);  // the deeper level overrides
            return;
        }
    }
    out.settings.push_back(std::move(setting));
}

}  // namespace

std::vector<std::string> level_names(const std::string& section) {
    std::vector<std::string> names;
    std::string accumulated;
    std::size_t pos = 0;
    while (pos <= section.size()) {
        std::size_t dot = section.find('.', pos);
        std::string part = section.substr(pos, dot == std::string::npos ? dot : dot - pos);
        if (!part.empty()) {
            if (!accumulated.empty()) accumulated += '.';
            accumulated += part;
            names.push_back(accumulated);
        }
        if (dot == std::string::npos) break;
        pos = dot + 1;
    }
    if (names.empty()) names.push_back(section);
    return names;
}

bool resolve(const FileText& file, const std::string& section, bool raw, Resolution& out,
             std::string& error) {
    CFGHANDLE handle;
    if (long rc = opencfg(nullptr, nullptr, file.path().c_str(), &handle); rc != 0) {
        error = "cannot open " + file.path() + ": " + std::strerror(static_cast<int>(rc));
        return false;
    }
    for (const std::string& name : level_names(section)) {
        Level level{name};
        if (find_Section(name.c_str(), &handle)) {
            level.found = true;
            level.line = file.line_at(handle.sectionOffset - 1);
            for (const LogicalLine* line : section_entries(file, handle.sectionOffset)) {
                merge(out, read_setting(handle, *line, name, raw));
            }
        }
        out.levels.push_back(level);
    }
    closecfg(&handle);
    return true;
}

const Setting* find_setting(const Resolution& resolution, const std::string& key) {
    for (const Setting& setting : resolution.settings) {
        if (same_key(setting.key, key)) return &setting;
    }
    return nullptr;
}

}  // namespace props
