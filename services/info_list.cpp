// Info lists: private copies of a descriptor table, bound to one record.
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "qorvel/services.h"
#include "services/tables.h"

namespace qorvel::services {

void bind_list(InfoList list, void* record, const DescriptorTable& table) {
    auto* base = static_cast<unsigned char*>(record);
    for (std::size_t i = 0; i < table.offsets.size(); ++i) list[i].value = base + table.offsets[i];
}

}  // namespace qorvel::services

using qorvel::services::bind_list;
namespace tables = qorvel::services;

extern "C" long alloc_InfoList(InfoList* list, const CfgInfo* table, int size) {
    *list = static_cast<InfoList>(std::malloc(static_cast<std::size_t>(size)));
    if (!*list) return ENOMEM;
    std::memcpy(*list, table, static_cast<std::size_t>(size));
    return 0;
}

extern "C" void free_InfoList(InfoList list) { std::free(list); }

#define QV_BINDER(name, Record, table) \
    extern "C" void name(InfoList list, Record* record) { bind_list(list, record, table); }

QV_BINDER(set_UBserviceInfo, UBSERVICEINFO, tables::UBcfg_info)
QV_BINDER(set_MsngrServiceInfo, MsngrServiceInfo, tables::MsngrCfg_info)
QV_BINDER(set_NSserviceInfo, NSserviceInfo, tables::NScfg_info)
QV_BINDER(set_CNFGserviceInfo, CNFGserviceInfo, tables::CNFGcfg_info)
QV_BINDER(set_DBserviceInfo, DBserviceInfo, tables::DBcfg_info)
QV_BINDER(set_SRVRGRPserviceInfo, SRVRGRPserviceInfo, tables::SRVRGRPcfg_info)
QV_BINDER(set_ReplServerProps, ReplServerProps, tables::replServer_info)
QV_BINDER(set_ReplServerPropsV2, ReplServerPropsV2, tables::replServerV2_info)
QV_BINDER(set_ReplControlAgentProps, ReplControlAgentProps, tables::replControlAgent_info)
QV_BINDER(set_ReplControlAgentPropsV2, ReplControlAgentPropsV2, tables::replControlAgentV2_info)
QV_BINDER(set_ReplAgentProps, ReplAgentProps, tables::replAgent_info)
QV_BINDER(set_ReplAgentPropsV2, ReplAgentPropsV2, tables::replAgentV2_info)
QV_BINDER(set_ReplTransitionProps, ReplTransitionProps, tables::replTransition_info)
QV_BINDER(set_PMMGRProps, PMMGRProps, tables::pmmgr_info)
QV_BINDER(set_SQLDbProperties, SQLDbProperties, tables::SQLDatabase_info)

#undef QV_BINDER

// Both SQL configuration records are one 1024-byte text at offset 0, so one
// routine binds either.
extern "C" void set_SQLConfigurationProperties(InfoList list, SQLConfigurationProperties* record) {
    bind_list(list, record, tables::SQLConfig_info);
}

extern "C" void set_SQLConfigurationList(InfoList list, SQLConfigurationList* record) {
    set_SQLConfigurationProperties(list, reinterpret_cast<SQLConfigurationProperties*>(record));
}
