#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using qorvel::services::testing::TempFile;
using qorvel::services::testing::TempInstall;

const char* kCorvane =
    "[Corvane]\n"
    "RootPath=/web/root\n"
    "ScriptPath=/cgi-bin\n"
    "Components=1010011\n"
    "[Corvane.Messengers]\n"
    "logFile=msngr.log\n"
    "[Corvane.Messengers.CGIIP]\n"
    "AllowMsngrCmds=1\n"
    "cvmAdmIPList=10.0.0.1,10.0.0.2\n"
    "useConnID=no\n"
    "[Corvane.Messengers.CVISA]\n"
    "AllowMsngrCmds=yes\n"
    "useConnID=0\n"
    "[Corvane.Messengers.CVNSA]\n"
    "AllowMsngrCmds=1\n"
    "[UBroker]\n[UBroker.CV]\n[UBroker.CV.a]\n[UBroker.CV.b]\n[UBroker.CVX]\n"
    "[NameServer]\nportNumber=5162\n[NameServer.NS1]\nhostName=nshost\n";

TEST(ReadMsngrProperties, ReadsTheThreeSectionChain) {
    TempFile file(kCorvane);
    auto r = std::make_unique<MsngrServiceInfo>();
    ASSERT_EQ(ReadMsngrProperties(file.path(), "CGIIP", r.get(), nullptr), 0);
    EXPECT_STREQ(r->RootPath, "/web/root");
    EXPECT_STREQ(r->logFile, "msngr.log");
    EXPECT_STREQ(r->AllowMsngrCmds, "1");
    EXPECT_EQ(r->numLogFiles, 3);
    EXPECT_STREQ(r->ipver, "IPv4");
}

TEST(ReadMsngrProperties, RefusesANullNameAndNamesTheFileOnOpenFailure) {
    TempInstall install("");
    auto r = std::make_unique<MsngrServiceInfo>();
    ErrDetail detail{};
    EXPECT_EQ(ReadMsngrProperties("/nonexistent/m.properties", nullptr, r.get(), &detail), 10007);
    EXPECT_STREQ(detail.where, "ReadMsngrProperties");
    EXPECT_EQ(ReadMsngrProperties("/nonexistent/m.properties", "CGIIP", r.get(), &detail), ENOENT);
    EXPECT_EQ(detail.where, "opencfg of " + std::string(std::getenv("VTX")) +
                                "/properties//nonexistent/m.properties for Corvane Messengers");
    EXPECT_EQ(detail.code, 10015);
    EXPECT_EQ(detail.sysError, ENOENT);
}

TEST(ReadNSproperties, ReadsDefaultsAndTheNamedServer) {
    TempFile file(kCorvane);
    auto r = std::make_unique<NSserviceInfo>();
    ErrDetail detail{};
    ASSERT_EQ(ReadNSproperties(file.path(), "NS1", r.get(), nullptr), 0);
    EXPECT_EQ(r->portNumber, 5162);
    EXPECT_EQ(r->numLogFiles, 3);
    EXPECT_STREQ(r->hostName, "nshost");
    EXPECT_EQ(ReadNSproperties(file.path(), "", r.get(), &detail), 10007);
    EXPECT_STREQ(detail.where, "ReadNSproperties");
}

TEST(NameServerAndMessengers, WrongVersionIsReportedUnderTheReadersName) {
    TempFile file(
        "[NameServer]\ninfoVersion=9000\n[NameServer.NS1]\n"
        "[Corvane]\ninfoVersion=9000\n[Corvane.Messengers]\n"
        "[Corvane.Messengers.CGIIP]\n");
    const struct {
        const char* where;
        long (*read)(const char*, ErrDetail*);
    } cases[] = {
        {"ReadNSproperties",
         [](const char* f, ErrDetail* d) {
             NSserviceInfo r;
             return ReadNSproperties(f, "NS1", &r, d);
         }},
        {"ReadMsngrProperties",
         [](const char* f, ErrDetail* d) {
             MsngrServiceInfo r;
             return ReadMsngrProperties(f, "CGIIP", &r, d);
         }},
    };
    for (const auto& c : cases) {
        ErrDetail detail{};
        EXPECT_EQ(c.read(file.path(), &detail), 10005) << c.where;
        EXPECT_EQ(detail.code, 10005) << c.where;
        EXPECT_STREQ(detail.where, c.where);
    }
}

struct CtlCase {
    const char* name;
    const char* address;
    int type;
    long result;
    int64_t allow;
    int64_t useConnID;
};

TEST(MsngrCtlSettings, DecidesCommandsAndConnectionIds) {
    TempInstall install(kCorvane);
    unsetenv("CORVANECNF");
    const CtlCase cases[] = {
        {"listed_address_allowed", "10.0.0.2", MSNGR_CGIIP, 0, 1, 1},
        {"longer_address_refused", "10.0.0.20", MSNGR_CGIIP, 0, 0, 1},
        {"suffix_address_refused", "0.0.1", MSNGR_CGIIP, 0, 0, 1},
        {"yes_is_not_one", "10.0.0.1", MSNGR_CVISA, 0, 0, 0},
        {"no_list_allows_every_address", "1.2.3.4", MSNGR_CVNSA, 0, 1, 0},
        {"unknown_type", "10.0.0.1", 4, -1, -5, -5},
        {"type_zero", "10.0.0.1", 0, -1, -5, -5},
    };
    for (const CtlCase& c : cases) {
        int64_t allow = -5;
        int64_t use = -5;
        EXPECT_EQ(getMsngrCtlSettings(c.address, c.type, &allow, &use), c.result) << c.name;
        EXPECT_EQ(allow, c.allow) << c.name;
        EXPECT_EQ(use, c.useConnID) << c.name;
    }
}

