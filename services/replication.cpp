// Replication services: server, control agent, agent and transition.
#include "qorvel/services.h"
#include "services/single_section.h"

namespace {

using namespace qorvel::services;

// The version 1 or version 2 table, or none for an unknown version.
const DescriptorTable* by_version(int replVersion, const DescriptorTable& v1,
                                  const DescriptorTable& v2) {
    if (replVersion == REPL_VERSION_1) return &v1;
    if (replVersion == REPL_VERSION_2) return &v2;
    return nullptr;
}

constexpr std::size_t kShortSection = 64;  // "control-agent." and a name of up to 49

}  // namespace

extern "C" long ReadReplServerProperties(const char* propertiesFile, void* record, int replVersion,
                                         ErrDetail* errDetail) {
    SingleSection read{"ReadReplServerProperties", kShortSection,
                       by_version(replVersion, replServer_info_layout, replServerV2_info_layout),
                       record};
    return read_single_section(propertiesFile, read, errDetail, "%s", "server");
}

extern "C" long ReadReplControlAgentProperties(const char* propertiesFile, const char* agentName,
                                               void* record, int replVersion,
                                               ErrDetail* errDetail) {
    SingleSection read{
        "ReadReplControlAgentProperties", kShortSection,
        by_version(replVersion, replControlAgent_info_layout, replControlAgentV2_info_layout),
        record};
    return read_single_section(propertiesFile, read, errDetail, "%s%s", "control-agent.",
                               agentName ? agentName : "");
}

extern "C" long ReadReplAgentProperties(const char* propertiesFile, void* record, int replVersion,
                                        ErrDetail* errDetail) {
    SingleSection read{"ReadReplAgentProperties", kShortSection,
                       by_version(replVersion, replAgent_info_layout, replAgentV2_info_layout),
                       record};
    return read_single_section(propertiesFile, read, errDetail, "%s", "agent");
}

extern "C" long ReadReplTransitionProperties(const char* propertiesFile,
                                             ReplTransitionProps* record, long /*reserved*/,
                                             ErrDetail* errDetail) {
    SingleSection read{"ReadReplTransitionProperties", kShortSection, &replTransition_info_layout,
                       record};
    return read_single_section(propertiesFile, read, errDetail, "%s", "transition");
}
