// Broker services: the UBroker section chain.
#include <cerrno>
#include <cstring>

#include "qorvel/services.h"
#include "services/error_detail.h"
#include "services/service_read.h"
#include "util/bounded_text.h"

namespace {

using namespace qorvel::services;

constexpr const char* kWhere = "ReadUBproperties";

// "UBroker", "UBroker.<type>" and, unless only defaults are asked for,
// "UBroker.<type>.<name>".
bool broker_chain(SectionChain& chain, const char* serviceType, const char* serviceName) {
    const char* type = serviceType ? serviceType : "";
    bool fits = chain.add("%s", "UBroker") && chain.add("%s.%s", "UBroker", type);
    if (std::strcmp(serviceName, UB_DEFAULTS_ONLY) == 0) return fits;
    return fits && chain.add("%s.%s.%s", "UBroker", type, serviceName);
}

}  // namespace

extern "C" long ReadUBproperties(const char* propertiesFile, const char* serviceType,
                                 const char* serviceName, UBSERVICEINFO* record,
                                 ErrDetail* errDetail) {
    if (!serviceName || !*serviceName) {
        report_code(errDetail, CV_ERR_NO_SERVICE_NAME, kWhere);
        return CV_ERR_NO_SERVICE_NAME;
    }
    if (!record) return refuse_null(errDetail, kWhere);
    SectionChain chain;
    if (!broker_chain(chain, serviceType, serviceName)) {
        report_system(errDetail, ENAMETOOLONG, "ReadUBproperties section name");
        return ENAMETOOLONG;
    }
    char openFor[CFG_PATH_SIZE + 8];
    qorvel::bounded_format(openFor, sizeof openFor, "service %s", serviceName);
    ServiceRead read{UBcfg_info_layout, record, chain,
                     ChainRules{Defaults::Table, Defaults::Inherited, true, kWhere, false},
                     "ReadUBproperties memory allocation"};
    return read_service(propertiesFile, openFor, read, errDetail);
}

extern "C" long readCfg_CV(const char* serviceName, UBSERVICEINFO* record, ErrDetail* errDetail) {
    return ReadUBproperties("ubroker.properties", "CV", serviceName, record, errDetail);
}
