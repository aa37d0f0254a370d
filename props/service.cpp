#include "service.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>

namespace props {
namespace {

using Names = std::vector<std::string>;
using Reader = std::function<long(const char* file, const Names&, void* record, ErrDetail*)>;

// One reader of the library: its table, how a list is bound to its record,
// how the record is read.
struct Kind {
    const char* name;
    const char* usage;  // what follows FILE on the command line
    std::size_t name_count;
    const CfgInfo* table;
    std::size_t table_size;
    std::size_t record_size;
    std::function<void(InfoList, void*)> bind;
    Reader read;
};

template <typename Record, std::size_t Rows, typename Read>
Kind make(const char* name, const char* usage, std::size_t count, const CfgInfo (&table)[Rows],
          void (*binder)(InfoList, Record*), Read read) {
    return {name,
            usage,
            count,
            table,
            sizeof table,
            sizeof(Record),
            [binder](InfoList list, void* r) { binder(list, static_cast<Record*>(r)); },
            [read](const char* f, const Names& n, void* r, ErrDetail* d) {
                return read(f, n, static_cast<Record*>(r), d);
            }};
}

// The replication records are read in their version 2 form, which begins
// with the version 1 record; the connection-manager readers use table defaults.
const std::vector<Kind>& kinds() {
    static const std::vector<Kind> all = {
        make("broker", "TYPE NAME", 2, UBcfg_info, set_UBserviceInfo,
             [](const char* f, const Names& n, UBSERVICEINFO* r, ErrDetail* d) {
                 return ReadUBproperties(f, n[0].c_str(), n[1].c_str(), r, d);
             }),
        make("nameserver", "NAME", 1, NScfg_info, set_NSserviceInfo,
             [](const char* f, const Names& n, NSserviceInfo* r, ErrDetail* d) {
                 return ReadNSproperties(f, n[0].c_str(), r, d);
             }),
        make("messenger", "NAME", 1, MsngrCfg_info, set_MsngrServiceInfo,
             [](const char* f, const Names& n, MsngrServiceInfo* r, ErrDetail* d) {
                 return ReadMsngrProperties(f, n[0].c_str(), r, d);
             }),
        make("configuration", "NAME", 1, CNFGcfg_info, set_CNFGserviceInfo,
             [](const char* f, const Names& n, CNFGserviceInfo* r, ErrDetail* d) {
                 return ReadConfigProperties(f, n[0].c_str(), r, 1, d);
             }),
        make("database", "NAME", 1, DBcfg_info, set_DBserviceInfo,
             [](const char* f, const Names& n, DBserviceInfo* r, ErrDetail* d) {
                 return ReadDBProperties(f, n[0].c_str(), r, 1, d);
             }),
        make("servergroup", "NAME", 1, SRVRGRPcfg_info, set_SRVRGRPserviceInfo,
             [](const char* f, const Names& n, SRVRGRPserviceInfo* r, ErrDetail* d) {
                 return ReadSrvrGrpProperties(f, n[0].c_str(), r, 1, d);
             }),
        make("replserver", "", 0, replServerV2_info, set_ReplServerPropsV2,
             [](const char* f, const Names&, ReplServerPropsV2* r, ErrDetail* d) {
                 return ReadReplServerProperties(f, r, REPL_VERSION_2, d);
             }),
        make("controlagent", "NAME", 1, replControlAgentV2_info, set_ReplControlAgentPropsV2,
             [](const char* f, const Names& n, ReplControlAgentPropsV2* r, ErrDetail* d) {
                 return ReadReplControlAgentProperties(f, n[0].c_str(), r, REPL_VERSION_2, d);
             }),
        make("agent", "", 0, replAgentV2_info, set_ReplAgentPropsV2,
             [](const char* f, const Names&, ReplAgentPropsV2* r, ErrDetail* d) {
                 return ReadReplAgentProperties(f, r, REPL_VERSION_2, d);
             }),
        make("transition", "", 0, replTransition_info, set_ReplTransitionProps,
             [](const char* f, const Names&, ReplTransitionProps* r, ErrDetail* d) {
                 return ReadReplTransitionProperties(f, r, 0, d);
             }),
        make("pmmgr", "SECTION", 1, pmmgr_info, set_PMMGRProps,
             [](const char* f, const Names& n, PMMGRProps* r, ErrDetail* d) {
                 return ReadPMMGRProperties(f, n[0].c_str(), r, 0, d);
             }),
        make("sqllist", "", 0, SQLConfigList_info, set_SQLConfigurationList,
             [](const char* f, const Names&, SQLConfigurationList* r, ErrDetail* d) {
                 return ReadSQLConfigList(f, r, d);
             }),
        make("sqlconfig", "NAME", 1, SQLConfig_info, set_SQLConfigurationProperties,
             [](const char* f, const Names& n, SQLConfigurationProperties* r, ErrDetail* d) {
                 return ReadSQLConfigProperties(f, n[0].c_str(), r, d);
             }),
        make("sqldb", "NAME", 1, SQLDatabase_info, set_SQLDbProperties,
             [](const char* f, const Names& n, SQLDbProperties* r, ErrDetail* d) {
                 return ReadSQLDbProperties(f, n[0].c_str(), r, d);
             }),
    };
    return all;
}

// Every field of the record, through a list bound to it like any caller's;
// `error` names a field the binder left unbound.
bool collect_fields(const Kind& kind, void* record, std::vector<Field>& fields,
                    std::string& error) {
    InfoList list = nullptr;
    if (alloc_InfoList(&list, kind.table, static_cast<int>(kind.table_size)) != 0) {
        error = "out of memory";
        return false;
    }
    kind.bind(list, record);
    for (const CfgInfo* entry = list; entry->keyword; ++entry) {
        if (!entry->value) {
            error = std::string("the record's field for ") + entry->keyword + " is not bound";
            break;
        }
        Field field{entry->keyword, (entry->flags & PROP_TYPE_MASK) == PROP_INTEGER, 0, ""};
        if (field.number) {
            std::int64_t value;
            std::memcpy(&value, entry->value, sizeof value);
            field.integer = value;
        } else {
            const char* text = static_cast<const char*>(entry->value);
            field.text.assign(text, strnlen(text, entry->valueSize));
        }
        fields.push_back(std::move(field));
    }
    free_InfoList(list);
    return error.empty();
}

}  // namespace

std::string service_kinds() {
    std::string text;
    for (const Kind& k : kinds()) {
        text += "  ";
        text += k.name;
        text += " FILE ";
        text += k.usage;
        text += '\n';
    }
    return text;
}

bool read_service(const std::string& kind_name, const std::string& file, const Names& names,
                  ServiceRead& out, std::string& error) {
    for (const Kind& k : kinds()) {
        if (kind_name != k.name) continue;
        if (names.size() != k.name_count) {
            error = "usage: service " + kind_name + " FILE " + k.usage;
            return false;
        }
        std::vector<std::max_align_t> record(k.record_size / sizeof(std::max_align_t) + 1);
        out.result = k.read(file.c_str(), names, record.data(), &out.detail);
        return out.result != 0 || collect_fields(k, record.data(), out.fields, error);
    }
    error = "unknown service kind '" + kind_name + "'";
    return false;
}

}  // namespace props
