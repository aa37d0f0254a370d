// The generic table-driven read.
#include "services/service_read.h"

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstring>

#include "config/lookup.h"
#include "config/no_throw.h"
#include "services/error_detail.h"
#include "util/bounded_text.h"

namespace qorvel::services {
namespace {

struct Outcome {
    long result;
    bool endsRead;  // a key failed: the read stops here
};

bool is_integer(const CfgInfo& entry) { return (entry.flags & 0xFFFF) == PROP_INTEGER; }

long read_entry(const config::Section& section, const CfgInfo& entry, Defaults defaults) {
    if (defaults == Defaults::Table) {
        return config::lookup_value(section, entry.keyword, entry.value, entry.valueSize,
                                    entry.flags, entry.defaultText, entry.defaultNum, 1);
    }
    // The destination is its own default: an absent key keeps what is there.
    std::int64_t current = 0;
    if (is_integer(entry)) std::memcpy(&current, entry.value, sizeof current);
    return config::lookup_value(section, entry.keyword, entry.value, entry.valueSize, entry.flags,
                                static_cast<const char*>(entry.value), current, 1);
}

// After a value is stored: the version and default-directory rules, or the
// comment cut. False when the version is wrong (already reported).
bool apply_attributes(const CfgInfo& entry, const ChainRules& rules, ErrDetail* errDetail) {
    if (rules.versionWhere && (entry.flags & PROP_VERSION)) {
        std::int64_t version = 0;
        std::memcpy(&version, entry.value, sizeof version);
        if (version != INFO_VERSION) {
            report_code(errDetail, CV_ERR_VERSION, rules.versionWhere);
            return false;
        }
    }
    if (rules.versionWhere && (entry.flags & PROP_DEFAULT_DIR)) {
        getdef_dir(static_cast<char*>(entry.value), entry.valueSize);
    }
    if (rules.cutComments && entry.flags == PROP_STRING) {
        char* text = static_cast<char*>(entry.value);
        if (char* hash = std::strchr(text, '#')) *hash = '\0';
    }
    return true;
}

Outcome read_section(const config::Section& section, InfoList list, Defaults defaults,
                     const ChainRules& rules, ErrDetail* errDetail) {
    for (const CfgInfo* entry = list; entry->keyword; ++entry) {
        if (!entry->value) continue;  // a key its record does not have
        long r = read_entry(section, *entry, defaults);
        if (r != 0) {
            report_failuref(errDetail, r, "getPropValue for keyword %s", entry->keyword);
            return {r, true};
        }
        if (!apply_attributes(*entry, rules, errDetail)) return {CV_ERR_VERSION, false};
    }
    return {0, false};
}

}  // namespace

bool SectionChain::add(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    bool fits = vadd(format, args);
    va_end(args);
    return fits;
}

bool SectionChain::vadd(const char* format, std::va_list args) {
    if (count_ == kMaxNames) return false;
    if (!bounded_vformat(names_[count_].data(), nameSize_, format, args)) return false;
    ++count_;
    return true;
}

long read_chain(config::Section& section, InfoList list, const SectionChain& chain,
                const ChainRules& rules, ErrDetail* errDetail) {
    long result = 0;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        if (!config::find_section(section, chain[i])) {
            report_failuref(errDetail, CV_ERR_NO_SERVICE, "find_Section of %s for section %s",
                            section.file ? section.file->path().c_str() : "", chain[i]);
            if (rules.missingSectionEndsRead) return CV_ERR_NO_SERVICE;
            result = CV_ERR_NO_SERVICE;
            continue;
        }
        Outcome outcome =
            read_section(section, list, i == 0 ? rules.first : rules.rest, rules, errDetail);
        if (outcome.endsRead) return outcome.result;
        result = outcome.result;
    }
    return result;
}

long open_properties(OpenFile& file, const char* propertiesFile, const char* openFor,
                     ErrDetail* errDetail) {
    long r = config::open_file(nullptr, propertiesFile, file.path, file.file);
    if (r != 0) report_failuref(errDetail, r, "opencfg of %s for %s", file.path.c_str(), openFor);
    return r;
}

long open_section(OpenFile& file, config::Section& section, const char* propertiesFile,
                  const char* name) {
    if (long r = config::open_file(nullptr, propertiesFile, file.path, file.file); r != 0) return r;
    section = config::Section(file.file.get());
    return config::find_section(section, name) ? 0 : CFG_NO_SECTION;
}

long make_list(OwnedList& list, const DescriptorTable& table, const char* allocWhere,
               ErrDetail* errDetail) {
    InfoList raw = nullptr;
    long r = alloc_InfoList(&raw, table.entries.data(), table.bytes());
    if (r != 0) {
        report_system(errDetail, r, allocWhere);
        return r;
    }
    list.reset(raw);
    return 0;
}

long read_open_file(config::Section& section, const ServiceRead& read, ErrDetail* errDetail) {
    OwnedList list;
    if (long r = make_list(list, read.table, read.allocWhere, errDetail); r != 0) return r;
    std::memset(read.record, 0, read.table.recordSize);
    bind_list(list.get(), read.record, read.table);
    return read_chain(section, list.get(), read.chain, read.rules, errDetail);
}

long read_service(const char* propertiesFile, const char* openFor, const ServiceRead& read,
                  ErrDetail* errDetail) {
    return or_on_oom(static_cast<long>(ENOMEM), [&] {
        OpenFile file;
        if (long r = open_properties(file, propertiesFile, openFor, errDetail); r != 0) return r;
        config::Section section(file.file.get());
        return read_open_file(section, read, errDetail);
    });
}

}  // namespace qorvel::services
