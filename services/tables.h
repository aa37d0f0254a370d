// The layouts of the seventeen exported descriptor tables, shared read-only by
// every reader.
#pragma once

#include <cstddef>
#include <span>

#include "qorvel/services.h"

namespace qorvel::services {

// An exported descriptor table and where each of its keys lives in its record.
struct DescriptorTable {
    std::span<const CfgInfo> entries;      // keys in read order, terminator included
    std::span<const std::size_t> offsets;  // offset of each key's field in the record
    std::size_t recordSize;

    int bytes() const { return static_cast<int>(entries.size_bytes()); }
};

extern const DescriptorTable UBcfg_info_layout;
extern const DescriptorTable MsngrCfg_info_layout;
extern const DescriptorTable NScfg_info_layout;
extern const DescriptorTable CNFGcfg_info_layout;
extern const DescriptorTable DBcfg_info_layout;
extern const DescriptorTable SRVRGRPcfg_info_layout;
extern const DescriptorTable replServer_info_layout;
extern const DescriptorTable replServerV2_info_layout;
extern const DescriptorTable replControlAgent_info_layout;
extern const DescriptorTable replControlAgentV2_info_layout;
extern const DescriptorTable replAgent_info_layout;
extern const DescriptorTable replAgentV2_info_layout;
extern const DescriptorTable replTransition_info_layout;
extern const DescriptorTable pmmgr_info_layout;
extern const DescriptorTable SQLConfigList_info_layout;
extern const DescriptorTable SQLConfig_info_layout;
extern const DescriptorTable SQLDatabase_info_layout;

// Points each entry of `list`, up to its terminator, at the field of `record`
// that the entry's key names (without regard to case), or at nothing when the
// record has no such key.
void bind_list(InfoList list, void* record, const DescriptorTable& table);

}  // namespace qorvel::services
