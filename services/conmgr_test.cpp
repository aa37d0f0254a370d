#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using qorvel::services::testing::join;
using qorvel::testing::TempFile;

// No section configuration.sports: the middle of the chain is missing.
const char* kChain =
    "[configuration]\nmaxusers=50\ndatabase=db#1\nconversionmap=map#2 x\n"
    "[configuration.sports.cfg1]\nmaxservers=8\n"
    "[database]\ndatabasename=/db/a#b c\n"
    "[servergroup]\nhost=example\n[servergroup.sg]\nport=svc\n";

// Plain text values stop at "#", whole-line ones keep it; the database chain
// lacks its last level, which fails the read after the base was read.
TEST(ConManagerReaders, InheritedDefaultsCarryValuesDownTableDefaultsReapplyTheTable) {
    TempFile file(kChain);
    const char* f = file.path();
    const struct {
        int tableDefaults;
        std::string config, group, db;
    } cases[] = {
        {0, "0|8|50|0||db|map#2 x", "0|example|svc|0|", "10004|/db/a#b c|"},
        {1, "0|8|20|8192|basic||convmap.cp", "0|localhost|svc|1024|nnnnnnnnnnn",
         "10004|/db/a#b c|false"},
    };
    for (const auto& c : cases) {
        auto cnfg = std::make_unique<CNFGserviceInfo>();
        const long cnfgResult =
            ReadConfigProperties(f, "sports.cfg1", cnfg.get(), c.tableDefaults, nullptr);
        EXPECT_EQ(join(cnfgResult, cnfg->maxservers, cnfg->maxusers, cnfg->locktableentries,
                       cnfg->casetablename, cnfg->database, cnfg->conversionmap),
                  c.config);
        SRVRGRPserviceInfo grp{};
        const long grpResult = ReadSrvrGrpProperties(f, "sg", &grp, c.tableDefaults, nullptr);
        EXPECT_EQ(join(grpResult, grp.host, grp.port, grp.messagebuffersize, grp.zelsqltrc),
                  c.group);
        DBserviceInfo db{};
        const long dbResult = ReadDBProperties(f, "any", &db, c.tableDefaults, nullptr);
        EXPECT_EQ(join(dbResult, db.databasename, db.autostart), c.db);
    }
}

TEST(ReadConfigProperties, ServiceNamesBuildTheChain) {
    const std::string longPart(1020, 'p');
    const struct {
        const char* name;
        const char* service;
        long result;
    } cases[] = {
        {"extra_dots_are_ignored", "sports..cfg1.", 0},
        {"seven_parts_fit", "a.b.c.d.e.f.g", 10004},
        {"eight_parts_are_refused", "a.b.c.d.e.f.g.h", ENAMETOOLONG},
        {"overlong_name_is_refused", longPart.c_str(), ENAMETOOLONG},
    };
    TempFile file(kChain);
    for (const auto& c : cases) {
        auto r = std::make_unique<CNFGserviceInfo>();
        EXPECT_EQ(ReadConfigProperties(file.path(), c.service, r.get(), 0, nullptr), c.result)
            << c.name;
    }
}

}  // namespace
