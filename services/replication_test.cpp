#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using qorvel::services::testing::TempFile;
using qorvel::services::testing::TempInstall;

const char* kRepl =
    "[server]\n"
    "database=/db/source db\n"
    "listener-minport=4000\n"
    "repl-keep-alive=30\n"
    "[control-agent.agent1]\n"
    "host=target\n"
    "arguments=-a -b\n"
    "[agent]\n"
    "name=agent one\n"
    "[transition]\n"
    "[pm.main]\n"
    "install-dir=/opt/pm dir\n"
    "minport=9000\n"
    "[sql-configuration]\n"
    "configuration-names-list=c1, c2\n"
    "[configuration.c1]\n"
    "database-id-list=d1\n"
    "[database.d1]\n"
    "name=first word\n"
    "location=/data/with blanks\n"
    "[server2]\n";

TEST(ReplServer, Version1AndVersion2ShareTheirFirstPart) {
    TempFile file(kRepl);
    ReplServerPropsV2 v2;
    std::memset(&v2, 'x', sizeof v2);
    ASSERT_EQ(ReadReplServerProperties(file.path(), &v2, REPL_VERSION_1, nullptr), 0);
    EXPECT_STREQ(v2.v1.database, "/db/source db");
    EXPECT_EQ(v2.v1.listener_minport, 4000);
    EXPECT_EQ(v2.v1.listener_maxport, -1);
    EXPECT_STREQ(v2.v1.transition, "manual");
    EXPECT_EQ(v2.v1.transition_timeout, 1200);
    EXPECT_EQ(v2.minimum_polling_delay, 0x7878787878787878) << "version 1 stops at its end";

    ReplServerProps v1Copy = v2.v1;
    ASSERT_EQ(ReadReplServerProperties(file.path(), &v2, REPL_VERSION_2, nullptr), 0);
    EXPECT_EQ(std::memcmp(&v1Copy, &v2.v1, sizeof v1Copy), 0);
    EXPECT_EQ(v2.repl_keep_alive, 30);
    EXPECT_EQ(v2.tcp_inactivity_timeout, -1);
    EXPECT_STREQ(v2.schema_lock_action, "wait");
}

TEST(ReplServer, UnknownVersionIsRefusedOnlyOnceTheFileOpens) {
    TempFile file(kRepl);
    ReplServerPropsV2 record;
    std::memset(&record, 'x', sizeof record);
    ErrDetail detail{};
    EXPECT_EQ(ReadReplServerProperties(file.path(), &record, 2, &detail), 10025);
    EXPECT_EQ(detail.code, 10025);
    EXPECT_EQ(detail.msgNumber, 0u);
    EXPECT_STREQ(detail.where, "Invalid Velmor Replication version specified");
    EXPECT_STREQ(detail.message, " ");
    EXPECT_EQ(record.v1.database[0], 'x') << "the record is untouched";
    TempInstall install("");  // the miss resolves under it and fails to open
    EXPECT_EQ(ReadReplServerProperties("/nonexistent/r.properties", &record, 2, &detail), ENOENT)
        << "an open failure comes before the version test";
    EXPECT_EQ(detail.where, "opencfg of " + std::string(std::getenv("VTX")) +
                                "/properties//nonexistent/r.properties for service ");
}

TEST(ReplControlAgent, ReadsTheNamedAgentsSection) {
    TempFile file(kRepl);
    ReplControlAgentPropsV2 record;
    ASSERT_EQ(
        ReadReplControlAgentProperties(file.path(), "agent1", &record, REPL_VERSION_2, nullptr), 0);
    EXPECT_STREQ(record.v1.host, "target");
    EXPECT_EQ(record.v1.critical, 1);
    EXPECT_STREQ(record.v1.replication_method, "async");
    EXPECT_EQ(record.v1.connect_timeout, 120);
    EXPECT_EQ(record.v1.maximum_message, 129);
    EXPECT_STREQ(record.arguments, "-a -b");
    EXPECT_STREQ(record.ipver, "ipv4");

    ErrDetail detail{};
    EXPECT_EQ(
        ReadReplControlAgentProperties(file.path(), "agent2", &record, REPL_VERSION_1, &detail),
        10004);
    EXPECT_EQ(detail.where,
              std::string("find_Section of ") + file.path() + " for section control-agent.agent2");
}

