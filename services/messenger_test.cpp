#include <filesystem>
#include <iterator>

#include "qorvel/services.h"
#include "tests/unit.h"

namespace {

const char* kCorvane =
    "[Corvane]\nRootPath=/web/root\nScriptPath=/cgi-bin\nComponents=1010011\n"
    "[Corvane.Messengers]\nlogFile=msngr.log\n"
    "[Corvane.Messengers.CGIIP]\nAllowMsngrCmds=1\ncvmAdmIPList=10.0.0.1,10.0.0.2\nuseConnID=no\n"
    "[Corvane.Messengers.CVISA]\nAllowMsngrCmds=yes\nuseConnID=0\ncvmAdmIPList=10.0.0.1\n"
    "[Corvane.Messengers.CVNSA]\nAllowMsngrCmds=1\n"
    "[UBroker]\n[UBroker.CV]\n[UBroker.CV.a]\n[UBroker.CV.b]\n[UBroker.CVX]\n"
    "[NameServer]\nportNumber=5162\n[NameServer.NS1]\nhostName=nshost\n";

TEST(MsngrCtlSettings, DecidesCommandsByTheAddressListAndReadsConnectionIds) {
    TempInstall install(kCorvane);
    TempFile cnf(kCorvane);
    const struct {
        const char* name;
        const char* address;
        int type;
        bool corvaneCnf;       // CORVANECNF names a file
        std::string expected;  // result, allowCmds, useConnID
    } cases[] = {
        {"listed_address_allowed", "10.0.0.2", MSNGR_CGIIP, false, "0|1|1"},
        {"longer_address_refused", "10.0.0.20", MSNGR_CGIIP, false, "0|0|1"},
        {"suffix_address_refused", "0.0.1", MSNGR_CGIIP, false, "0|0|1"},
        {"yes_is_not_one_even_for_a_listed_address", "10.0.0.1", MSNGR_CVISA, false, "0|0|0"},
        {"no_list_allows_every_address", "1.2.3.4", MSNGR_CVNSA, false, "0|1|0"},
        {"unknown_type", "10.0.0.1", 4, false, "-1|-5|-5"},
        {"type_zero", "10.0.0.1", 0, false, "-1|-5|-5"},
        {"corvanecnf_file_always_uses_cgiip", "10.0.0.1", MSNGR_CVISA, true, "0|1|1"},
    };
    for (const auto& c : cases) {
        c.corvaneCnf ? setenv("CORVANECNF", cnf.path(), 1) : unsetenv("CORVANECNF");
        int64_t allow = -5;
        int64_t use = -5;
        EXPECT_EQ(join(getMsngrCmdCtlUseConnID(c.address, c.type, &allow, &use), allow, use),
                  c.expected)
            << c.name;
    }
    unsetenv("CORVANECNF");
    int64_t allow = -5;
    EXPECT_EQ(getMsngrCmdControl("1.2.3.4", MSNGR_CVNSA, &allow), 2) << "no list to search";
    EXPECT_EQ(allow, 1);
    allow = -5;
    EXPECT_EQ(getMsngrCmdControl(nullptr, MSNGR_CGIIP, &allow), 0);
    EXPECT_EQ(allow, -5) << "a null address leaves the flag alone";
}

// A key above every header is no key of the missing section.
TEST(CorvaneInfo, PathsAndComponentFlags) {
    const struct {
        const char* text;
        std::string got;  // paths result, RootPath, ScriptPath, WorkDir, flags result and flags
    } cases[] = {
        {kCorvane, "0|/web/root|/cgi-bin|/work/dir|0|10100119"},
        {"[Corvane]\nComponents=1\n", "2|RootPath|||0|10000009"},  // an absent key leaves its name
        {"Components=1\nRootPath=/r\n[Other]\n", "10004||||10004|99999999"},
    };
    for (const auto& c : cases) {
        TempInstall install(c.text);
        setenv("WRKDIR", "/work/dir", 1);
        PathInfo info{};
        const long result = getCV_PathInfo(&info);
        unsetenv("WRKDIR");
        int64_t flags[8] = {9, 9, 9, 9, 9, 9, 9, 9};  // seven flags and a guard
        std::string got =
            join(result, info.RootPath, info.ScriptPath, info.WorkDir, getComponentList(flags), "");
        for (int64_t flag : flags) got += std::to_string(flag);
        EXPECT_EQ(got, c.got);
    }
}

TEST(ServiceEnumeration, ListsTheChildrenOfUBrokerCV) {
    // 40 names of 250 characters: only 32 whole ones fit the list.
    std::string overlong = "[UBroker.CV]\n";
    std::string kept;
    for (int i = 0; i < 40; ++i) {
        const std::string name(250, static_cast<char>('a' + i % 26));
        overlong += "[UBroker.CV." + name + "]\n";
        if (i < 32) kept += (i ? "," : "") + name;
    }
    const struct {
        const char* name;
        std::string text;
        std::string expected;  // result, count, list
    } cases[] = {
        {"two_services_and_a_prefix_twin", kCorvane, "0|3|a,b,CVX"},
        {"no_children", "[UBroker.CV]\n[Other]\n", "0|0|"},
        {"overlong_list_keeps_whole_names", overlong, join(ENOBUFS, 32, kept)},
    };
    auto open_files = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    for (const auto& c : cases) {
        TempInstall install(c.text);
        char list[SERVICE_LIST_SIZE];
        char* p = list;
        int64_t count = -1;
        auto before = open_files();
        EXPECT_EQ(join(getServiceList(&p, 0, &count), count, list), c.expected) << c.name;
        EXPECT_EQ(open_files(), before) << c.name << ": the file stays open";
    }
}

TEST(ServiceEnumeration, SingleLookClosesTheFileStepwiseKeepsItOpen) {
    TempInstall install(kCorvane);
    CFGHANDLE context{};
    char name[8];
    char* p = name;
    EXPECT_EQ(serviceEnum_CV(&context, SERVICE_ENUM_FIRST_ONLY, &p, sizeof name), 0);
    EXPECT_EQ(join(name, context.fp == nullptr), "a|1");
    EXPECT_EQ(serviceEnum_CV(&context, 0, &p, sizeof name), 0);
    EXPECT_EQ(serviceEnum_CV(&context, 1, &p, sizeof name), 0);
    EXPECT_EQ(join(name, context.fp == nullptr), "b|0");
    closecfg(&context);
}

}  // namespace
