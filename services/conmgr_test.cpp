#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using qorvel::services::testing::TempFile;

const char* kChain =
    "[configuration]\n"
    "maxusers=50\n"
    "database=db#1\n"
    "conversionmap=map#2 x\n"
    "[configuration.sports.cfg1]\n"
    "maxservers=8\n"
    "[database]\ndatabasename=/db/a#b c\n"
    "[servergroup]\nhost=example\n[servergroup.sg]\nport=svc\n";

struct DefaultsCase {
    const char* name;
    int useTableDefaults;
    int64_t maxusers;
    int64_t locktableentries;
    const char* casetablename;
};

TEST(ReadConfigProperties, TheTwoDefaultKindsInheritDifferently) {
    const DefaultsCase cases[] = {
        {"inherited_keeps_most_specific_value", 0, 50, 0, ""},
        {"table_defaults_reapplied_by_last_section", 1, 20, 8192, "basic"},
    };
    TempFile file(kChain);
    for (const DefaultsCase& c : cases) {
        auto r = std::make_unique<CNFGserviceInfo>();
        ErrDetail detail{};
        EXPECT_EQ(
            ReadConfigProperties(file.path(), "sports.cfg1", r.get(), c.useTableDefaults, &detail),
            0)
            << c.name;
        EXPECT_EQ(r->maxservers, 8) << c.name;
        EXPECT_EQ(r->maxusers, c.maxusers) << c.name;
        EXPECT_EQ(r->locktableentries, c.locktableentries) << c.name;
        EXPECT_STREQ(r->casetablename, c.casetablename) << c.name;
        EXPECT_EQ(detail.code, 10004) << c.name << ": the missing middle section is recorded";
        EXPECT_EQ(detail.where, std::string("find_Section of ") + file.path() +
                                    " for section configuration.sports")
            << c.name;
    }
}

TEST(ReadConfigProperties, PlainTextStopsAtHashWholeLineKeepsIt) {
    TempFile file(kChain);
    auto r = std::make_unique<CNFGserviceInfo>();
    ASSERT_EQ(ReadConfigProperties(file.path(), "sports.cfg1", r.get(), 0, nullptr), 0);
    EXPECT_STREQ(r->database, "db");
    EXPECT_STREQ(r->conversionmap, "map#2 x");
    auto db = std::make_unique<DBserviceInfo>();
    ASSERT_EQ(ReadDBProperties(file.path(), "any", db.get(), 1, nullptr), 10004)
        << "the last level is missing";
    EXPECT_STREQ(db->databasename, "/db/a#b c");
    EXPECT_STREQ(db->autostart, "false") << "table default applied by the existing base";
}

struct ChainCase {
    const char* name;
    const char* service;
    long result;
};

TEST(ReadConfigProperties, ServiceNamesBuildTheChain) {
    const std::string eightParts = "a.b.c.d.e.f.g.h";
    const std::string longPart(1020, 'p');
    const ChainCase cases[] = {
        {"extra_dots_are_ignored", "sports..cfg1.", 0},
        {"leading_dot_is_ignored", ".sports.cfg1", 0},
        {"seven_parts_fit", "a.b.c.d.e.f.g", 10004},
        {"eight_parts_are_refused", eightParts.c_str(), ENAMETOOLONG},
        {"overlong_name_is_refused", longPart.c_str(), ENAMETOOLONG},
    };
    TempFile file(kChain);
    for (const ChainCase& c : cases) {
        auto r = std::make_unique<CNFGserviceInfo>();
        EXPECT_EQ(ReadConfigProperties(file.path(), c.service, r.get(), 0, nullptr), c.result)
            << c.name;
    }
}

TEST(ConManagerReaders, RefuseMissingNamesWithTheirOwnWhereText) {
    struct Case {
        const char* where;
        long (*read)(const char*, ErrDetail*);
    } cases[] = {
        {"ReadConfigProperties",
         [](const char* f, ErrDetail* d) {
             CNFGserviceInfo r;
             std::memset(&r, 'x', sizeof r);
             long rc = ReadConfigProperties(f, "", &r, 0, d);
             return r.maxusers == 0 ? -100 : rc;  // the record must not be cleared
         }},
        {"ReadDBProperties",
         [](const char* f, ErrDetail* d) {
             DBserviceInfo r;
             return ReadDBProperties(f, nullptr, &r, 0, d);
         }},
        {"ReadSrvrGrpProperties",
         [](const char* f, ErrDetail* d) {
             SRVRGRPserviceInfo r;
             return ReadSrvrGrpProperties(f, "", &r, 0, d);
         }},
    };
    TempFile file(kChain);
    for (const auto& c : cases) {
        ErrDetail detail{};
        EXPECT_EQ(c.read(file.path(), &detail), 10007) << c.where;
        EXPECT_STREQ(detail.where, c.where);
        EXPECT_STREQ(detail.message, "ServiceName cannot be NULL or blank");
    }
}

TEST(ReadSrvrGrpProperties, TableDefaultsFillWhatTheSectionsLack) {
    TempFile file(kChain);
    SRVRGRPserviceInfo r;
    ASSERT_EQ(ReadSrvrGrpProperties(file.path(), "sg", &r, 1, nullptr), 0);
    EXPECT_STREQ(r.host, "localhost") << "table default re-applied by the last section";
    EXPECT_STREQ(r.port, "svc");
    EXPECT_EQ(r.messagebuffersize, 1024);
    EXPECT_STREQ(r.zelsqltrc, "nnnnnnnnnnn");
    ASSERT_EQ(ReadSrvrGrpProperties(file.path(), "sg", &r, 0, nullptr), 0);
    EXPECT_STREQ(r.host, "example");
}

TEST(ReadConManager, EmptyBaseReadsNothingAndReleasesTheList) {
    TempFile file(kChain);
    CFGHANDLE handle{};
    ASSERT_EQ(OpenConManager(file.path(), "x", nullptr, 0, &handle, "caller"), 0);
    InfoList list = nullptr;
    CfgInfo terminator{};
    ASSERT_EQ(alloc_InfoList(&list, &terminator, sizeof terminator), 0);
    EXPECT_EQ(ReadConManager("x", nullptr, list, &handle, "", 0), 0);
    closecfg(&handle);
}

}  // namespace
