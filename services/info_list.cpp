// Info lists: private copies of a descriptor table, bound to one record.
#include <strings.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "qorvel/services.h"
#include "services/tables.h"

namespace qorvel::services {
namespace {

constexpr std::size_t kNoRow = static_cast<std::size_t>(-1);

// The row of `table` whose key is `keyword`. A list copied from the table
// holds the table's own keyword pointers in the table's order, so the row at
// `hint` is tried first and a reader's binding costs no search.
std::size_t row_of(const DescriptorTable& table, const char* keyword, std::size_t hint) {
    std::size_t rows = table.offsets.size();
    if (hint < rows && table.entries[hint].keyword == keyword) return hint;
    for (std::size_t row = 0; row < rows; ++row) {
        if (strcasecmp(table.entries[row].keyword, keyword) == 0) return row;
    }
    return kNoRow;
}

// Both SQL configuration records are one 1024-byte text at offset 0, and each
// of the two tables has one key naming it: one routine binds a list of either
// table to either record, so neither binder leaves the other table's key
// unbound.
static_assert(offsetof(SQLConfigurationList, configuration_names_list) == 0 &&
              offsetof(SQLConfigurationProperties, database_id_list) == 0);

void bind_sql_text(InfoList list, void* record) {
    if (!list || !record) return;
    for (std::size_t i = 0; list[i].keyword; ++i) {
        const char* keyword = list[i].keyword;
        bool known = row_of(SQLConfig_info_layout, keyword, i) != kNoRow ||
                     row_of(SQLConfigList_info_layout, keyword, i) != kNoRow;
        list[i].value = known ? record : nullptr;
    }
}

}  // namespace

void bind_list(InfoList list, void* record, const DescriptorTable& table) {
    if (!list || !record) return;
    auto* base = static_cast<unsigned char*>(record);
    for (std::size_t i = 0; list[i].keyword; ++i) {
        std::size_t row = row_of(table, list[i].keyword, i);
        list[i].value = row == kNoRow ? nullptr : base + table.offsets[row];
    }
}

}  // namespace qorvel::services

using qorvel::services::bind_list;
using qorvel::services::bind_sql_text;
namespace tables = qorvel::services;

extern "C" long alloc_InfoList(InfoList* list, const CfgInfo* table, int size) {
    if (!list || !table) return EINVAL;
    *list = static_cast<InfoList>(std::malloc(static_cast<std::size_t>(size)));
    if (!*list) return ENOMEM;
    std::memcpy(*list, table, static_cast<std::size_t>(size));
    return 0;
}

extern "C" void free_InfoList(InfoList list) { std::free(list); }

#define QV_BINDER(name, Record, table) \
    extern "C" void name(InfoList list, Record* record) { bind_list(list, record, table); }

QV_BINDER(set_UBserviceInfo, UBSERVICEINFO, tables::UBcfg_info_layout)
QV_BINDER(set_MsngrServiceInfo, MsngrServiceInfo, tables::MsngrCfg_info_layout)
QV_BINDER(set_NSserviceInfo, NSserviceInfo, tables::NScfg_info_layout)
QV_BINDER(set_CNFGserviceInfo, CNFGserviceInfo, tables::CNFGcfg_info_layout)
QV_BINDER(set_DBserviceInfo, DBserviceInfo, tables::DBcfg_info_layout)
QV_BINDER(set_SRVRGRPserviceInfo, SRVRGRPserviceInfo, tables::SRVRGRPcfg_info_layout)
QV_BINDER(set_ReplServerProps, ReplServerProps, tables::replServer_info_layout)
QV_BINDER(set_ReplServerPropsV2, ReplServerPropsV2, tables::replServerV2_info_layout)
QV_BINDER(set_ReplControlAgentProps, ReplControlAgentProps, tables::replControlAgent_info_layout)
QV_BINDER(set_ReplControlAgentPropsV2, ReplControlAgentPropsV2,
          tables::replControlAgentV2_info_layout)
QV_BINDER(set_ReplAgentProps, ReplAgentProps, tables::replAgent_info_layout)
QV_BINDER(set_ReplAgentPropsV2, ReplAgentPropsV2, tables::replAgentV2_info_layout)
QV_BINDER(set_ReplTransitionProps, ReplTransitionProps, tables::replTransition_info_layout)
QV_BINDER(set_PMMGRProps, PMMGRProps, tables::pmmgr_info_layout)
QV_BINDER(set_SQLDbProperties, SQLDbProperties, tables::SQLDatabase_info_layout)

#undef QV_BINDER

extern "C" void set_SQLConfigurationProperties(InfoList list, SQLConfigurationProperties* record) {
    bind_sql_text(list, record);
}

extern "C" void set_SQLConfigurationList(InfoList list, SQLConfigurationList* record) {
    bind_sql_text(list, record);
}
