// Re-reading a broker service and handing every changed key to its handler.
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>

#include "qorvel/services.h"
#include "services/error_detail.h"
#include "services/service_read.h"
#include "util/bounded_text.h"

namespace {

using namespace qorvel::services;

constexpr std::size_t kHandlerNameSize = 256;

bool changed(const CfgInfo& now, const CfgInfo& fresh) {
    if ((now.flags & 0xFFFF) == PROP_INTEGER) return std::memcmp(now.value, fresh.value, 8) != 0;
    return std::strncmp(static_cast<const char*>(now.value), static_cast<const char*>(fresh.value),
                        now.valueSize) != 0;
}

// The handler of a changed key; deferred keys are counted when asked to.
UpdateFunc handler_for(const CfgInfo& entry, const char* serviceType, int64_t* deferredCount,
                       const UpdateFuncEntry* table) {
    if (deferredCount && (entry.flags & PROP_DEFERRED)) {
        ++*deferredCount;
        return getUpdateFunction("updateDeferedProperty", table);
    }
    char name[kHandlerNameSize];
    qorvel::bounded_format(name, sizeof name, "update_%s", entry.keyword);
    if (UpdateFunc f = getUpdateFunction(name, table)) return f;
    qorvel::bounded_format(name, sizeof name, "update_%s_%s", serviceType ? serviceType : "",
                           entry.keyword);
    return getUpdateFunction(name, table);
}

}  // namespace

extern "C" UpdateFunc getUpdateFunction(const char* name, const UpdateFuncEntry* updateTable) {
    if (!updateTable) return nullptr;
    const UpdateFuncEntry* pair = updateTable;
    while (pair->name && (!name || std::strcmp(pair->name, name) != 0)) ++pair;
    return pair->func;
}

extern "C" long UpdateUBproperties(const char* propertiesFile, const char* serviceType,
                                   const char* serviceName, UBSERVICEINFO* current,
                                   ErrDetail* errDetail, int64_t* deferredCount,
                                   const UpdateFuncEntry* updateTable, int64_t* updateResult) {
    constexpr const char* kAllocWhere = "UpdateUBproperties memory allocation";
    if (!current || !updateTable || !updateResult) {
        return refuse_null(errDetail, "UpdateUBproperties");
    }
    // The caller is C: running out of memory is a status, never an exception.
    std::unique_ptr<UBSERVICEINFO> fresh(new (std::nothrow) UBSERVICEINFO());
    if (!fresh) {
        report_system(errDetail, ENOMEM, kAllocWhere);
        return ENOMEM;
    }
    long r = ReadUBproperties(propertiesFile, serviceType, serviceName, fresh.get(), errDetail);
    if (r != 0) {
        report_system(errDetail, r, "UpdateUBproperties read property file");
        return r;
    }
    OwnedList now, next;
    if ((r = make_list(now, UBcfg_info_layout, kAllocWhere, errDetail)) != 0) return r;
    if ((r = make_list(next, UBcfg_info_layout, kAllocWhere, errDetail)) != 0) return r;
    set_UBserviceInfo(now.get(), current);
    set_UBserviceInfo(next.get(), fresh.get());

    *updateResult = 0;
    for (std::size_t i = 0; now.get()[i].keyword; ++i) {
        const CfgInfo& entry = now.get()[i];
        if (!changed(entry, next.get()[i])) continue;
        UpdateFunc handler = handler_for(entry, serviceType, deferredCount, updateTable);
        if (!handler) continue;
        if (int rc = handler(entry.keyword, current, fresh.get()); rc != 0) *updateResult = rc;
    }
    return 0;
}