TEST(MsngrCtlSettings, AbsentAddressListReturnsTwoWithoutConnIdRead) {
    TempInstall install(kCorvane);
    unsetenv("CORVANECNF");
    int64_t allow = -5;
    EXPECT_EQ(getMsngrCmdControl("1.2.3.4", MSNGR_CVNSA, &allow), 2);
    EXPECT_EQ(allow, 1);
    EXPECT_EQ(getMsngrCmdControl(nullptr, MSNGR_CGIIP, &allow), 0);
    EXPECT_EQ(allow, 1) << "a null address leaves the flag alone";
}

TEST(MsngrCtlSettings, CorvaneCnfFileAlwaysUsesTheCgiipSection) {
    TempFile file(kCorvane);
    setenv("CORVANECNF", file.path(), 1);
    int64_t allow = -5;
    int64_t use = -5;
    EXPECT_EQ(getMsngrCmdCtlUseConnID("10.0.0.1", MSNGR_CVISA, &allow, &use), 0);
    unsetenv("CORVANECNF");
    EXPECT_EQ(allow, 1) << "CVISA's own section would refuse";
    EXPECT_EQ(use, 1);
}

TEST(CorvaneInfo, PathsAndComponentFlags) {
    TempInstall install(kCorvane);
    setenv("WRKDIR", "/work/dir", 1);
    PathInfo info{};
    EXPECT_EQ(getCV_PathInfo(&info), 0);
    unsetenv("WRKDIR");
    EXPECT_STREQ(info.RootPath, "/web/root");
    EXPECT_STREQ(info.ScriptPath, "/cgi-bin");
    EXPECT_STREQ(info.WorkDir, "/work/dir");
    int64_t flags[7] = {9, 9, 9, 9, 9, 9, 9};
    EXPECT_EQ(getComponentList(flags), 0);
    const int64_t expected[7] = {1, 0, 1, 0, 0, 1, 1};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(flags[i], expected[i]) << i;
}

TEST(CorvaneInfo, ShortComponentsAndMissingKeys) {
    TempInstall install("[Corvane]\nComponents=1\n");
    int64_t flags[7] = {9, 9, 9, 9, 9, 9, 9};
    EXPECT_EQ(getComponentList(flags), 0);
    EXPECT_EQ(flags[0], 1);
    for (int i = 1; i < 7; ++i) EXPECT_EQ(flags[i], 0) << i;
    PathInfo info{};
    EXPECT_EQ(getCV_PathInfo(&info), 2);
    EXPECT_STREQ(info.RootPath, "RootPath") << "an absent key leaves its name";
}

TEST(ServiceEnumeration, ListsTheChildrenOfUBrokerCV) {
    struct Case {
        const char* name;
        const char* text;
        const char* list;
        int64_t count;
    } cases[] = {
        {"two_services_and_a_prefix_twin", kCorvane, "a,b,CVX", 3},
        {"no_children", "[UBroker.CV]\n[Other]\n", "", 0},
    };
    for (const Case& c : cases) {
        TempInstall install(c.text);
        char list[SERVICE_LIST_SIZE];
        char* p = list;
        int64_t count = -1;
        EXPECT_EQ(getServiceList(&p, 0, &count), 0) << c.name;
        EXPECT_STREQ(list, c.list) << c.name;
        EXPECT_EQ(count, c.count) << c.name;
    }
}

TEST(ServiceEnumeration, SingleLookClosesTheFile) {
    TempInstall install(kCorvane);
    CFGHANDLE context{};
    char name[8];
    char* p = name;
    EXPECT_EQ(serviceEnum_CV(&context, SERVICE_ENUM_FIRST_ONLY, &p, sizeof name), 0);
    EXPECT_STREQ(name, "a");
    EXPECT_EQ(context.fp, nullptr);
    EXPECT_EQ(serviceEnum_CV(&context, 0, &p, sizeof name), 0);
    EXPECT_NE(context.fp, nullptr) << "a stepwise enumeration keeps the file open";
    EXPECT_EQ(serviceEnum_CV(&context, 1, &p, sizeof name), 0);
    EXPECT_STREQ(name, "b");
    closecfg(&context);
}

TEST(ServiceEnumeration, OverlongListIsRefusedKeepingWholeNames) {
    std::string text = "[UBroker.CV]\n";
    for (int i = 0; i < 40; ++i) text += "[UBroker.CV." + std::string(250, 'a' + i % 26) + "]\n";
    TempInstall install(text);
    char list[SERVICE_LIST_SIZE];
    char* p = list;
    int64_t count = 0;
    EXPECT_EQ(getServiceList(&p, 0, &count), ENOBUFS);
    EXPECT_EQ(count, 32);
    EXPECT_EQ(std::strlen(list), 32u * 251 - 1);
}

}  // namespace
