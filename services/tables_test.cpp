#include "services/tables.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using namespace qorvel::services;
using qorvel::services::testing::join;
using qorvel::testing::TempFile;

// Records full of 'x', so an empty default shows that it was written.
template <class Record>
std::unique_ptr<Record> filled() {
    auto record = std::make_unique<Record>();
    std::memset(record.get(), 'x', sizeof(Record));
    return record;
}

// One reader of each way a record is read; the connection-manager records show
// theirs beside their two default kinds. Reads work on copies: the shared
// tables keep no pointer into a record.
TEST(ServiceReaders, EmptySectionsGiveTheRecordsTheirTableDefaults) {
    std::vector<unsigned char> before(UBcfg_info_layout.entries.size_bytes());
    std::memcpy(before.data(), UBcfg_info_layout.entries.data(), before.size());
    TempFile file(
        "[UBroker]\n[UBroker.CV]\n[UBroker.CV.s]\n[NameServer]\n[NameServer.n]\n[server]\n"
        "[agent]\n[sql-configuration]\n[configuration.c]\n[database.d]\n");
    const char* f = file.path();
    auto ub = filled<UBSERVICEINFO>();
    auto ns = filled<NSserviceInfo>();
    auto server = filled<ReplServerPropsV2>();
    auto agent = filled<ReplAgentPropsV2>();
    auto list = filled<SQLConfigurationList>();
    auto config = filled<SQLConfigurationProperties>();
    auto db = filled<SQLDbProperties>();
    const struct {
        const char* kind;
        std::string got, expected;  // result, then a few keys
    } cases[] = {
        {"broker",
         join(ReadUBproperties(f, "CV", "s", ub.get(), nullptr), ub->srvrMaxPort,
              ub->stateTransport),
         "0|3502|Cookies"},
        {"name_server", join(ReadNSproperties(f, "n", ns.get(), nullptr), ns->numLogFiles), "0|3"},
        {"replication_server",
         join(ReadReplServerProperties(f, server.get(), REPL_VERSION_2, nullptr),
              server->v1.transition, server->v1.transition_timeout, server->schema_lock_action),
         "0|manual|1200|wait"},
        {"agent",
         join(ReadReplAgentProperties(f, agent.get(), REPL_VERSION_2, nullptr),
              agent->v1.listener_minport, agent->ipver),
         "0|-1|ipv4"},
        {"sql",
         join(ReadSQLConfigList(f, list.get(), nullptr), list->configuration_names_list,
              ReadSQLConfigProperties(f, "c", config.get(), nullptr), config->database_id_list,
              ReadSQLDbProperties(f, "d", db.get(), nullptr), db->catalog),
         "0||0||0|"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.got, c.expected) << c.kind;
    EXPECT_EQ(std::memcmp(before.data(), UBcfg_info_layout.entries.data(), before.size()), 0);
    for (const CfgInfo& entry : replServerV2_info_layout.entries) EXPECT_EQ(entry.value, nullptr);
}

}  // namespace
