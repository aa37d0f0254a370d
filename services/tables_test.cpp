#include "services/tables.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using namespace qorvel::services;
using qorvel::services::testing::TempFile;

struct Named {
    const char* name;
    const DescriptorTable& table;
    std::size_t keys;
};

const Named kAll[] = {
    {"UBcfg_info", UBcfg_info, 55},
    {"MsngrCfg_info", MsngrCfg_info, 28},
    {"NScfg_info", NScfg_info, 14},
    {"CNFGcfg_info", CNFGcfg_info, 73},
    {"DBcfg_info", DBcfg_info, 5},
    {"SRVRGRPcfg_info", SRVRGRPcfg_info, 18},
    {"replServer_info", replServer_info, 8},
    {"replServerV2_info", replServerV2_info, 19},
    {"replControlAgent_info", replControlAgent_info, 9},
    {"replControlAgentV2_info", replControlAgentV2_info, 11},
    {"replAgent_info", replAgent_info, 6},
    {"replAgentV2_info", replAgentV2_info, 15},
    {"replTransition_info", replTransition_info, 22},
    {"pmmgr_info", pmmgr_info, 10},
    {"SQLConfigList_info", SQLConfigList_info, 1},
    {"SQLConfig_info", SQLConfig_info, 1},
    {"SQLDatabase_info", SQLDatabase_info, 3},
};

// Binding must give every key its own stretch of the record, inside it.
TEST(DescriptorTables, BindEveryKeyToADistinctFieldInsideTheRecord) {
    for (const Named& t : kAll) {
        ASSERT_EQ(t.table.entries.size(), t.keys + 1) << t.name;
        const CfgInfo& end = t.table.entries.back();
        EXPECT_EQ(end.keyword, nullptr) << t.name;
        EXPECT_EQ(end.flags, 0u) << t.name;
        std::vector<unsigned char> record(t.table.recordSize);
        std::vector<int> owner(t.table.recordSize, -1);
        InfoList list = nullptr;
        ASSERT_EQ(alloc_InfoList(&list, t.table.entries.data(), t.table.bytes()), 0);
        bind_list(list, record.data(), t.table);
        for (std::size_t i = 0; i < t.keys; ++i) {
            auto offset = static_cast<unsigned char*>(list[i].value) - record.data();
            ASSERT_GE(offset, 0) << t.name << " " << list[i].keyword;
            ASSERT_LE(offset + list[i].valueSize, t.table.recordSize) << list[i].keyword;
            for (std::size_t b = 0; b < list[i].valueSize; ++b) {
                EXPECT_EQ(owner[offset + b], -1)
                    << t.name << ": " << list[i].keyword << " overlaps another key";
                owner[offset + b] = static_cast<int>(i);
            }
        }
        free_InfoList(list);
    }
}

TEST(DescriptorTables, ReadsLeaveTheStaticTablesUnchanged) {
    std::vector<unsigned char> before(UBcfg_info.entries.size_bytes());
    std::memcpy(before.data(), UBcfg_info.entries.data(), before.size());
    TempFile file("[UBroker]\nportNumber=1\n[UBroker.CV]\n[UBroker.CV.a]\nuuid=x\n");
    UBSERVICEINFO record;
    ASSERT_EQ(ReadUBproperties(file.path(), "CV", "a", &record, nullptr), 0);
    EXPECT_EQ(std::memcmp(before.data(), UBcfg_info.entries.data(), before.size()), 0);
    for (const CfgInfo& entry : UBcfg_info.entries) EXPECT_EQ(entry.value, nullptr);
}

TEST(InfoLists, TwoListsOfOneTableBindTwoRecordsIndependently) {
    InfoList first = nullptr;
    InfoList second = nullptr;
    ASSERT_EQ(alloc_InfoList(&first, pmmgr_info.entries.data(), pmmgr_info.bytes()), 0);
    ASSERT_EQ(alloc_InfoList(&second, pmmgr_info.entries.data(), pmmgr_info.bytes()), 0);
    PMMGRProps a{};
    PMMGRProps b{};
    set_PMMGRProps(first, &a);
    set_PMMGRProps(second, &b);
    EXPECT_EQ(first[0].value, a.install_dir);
    EXPECT_EQ(second[0].value, b.install_dir);
    std::memcpy(first[0].value, "/opt", 5);
    EXPECT_STREQ(a.install_dir, "/opt");
    EXPECT_STREQ(b.install_dir, "");
    free_InfoList(first);
    free_InfoList(second);
}

TEST(InfoLists, SqlBindersShareOneRoutine) {
    InfoList list = nullptr;
    ASSERT_EQ(alloc_InfoList(&list, SQLConfigList_info.entries.data(), SQLConfigList_info.bytes()),
              0);
    SQLConfigurationList names{};
    set_SQLConfigurationList(list, &names);
    EXPECT_EQ(list[0].value, names.configuration_names_list);
    free_InfoList(list);
}

}  // namespace