struct NameLimitCase {
    const char* name;
    std::size_t length;
    long result;
};

TEST(SingleSectionReaders, NamesPastTheirLimitAreRefused) {
    TempFile file(kRepl);
    const NameLimitCase cases[] = {
        {"agent_name_at_limit", 49, 10004},
        {"agent_name_past_limit", 50, ENAMETOOLONG},
    };
    for (const NameLimitCase& c : cases) {
        std::string name(c.length, 'n');
        ReplControlAgentProps record;
        ErrDetail detail{};
        EXPECT_EQ(ReadReplControlAgentProperties(file.path(), name.c_str(), &record, REPL_VERSION_1,
                                                 &detail),
                  c.result)
            << c.name;
    }
    SQLDbProperties db;
    EXPECT_EQ(ReadSQLDbProperties(file.path(), std::string(55, 'd').c_str(), &db, nullptr),
              ENAMETOOLONG);
    SQLConfigurationProperties config;
    ErrDetail detail{};
    EXPECT_EQ(ReadSQLConfigProperties(file.path(), std::string(242, 'c').c_str(), &config, &detail),
              ENAMETOOLONG);
    EXPECT_STREQ(detail.where, "ReadSQLConfigProperties section name");
}

TEST(ReplAgentAndTransition, EmptySectionsGiveTheTableDefaults) {
    TempFile file(kRepl);
    ReplAgentPropsV2 agent;
    ASSERT_EQ(ReadReplAgentProperties(file.path(), &agent, REPL_VERSION_2, nullptr), 0);
    EXPECT_STREQ(agent.v1.name, "agent") << "first word only";
    EXPECT_EQ(agent.v1.listener_minport, -1);
    EXPECT_STREQ(agent.ipver, "ipv4");
    ReplTransitionProps transition;
    ASSERT_EQ(ReadReplTransitionProperties(file.path(), &transition, 0, nullptr), 0);
    EXPECT_STREQ(transition.database_role, "normal");
    EXPECT_STREQ(transition.backup_method, "mark");
    EXPECT_EQ(transition.start_secondary_broker, -1);
    EXPECT_EQ(transition.auto_begin_ai, -1);
}

TEST(ReplTransition, MissingSectionIsNamed) {
    TempFile file("[server]\n");
    ReplTransitionProps transition;
    std::memset(&transition, 'x', sizeof transition);
    ErrDetail detail{};
    EXPECT_EQ(ReadReplTransitionProperties(file.path(), &transition, 0, &detail), 10004);
    EXPECT_EQ(detail.where,
              std::string("find_Section of ") + file.path() + " for section transition");
    EXPECT_EQ(transition.responsibility[0], '\0') << "cleared before the search";
}

TEST(ProcessManagerAndSql, ReadTheirSections) {
    TempFile file(kRepl);
    PMMGRProps pm;
    ASSERT_EQ(ReadPMMGRProperties(file.path(), "pm.main", &pm, 0, nullptr), 0);
    EXPECT_STREQ(pm.install_dir, "/opt/pm dir");
    EXPECT_EQ(pm.minport, 9000);
    EXPECT_EQ(ReadPMMGRProperties(file.path(), "main", &pm, 0, nullptr), 10004)
        << "the name is used as given, without prefix";

    SQLConfigurationList list;
    ASSERT_EQ(ReadSQLConfigList(file.path(), &list, nullptr), 0);
    EXPECT_STREQ(list.configuration_names_list, "c1, c2");
    SQLConfigurationProperties config;
    ASSERT_EQ(ReadSQLConfigProperties(file.path(), "c1", &config, nullptr), 0);
    EXPECT_STREQ(config.database_id_list, "d1");
    SQLDbProperties db;
    ASSERT_EQ(ReadSQLDbProperties(file.path(), "d1", &db, nullptr), 0);
    EXPECT_STREQ(db.name, "first");
    EXPECT_STREQ(db.location, "/data/with blanks");
    EXPECT_STREQ(db.catalog, "");
}

}  // namespace
