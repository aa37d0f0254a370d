// Connection-manager services: configurations, databases and server groups,
// read along the chain of sections built from a dotted service name.
#include <cerrno>
#include <cstring>
#include <string_view>

#include "config/handle.h"
#include "config/no_throw.h"
#include "qorvel/services.h"
#include "services/error_detail.h"
#include "services/service_read.h"
#include "util/bounded_text.h"

namespace {

using namespace qorvel::services;

// The base, then one more specific name per dot-separated part of the
// service name (runs of dots count as one). False when it does not fit.
bool conmgr_chain(SectionChain& chain, const char* baseSection, std::string_view service) {
    if (!chain.add("%s", baseSection)) return false;
    while (!service.empty()) {
        std::size_t dot = service.find('.');
        std::string_view part = service.substr(0, dot);
        if (!part.empty()) {
            const char* previous = chain[chain.size() - 1];
            if (!chain.add("%s.%.*s", previous, static_cast<int>(part.size()), part.data())) {
                return false;
            }
        }
        service.remove_prefix(dot == std::string_view::npos ? service.size() : dot + 1);
    }
    return true;
}

long open_conmgr(const char* propertiesFile, const char* serviceName, ErrDetail* errDetail,
                 const char* callerName, OpenFile& file) {
    if (!serviceName || !*serviceName) {
        report_code(errDetail, CV_ERR_NO_SERVICE_NAME, callerName);
        return CV_ERR_NO_SERVICE_NAME;
    }
    long r = qorvel::config::open_file(nullptr, propertiesFile, file.path, file.file);
    if (r != 0) {
        report_failuref(errDetail, r, "opencfg of %s for service %s", file.path.c_str(),
                        serviceName);
    }
    return r;
}

long read_conmgr_chain(const char* serviceName, ErrDetail* errDetail, InfoList list,
                       qorvel::config::Section& section, const char* baseSection,
                       int useTableDefaults) {
    if (!baseSection || !*baseSection) return 0;
    SectionChain chain;
    if (!conmgr_chain(chain, baseSection, serviceName ? serviceName : "")) {
        report_system(errDetail, ENAMETOOLONG, "ReadConManager section chain");
        return ENAMETOOLONG;
    }
    Defaults defaults = useTableDefaults ? Defaults::Table : Defaults::Inherited;
    ChainRules rules{defaults, defaults, false, nullptr, true};
    return read_chain(section, list, chain, rules, errDetail);
}

template <typename Record>
long read_conmgr(const char* propertiesFile, const char* serviceName, Record* record,
                 int useTableDefaults, ErrDetail* errDetail, const DescriptorTable& table,
                 const char* readerName, const char* baseSection) {
    if (!record) return refuse_null(errDetail, readerName);
    return qorvel::or_on_oom(static_cast<long>(ENOMEM), [&] {
        OpenFile opened;
        long r = open_conmgr(propertiesFile, serviceName, errDetail, readerName, opened);
        if (r != 0) return r;
        char allocWhere[64];
        qorvel::bounded_format(allocWhere, sizeof allocWhere, "memory allocation %s", readerName);
        OwnedList list;
        if ((r = make_list(list, table, allocWhere, errDetail)) != 0) return r;
        std::memset(record, 0, sizeof *record);
        bind_list(list.get(), record, table);
        qorvel::config::Section section(opened.file.get());
        return read_conmgr_chain(serviceName, errDetail, list.get(), section, baseSection,
                                 useTableDefaults);
    });
}

}  // namespace

extern "C" long OpenConManager(const char* propertiesFile, const char* serviceName,
                               ErrDetail* errDetail, long /*reserved*/, CFGHANDLE* handle,
                               const char* callerName) {
    if (!serviceName || !*serviceName) {
        report_code(errDetail, CV_ERR_NO_SERVICE_NAME, callerName);
        return CV_ERR_NO_SERVICE_NAME;
    }
    if (!handle) {
        report_code(errDetail, CV_ERR_HANDLE, callerName);
        return CV_ERR_HANDLE;
    }
    long r = qorvel::config::open_handle(nullptr, nullptr, propertiesFile, handle);
    if (r != 0) {
        report_failuref(errDetail, r, "opencfg of %s for service %s", handle->fileName,
                        serviceName);
    }
    return r;
}

extern "C" long ReadConManager(const char* serviceName, ErrDetail* errDetail, InfoList list,
                               CFGHANDLE* handle, const char* baseSection, int useTableDefaults) {
    OwnedList owned(list);
    constexpr const char* kWhere = "ReadConManager";
    if (!handle) {
        report_code(errDetail, CV_ERR_HANDLE, kWhere);
        return CV_ERR_HANDLE;
    }
    if (!list) return refuse_null(errDetail, kWhere);
    return qorvel::or_on_oom(static_cast<long>(ENOMEM), [&] {
        qorvel::config::Section section;
        long r = qorvel::config::read_handle(*handle, section, [&](qorvel::config::Section& s) {
            return read_conmgr_chain(serviceName, errDetail, list, s, baseSection,
                                     useTableDefaults);
        });
        handle->sectionOffset = static_cast<long>(section.offset);
        qorvel::bounded_copy(handle->sectionHeader, section.header);
        return r;
    });
}

extern "C" long ReadConfigProperties(const char* propertiesFile, const char* serviceName,
                                     CNFGserviceInfo* record, int useTableDefaults,
                                     ErrDetail* errDetail) {
    return read_conmgr(propertiesFile, serviceName, record, useTableDefaults, errDetail,
                       CNFGcfg_info_layout, "ReadConfigProperties", "configuration");
}

extern "C" long ReadDBProperties(const char* propertiesFile, const char* serviceName,
                                 DBserviceInfo* record, int useTableDefaults,
                                 ErrDetail* errDetail) {
    return read_conmgr(propertiesFile, serviceName, record, useTableDefaults, errDetail,
                       DBcfg_info_layout, "ReadDBProperties", "database");
}

extern "C" long ReadSrvrGrpProperties(const char* propertiesFile, const char* serviceName,
                                      SRVRGRPserviceInfo* record, int useTableDefaults,
                                      ErrDetail* errDetail) {
    return read_conmgr(propertiesFile, serviceName, record, useTableDefaults, errDetail,
                       SRVRGRPcfg_info_layout, "ReadSrvrGrpProperties", "servergroup");
}
