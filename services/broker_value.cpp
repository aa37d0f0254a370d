// One broker value by key, from a process-wide cache of the last service read.
#include <strings.h>

#include <cerrno>
#include <cstring>

#include "qorvel/services.h"
#include "services/service_read.h"
#include "util/bounded_text.h"

namespace {

using namespace qorvel::services;

// The cache: a list bound to one record, and the service that record holds.
// Written and read only by readCfgValue_CV; not safe for concurrent use.
InfoList cfg_parser = nullptr;
UBSERVICEINFO UBserviceInfo;
char last_srvcnm[256];

long refresh(const char* propertiesFile, const char* serviceName) {
    if (!serviceName || std::strcmp(serviceName, last_srvcnm) == 0) return 0;
    long r = ReadUBproperties(propertiesFile, "CV", serviceName, &UBserviceInfo, nullptr);
    if (r != 0) {
        // A half-read record must not pass for the service named before.
        std::memset(&UBserviceInfo, 0, sizeof UBserviceInfo);
        last_srvcnm[0] = '\0';
        return r;
    }
    qorvel::bounded_copy(last_srvcnm, serviceName);
    return 0;
}

}  // namespace

extern "C" long readCfgValue_CV(const char* propertiesFile, const char* serviceName,
                                const char* key, char* out) {
    if (!key || !out) return EINVAL;
    if (!cfg_parser) {
        InfoList list = nullptr;
        if (long r = alloc_InfoList(&list, UBcfg_info_layout.entries.data(),
                                    UBcfg_info_layout.bytes())) {
            return r;
        }
        cfg_parser = list;
        std::memset(&UBserviceInfo, 0, sizeof UBserviceInfo);
        set_UBserviceInfo(cfg_parser, &UBserviceInfo);
    }
    if (long r = refresh(propertiesFile, serviceName); r != 0) return r;
    for (const CfgInfo* entry = cfg_parser; entry->keyword; ++entry) {
        if (strcasecmp(entry->keyword, key) != 0) continue;
        if ((entry->flags & 0xFFFF) == PROP_INTEGER) {
            long number = 0;
            std::memcpy(&number, entry->value, sizeof number);
            qorvel::bounded_format(out, UB_VALUE_SIZE, "%ld", number);
        } else {
            qorvel::bounded_copy(out, UB_VALUE_SIZE, static_cast<const char*>(entry->value));
        }
        return 0;
    }
    return CFG_NOT_FOUND;
}
