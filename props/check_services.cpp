// What the service readers make of their sections: the levels each read
// needs, the keys they know, numbers and the layout version.
#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "check_parts.h"

namespace props {

constexpr std::size_t kEveryParent = 1000;  // a chain of one section per dotted part

struct Family {
    const char* base;
    bool below;          // the sections under base belong to it, not base itself
    std::size_t levels;  // leading name parts each read also needs as sections of their own
    const CfgInfo* tables[2];
};

namespace {

// Each reader reads its sections with the tables of its record; where two
// readers share sections, a key of either is known.
constexpr Family kFamilies[] = {
    {"UBroker", false, 2, {UBcfg_info, nullptr}},
    {"NameServer", false, 1, {NScfg_info, nullptr}},
    {"Corvane.Messengers", false, 2, {MsngrCfg_info, nullptr}},
    {"configuration", false, kEveryParent, {CNFGcfg_info, SQLConfig_info}},
    {"database", false, kEveryParent, {DBcfg_info, SQLDatabase_info}},
    {"servergroup", false, kEveryParent, {SRVRGRPcfg_info, nullptr}},
    {"control-agent", true, 0, {replControlAgent_info, replControlAgentV2_info}},
    {"server", false, 0, {replServer_info, replServerV2_info}},
    {"agent", false, 0, {replAgent_info, replAgentV2_info}},
    {"transition", false, 0, {replTransition_info, nullptr}},
    {"sql-configuration", false, 0, {SQLConfigList_info, nullptr}},
};

// What the launcher reads from any section it is pointed at.
constexpr const char* kLauncherKeys[] = {"classpath", "jvmargs", "policyfile"};

const CfgInfo* row_of(const Family& family, const std::string& key) {
    for (const CfgInfo* table : family.tables) {
        for (const CfgInfo* row = table; row && row->keyword; ++row) {
            if (strcasecmp(row->keyword, key.c_str()) == 0) return row;
        }
    }
    return nullptr;
}

std::size_t edit_distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t substitute = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, substitute});
        }
    }
    return row[b.size()];
}

// The known key a typing slip away from `key`, or "".
std::string closest_key(const Family& family, const std::string& key) {
    std::string best;
    std::size_t best_distance = std::max<std::size_t>(2, key.size() / 4) + 1;
    for (const CfgInfo* table : family.tables) {
        for (const CfgInfo* row = table; row && row->keyword; ++row) {
            std::size_t d = edit_distance(lower(key), lower(row->keyword));
            if (d < best_distance) {
                best_distance = d;
                best = row->keyword;
            }
        }
    }
    return best;
}

// A number key is read from the leading digits of its first word.
void check_number(const CFGHANDLE& handle, const CfgInfo& row, int line, Findings& out) {
    char word[CFG_VALUE_SIZE];
    getPropValue(&handle, row.keyword, word, sizeof word, PROP_STRING, nullptr,
                 PROP_NO_DEFAULT_NUMBER, 1);
    char* end = nullptr;
    errno = 0;
    long number = std::strtol(word, &end, 10);
    bool whole = end != word && *end == '\0' && errno == 0;
    if (!whole) {
        out.push_back({line, false,
                       std::string(row.keyword) + " is a number: '" + word + "' reads as " +
                           std::to_string(number)});
    } else if ((row.flags & PROP_VERSION) && number != INFO_VERSION) {
        // The version is the first key a reader reads: a wrong one ends the
        // section's read, and sections below inherit it.
        out.push_back({line, true,
                       "infoVersion " + std::to_string(number) + " is not " +
                           std::to_string(INFO_VERSION) +
                           ": a reader skips every other key of this section, and of each "
                           "section below it that does not set infoVersion itself"});
    }
}

}  // namespace

const Family* family_of(std::string_view section) {
    for (const Family& f : kFamilies) {
        std::size_t n = std::strlen(f.base);
        if (section.size() < n || strncasecmp(section.data(), f.base, n) != 0) continue;
        if (section.size() == n ? !f.below : section[n] == '.') return &f;
    }
    return nullptr;
}

void check_levels(const Family& family, const std::string& section,
                  const std::function<bool(const std::string&)>& exists, int line, Findings& out) {
    std::string missing;
    std::size_t parts = 1;
    for (std::size_t dot = section.find('.'); dot != std::string::npos && parts <= family.levels;
         dot = section.find('.', dot + 1), ++parts) {
        std::string level = section.substr(0, dot);
        if (!exists(lower(level))) missing += (missing.empty() ? "" : ", ") + level;
    }
    if (missing.empty()) return;
    out.push_back({line, true,
                   "a reader of " + section + " also reads " + missing +
                       ", which is missing: the read fails"});
}

void check_service_entry(const Family& family, const CFGHANDLE& handle, const std::string& key,
                         std::string_view resolved, int line, Findings& out) {
    const CfgInfo* row = row_of(family, key);
    if (!row) {
        for (const char* launcher_key : kLauncherKeys) {
            if (strcasecmp(launcher_key, key.c_str()) == 0) return;
        }
        std::string near = closest_key(family, key);
        out.push_back(
            {line, false,
             key + " is no key of a " + family.base + " section" +
                 (near.empty() ? ": no reader reads it" : ": did you mean " + near + "?")});
    } else if ((row->flags & PROP_TYPE_MASK) == PROP_INTEGER) {
        check_number(handle, *row, line, out);
    } else if (resolved.size() >= row->valueSize) {
        out.push_back({line, false,
                       "the value of " + key + " is " + std::to_string(resolved.size()) +
                           " characters; its record field keeps " +
                           std::to_string(row->valueSize - 1)});
    }
}

}  // namespace props
