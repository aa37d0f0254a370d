#include "qorvel/services.h"
#include "tests/unit.h"

namespace {

// Inherited defaults, which qorvel-props does not use: each level keeps what
// the one before it set. Plain text values stop at "#", whole-line ones keep
// it; the database chain lacks its last level, which fails the read after the
// base was read.
TEST(ConManagerReaders, InheritedDefaultsCarryValuesDown) {
    TempFile file(
        "[configuration]\nmaxusers=50\ndatabase=db#1\nconversionmap=map#2 x\n"
        "[configuration.sports.cfg1]\nmaxservers=8\n"
        "[database]\ndatabasename=/db/a#b c\n"
        "[servergroup]\nhost=example\n[servergroup.sg]\nport=svc\n");
    const char* f = file.path();
    auto cnfg = std::make_unique<CNFGserviceInfo>();
    const long cnfgResult = ReadConfigProperties(f, "sports.cfg1", cnfg.get(), 0, nullptr);
    EXPECT_EQ(join(cnfgResult, cnfg->maxservers, cnfg->maxusers, cnfg->locktableentries,
                   cnfg->casetablename, cnfg->database, cnfg->conversionmap),
              "0|8|50|0||db|map#2 x");
    SRVRGRPserviceInfo grp{};
    const long grpResult = ReadSrvrGrpProperties(f, "sg", &grp, 0, nullptr);
    EXPECT_EQ(join(grpResult, grp.host, grp.port, grp.messagebuffersize, grp.zelsqltrc),
              "0|example|svc|0|");
    DBserviceInfo db{};
    const long dbResult = ReadDBProperties(f, "any", &db, 0, nullptr);
    EXPECT_EQ(join(dbResult, db.databasename, db.autostart), "10004|/db/a#b c|");
}

}  // namespace
