// The process manager and the SQL configuration: list, configuration, database.
#include "qorvel/services.h"
#include "services/service_read.h"
#include "services/single_section.h"

namespace {

using namespace qorvel::services;

constexpr std::size_t kShortSection = 64;  // 63 characters

}  // namespace

extern "C" long ReadPMMGRProperties(const char* propertiesFile, const char* sectionName,
                                    PMMGRProps* record, long /*reserved*/, ErrDetail* errDetail) {
    SingleSection read{"ReadPMMGRProperties", kShortSection, &pmmgr_info_layout, record};
    return read_single_section(propertiesFile, read, errDetail, "%s",
                               sectionName ? sectionName : "");
}

extern "C" long ReadSQLConfigList(const char* propertiesFile, SQLConfigurationList* record,
                                  ErrDetail* errDetail) {
    SingleSection read{"ReadSQLConfigList", kShortSection, &SQLConfigList_info_layout, record};
    return read_single_section(propertiesFile, read, errDetail, "%s", "sql-configuration");
}

extern "C" long ReadSQLConfigProperties(const char* propertiesFile, const char* configName,
                                        SQLConfigurationProperties* record, ErrDetail* errDetail) {
    SingleSection read{"ReadSQLConfigProperties", SectionChain::kMaxNameSize,
                       &SQLConfig_info_layout, record};
    return read_single_section(propertiesFile, read, errDetail, "%s.%s", "configuration",
                               configName ? configName : "");
}

extern "C" long ReadSQLDbProperties(const char* propertiesFile, const char* dbName,
                                    SQLDbProperties* record, ErrDetail* errDetail) {
    SingleSection read{"ReadSQLDbProperties", kShortSection, &SQLDatabase_info_layout, record};
    return read_single_section(propertiesFile, read, errDetail, "%s.%s", "database",
                               dbName ? dbName : "");
}
