// The seventeen property descriptor tables, shared read-only by every reader.
#pragma once

#include <cstddef>
#include <span>

#include "qorvel/services.h"

namespace qorvel::services {

// One descriptor table and where each of its keys lives in its record.
struct DescriptorTable {
    std::span<const CfgInfo> entries;      // keys in read order, terminator included
    std::span<const std::size_t> offsets;  // offset of each key's field in the record
    std::size_t recordSize;

    int bytes() const { return static_cast<int>(entries.size_bytes()); }
};

extern const DescriptorTable UBcfg_info;
extern const DescriptorTable MsngrCfg_info;
extern const DescriptorTable NScfg_info;
extern const DescriptorTable CNFGcfg_info;
extern const DescriptorTable DBcfg_info;
extern const DescriptorTable SRVRGRPcfg_info;
extern const DescriptorTable replServer_info;
extern const DescriptorTable replServerV2_info;
extern const DescriptorTable replControlAgent_info;
extern const DescriptorTable replControlAgentV2_info;
extern const DescriptorTable replAgent_info;
extern const DescriptorTable replAgentV2_info;
extern const DescriptorTable replTransition_info;
extern const DescriptorTable pmmgr_info;
extern const DescriptorTable SQLConfigList_info;
extern const DescriptorTable SQLConfig_info;
extern const DescriptorTable SQLDatabase_info;

// Points every entry of `list` (a copy of `table`) at its field of `record`.
void bind_list(InfoList list, void* record, const DescriptorTable& table);

}  // namespace qorvel::services
