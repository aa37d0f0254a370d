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

// The connection-manager records show theirs beside their two default kinds.
// Reads work on copies: the shared tables keep no pointer into a record.
TEST(ServiceReaders, EmptySectionsGiveEveryRecordKindItsTableDefaults) {
    std::vector<unsigned char> before(UBcfg_info_layout.entries.size_bytes());
    std::memcpy(before.data(), UBcfg_info_layout.entries.data(), before.size());
    TempFile file(
        "[UBroker]\n[UBroker.CV]\n[UBroker.CV.s]\n[Corvane]\n[Corvane.Messengers]\n"
        "[Corvane.Messengers.m]\n[NameServer]\n[NameServer.n]\n[server]\n[control-agent.a]\n"
        "[agent]\n[transition]\n[pm]\n[sql-configuration]\n[configuration.c]\n[database.d]\n");
    const char* f = file.path();
    auto ub = filled<UBSERVICEINFO>();
    auto msngr = filled<MsngrServiceInfo>();
    auto ns = filled<NSserviceInfo>();
    auto server = filled<ReplServerPropsV2>();
    auto ctl = filled<ReplControlAgentPropsV2>();
    auto agent = filled<ReplAgentPropsV2>();
    auto transition = filled<ReplTransitionProps>();
    auto pm = filled<PMMGRProps>();
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
        {"messenger", join(ReadMsngrProperties(f, "m", msngr.get(), nullptr), msngr->ipver),
         "0|IPv4"},
        {"name_server", join(ReadNSproperties(f, "n", ns.get(), nullptr), ns->numLogFiles), "0|3"},
        {"replication_server",
         join(ReadReplServerProperties(f, server.get(), REPL_VERSION_2, nullptr),
              server->v1.transition, server->v1.transition_timeout, server->schema_lock_action),
         "0|manual|1200|wait"},
        {"control_agent",
         join(ReadReplControlAgentProperties(f, "a", ctl.get(), REPL_VERSION_2, nullptr),
              ctl->v1.replication_method, ctl->v1.maximum_message, ctl->ipver),
         "0|async|129|ipv4"},
        {"agent",
         join(ReadReplAgentProperties(f, agent.get(), REPL_VERSION_2, nullptr),
              agent->v1.listener_minport, agent->ipver),
         "0|-1|ipv4"},
        {"transition",
         join(ReadReplTransitionProperties(f, transition.get(), 0, nullptr),
              transition->database_role, transition->start_secondary_broker),
         "0|normal|-1"},
        {"process_manager",
         join(ReadPMMGRProperties(f, "pm", pm.get(), 0, nullptr), pm->minport, pm->install_dir),
         "0|0|"},
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

TEST(InfoLists, TwoListsOfOneTableBindTwoRecordsIndependently) {
    InfoList first = nullptr;
    InfoList second = nullptr;
    ASSERT_EQ(alloc_InfoList(&first, pmmgr_info_layout.entries.data(), pmmgr_info_layout.bytes()),
              0);
    ASSERT_EQ(alloc_InfoList(&second, pmmgr_info_layout.entries.data(), pmmgr_info_layout.bytes()),
              0);
    PMMGRProps a{};
    PMMGRProps b{};
    set_PMMGRProps(first, &a);
    set_PMMGRProps(second, &b);
    std::memcpy(first[0].value, "/opt", 5);
    EXPECT_EQ(join(a.install_dir, b.install_dir, second[0].value == b.install_dir), "/opt||1");
    free_InfoList(first);
    free_InfoList(second);
}

}  // namespace
