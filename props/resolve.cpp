#include "resolve.h"

#include <qorvel/config.h>
#include <strings.h>

#include <unordered_map>
#include <unordered_set>


namespace props {
namespace {

bool same_key(const std::string& a, const std::string& b) {
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

// The entries of the section at `offset`, each key once (the first entry of
// a key is the one lookups find), in file order.
std::vector<LogicalLine> section_entries(const FileText& file, long offset) {
    std::vector<LogicalLine> entries;
    std::unordered_set<std::string> seen;
    for (LogicalLine& line : file.section_lines(offset)) {
        if (line.text.empty() || line.text[0] == '#') continue;
        if (seen.insert(lower(split_entry(line.text).key)).second) entries.push_back(std::move(line));
    }
    return entries;
}

Setting read_setting(const CFGHANDLE& handle, const LogicalLine& line, const std::string& level,
                     bool raw) {
    Setting setting{split_entry(line.text).key, "", level, line.number};
    char value[CFG_VALUE_SIZE];
    long rc =
        getPropValue(&handle, setting.key.c_str(), value, sizeof value,
                     PROP_STRING | PROP_WHOLE_LINE, nullptr, PROP_NO_DEFAULT_NUMBER, raw ? 0 : 1);
    setting.failed = rc == CFG_BAD_VALUE;
    if (rc == 0) setting.value = value;
    return setting;
}

// The deeper level overrides; keys keep the order they first appear in.
void merge(Resolution& out, std::unordered_map<std::string, std::size_t>& index, Setting setting) {
    auto [at, added] = index.try_emplace(lower(setting.key), out.settings.size());
    if (added) {
        out.settings.push_back(std::move(setting));
    } else {
        out.settings[at->second] = std::move(setting);
    }
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

void resolve(const FileText& file, const std::string& section, bool raw, Resolution& out) {
    CFGHANDLE handle = file.handle();
    std::unordered_map<std::string, std::size_t> index;
    for (const std::string& name : level_names(section)) {
        Level level{name};
        if (find_Section(name.c_str(), &handle)) {
            level.found = true;
            level.line = file.line_at(handle.sectionOffset - 1);
            for (const LogicalLine& line : section_entries(file, handle.sectionOffset)) {
                merge(out, index, read_setting(handle, line, name, raw));
            }
        }
        out.levels.push_back(level);
    }
}

const Setting* find_setting(const Resolution& resolution, const std::string& key) {
    for (const Setting& setting : resolution.settings) {
        if (same_key(setting.key, key)) return &setting;
    }
    return nullptr;
}

}  // namespace props
