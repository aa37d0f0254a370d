// Messengers: "Corvane", "Corvane.Messengers" and "Corvane.Messengers.<name>".
#include <cerrno>

#include "qorvel/services.h"
#include "services/error_detail.h"
#include "services/service_read.h"

using namespace qorvel::services;

extern "C" long ReadMsngrProperties(const char* propertiesFile, const char* serviceName,
                                    MsngrServiceInfo* record, ErrDetail* errDetail) {
    constexpr const char* kWhere = "ReadMsngrProperties";
    if (!serviceName) {  // an empty name is read as given: its section simply ends in "."
        report_code(errDetail, CV_ERR_NO_SERVICE_NAME, kWhere);
        return CV_ERR_NO_SERVICE_NAME;
    }
    if (!record) return refuse_null(errDetail, kWhere);
    SectionChain chain;
    if (!chain.add("%s", "Corvane") || !chain.add("%s.%s", "Corvane", "Messengers") ||
        !chain.add("%s.%s.%s", "Corvane", "Messengers", serviceName)) {
        report_system(errDetail, ENAMETOOLONG, "ReadMsngrProperties section name");
        return ENAMETOOLONG;
    }
    ServiceRead read{MsngrCfg_info_layout, record, chain,
                     ChainRules{Defaults::Table, Defaults::Inherited, true, kWhere, false},
                     "ReadMsngrProperties memory allocation"};
    return read_service(propertiesFile, "Corvane Messengers", read, errDetail);
}
