#include "services/tables.h"

#include "qorvel/services.h"
#include "tests/unit.h"

namespace {

using namespace qorvel::services;

// Reads work on copies: the shared tables keep no pointer into a record. A
// default is written over whatever the caller's record held.
TEST(ServiceReaders, LeaveTheSharedTablesAsTheyWereAndWriteEveryDefault) {
    std::vector<unsigned char> before(UBcfg_info_layout.entries.size_bytes());
    std::memcpy(before.data(), UBcfg_info_layout.entries.data(), before.size());
    TempFile file("[UBroker]\n[UBroker.CV]\n[UBroker.CV.s]\n[server]\n[sql-configuration]\n");
    auto ub = std::make_unique<UBSERVICEINFO>();
    auto server = std::make_unique<ReplServerPropsV2>();
    auto list = std::make_unique<SQLConfigurationList>();
    std::memset(list.get(), 'x', sizeof *list);
    ASSERT_EQ(ReadUBproperties(file.path(), "CV", "s", ub.get(), nullptr), 0);
    ASSERT_EQ(ReadReplServerProperties(file.path(), server.get(), REPL_VERSION_2, nullptr), 0);
    ASSERT_EQ(ReadSQLConfigList(file.path(), list.get(), nullptr), 0);
    EXPECT_STREQ(list->configuration_names_list, "");
    EXPECT_EQ(std::memcmp(before.data(), UBcfg_info_layout.entries.data(), before.size()), 0);
    for (const CfgInfo& entry : replServerV2_info_layout.entries) EXPECT_EQ(entry.value, nullptr);
}

}  // namespace
