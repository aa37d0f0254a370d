// Name servers: "NameServer" and "NameServer.<name>".
#include <cerrno>

#include "qorvel/services.h"
#include "services/error_detail.h"
#include "services/service_read.h"
#include "util/bounded_text.h"

using namespace qorvel::services;

extern "C" long ReadNSproperties(const char* propertiesFile, const char* serviceName,
                                 NSserviceInfo* record, ErrDetail* errDetail) {
    constexpr const char* kWhere = "ReadNSproperties";
    if (!serviceName || !*serviceName) {
        report_code(errDetail, CV_ERR_NO_SERVICE_NAME, kWhere);
        return CV_ERR_NO_SERVICE_NAME;
    }
    if (!record) return refuse_null(errDetail, kWhere);
    SectionChain chain;
    if (!chain.add("%s", "NameServer") || !chain.add("%s.%s", "NameServer", serviceName)) {
        report_system(errDetail, ENAMETOOLONG, "ReadNSproperties section name");
        return ENAMETOOLONG;
    }
    char openFor[CFG_PATH_SIZE + 8];
    qorvel::bounded_format(openFor, sizeof openFor, "service %s", serviceName);
    ServiceRead read{NScfg_info_layout, record, chain,
                     ChainRules{Defaults::Table, Defaults::Inherited, true, kWhere, false},
                     "ReadNSproperties memory allocation"};
    return read_service(propertiesFile, openFor, read, errDetail);
}
