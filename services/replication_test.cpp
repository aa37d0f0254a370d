#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using qorvel::services::testing::join;
using qorvel::testing::TempFile;

const char* kRepl =
    "[server]\ndatabase=/db/source db\nlistener-minport=4000\nrepl-keep-alive=30\n"
    "[control-agent.agent1]\nhost=target\narguments=-a -b\n"
    "[pm.main]\ninstall-dir=/opt/pm dir\nminport=9000\n";

TEST(ReplServer, Version2RecordExtendsVersion1AndVersion1StopsAtItsEnd) {
    TempFile file(kRepl);
    ReplServerPropsV2 v2;
    std::memset(&v2, 'x', sizeof v2);
    ASSERT_EQ(ReadReplServerProperties(file.path(), &v2, REPL_VERSION_1, nullptr), 0);
    EXPECT_EQ(join(v2.v1.database, v2.v1.listener_minport, v2.v1.listener_maxport),
              "/db/source db|4000|-1");
    EXPECT_EQ(v2.minimum_polling_delay, 0x7878787878787878) << "version 1 stops at its end";
    const ReplServerProps v1 = v2.v1;
    ASSERT_EQ(ReadReplServerProperties(file.path(), &v2, REPL_VERSION_2, nullptr), 0);
    EXPECT_EQ(std::memcmp(&v1, &v2.v1, sizeof v1), 0) << "both versions share the first part";
    EXPECT_EQ(join(v2.repl_keep_alive, v2.tcp_inactivity_timeout), "30|-1");

    ReplControlAgentPropsV2 agent;
    ASSERT_EQ(
        ReadReplControlAgentProperties(file.path(), "agent1", &agent, REPL_VERSION_2, nullptr), 0);
    EXPECT_EQ(join(agent.v1.host, agent.arguments), "target|-a -b");
}

TEST(SingleSectionReaders, NamesUpToTheirLimitAreLookedForLongerOnesRefused) {
    TempFile file(kRepl);
    const char* f = file.path();
    for (std::size_t extra : {0, 1}) {
        const long expected = extra ? ENAMETOOLONG : 10004;
        auto name = [extra](std::size_t limit) { return std::string(limit + extra, 'n'); };
        ReplControlAgentProps agent;
        EXPECT_EQ(
            ReadReplControlAgentProperties(f, name(49).c_str(), &agent, REPL_VERSION_1, nullptr),
            expected);
        SQLDbProperties db;
        EXPECT_EQ(ReadSQLDbProperties(f, name(54).c_str(), &db, nullptr), expected);
        SQLConfigurationProperties config;
        EXPECT_EQ(ReadSQLConfigProperties(f, name(239).c_str(), &config, nullptr), expected);
        PMMGRProps pm;
        EXPECT_EQ(ReadPMMGRProperties(f, name(63).c_str(), &pm, 0, nullptr), expected);
    }
}

TEST(ProcessManager, ReadsTheSectionNamedAsGiven) {
    TempFile file(kRepl);
    PMMGRProps pm;
    EXPECT_EQ(join(ReadPMMGRProperties(file.path(), "pm.main", &pm, 0, nullptr), pm.install_dir,
                   pm.minport),
              "0|/opt/pm dir|9000");
    EXPECT_EQ(ReadPMMGRProperties(file.path(), "main", &pm, 0, nullptr), 10004)
        << "the name is used as given, without prefix";
}

}  // namespace
