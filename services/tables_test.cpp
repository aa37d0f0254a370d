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

// Binding must give every key its own stretch of the record, inside it.
TEST(DescriptorTables, BindEveryKeyToADistinctFieldInsideTheRecord) {
    for (const DescriptorTable* t :
         {&UBcfg_info_layout, &MsngrCfg_info_layout, &NScfg_info_layout, &CNFGcfg_info_layout,
          &DBcfg_info_layout, &SRVRGRPcfg_info_layout, &replServer_info_layout,
          &replServerV2_info_layout, &replControlAgent_info_layout, &replControlAgentV2_info_layout,
          &replAgent_info_layout, &replAgentV2_info_layout, &replTransition_info_layout,
          &pmmgr_info_layout, &SQLConfigList_info_layout, &SQLConfig_info_layout,
          &SQLDatabase_info_layout}) {
        const std::string name = t->entries[0].keyword;
        ASSERT_EQ(t->entries.back().keyword, nullptr) << name << ": no terminator";
        std::vector<unsigned char> record(t->recordSize);
        std::vector<int> owner(t->recordSize, -1);
        InfoList list = nullptr;
        ASSERT_EQ(alloc_InfoList(&list, t->entries.data(), t->bytes()), 0);
        bind_list(list, record.data(), *t);
        for (std::size_t i = 0; i + 1 < t->entries.size(); ++i) {
            auto offset = static_cast<unsigned char*>(list[i].value) - record.data();
            ASSERT_GE(offset, 0) << name << " " << list[i].keyword;
            ASSERT_LE(offset + list[i].valueSize, t->recordSize) << name << " " << list[i].keyword;
            for (std::size_t b = 0; b < list[i].valueSize; ++b) {
                EXPECT_EQ(owner[offset + b], -1) << name << ": " << list[i].keyword << " overlaps";
                owner[offset + b] = static_cast<int>(i);
            }
        }
        free_InfoList(list);
    }
}

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
