#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>

#include "qorvel/services.h"
#include "services/test_files.h"
#include "util/bounded_text.h"

namespace {

using qorvel::services::testing::TempFile;
using qorvel::services::testing::TempInstall;

std::unique_ptr<UBSERVICEINFO> record() { return std::make_unique<UBSERVICEINFO>(); }

const char* kChain =
    "[UBroker]\n"
    "portNumber=4000\n"
    "srvrDebug=Disabled\n"
    "applicationURL=http://base\n"
    "srvrLogFile=base.log\n"
    "[UBroker.CV]\n"
    "srvrLogFile=cv.log\n"
    "srvrMinPort=5000\n"
    "[UBroker.CV.svc1]\n"
    "srvrAppMode=production\n"
    "srvrLogFile=svc1.log\n"
    "ZELPATH=/a b/c\n"
    "srvrExecFile=/opt/x/_morvant -q\n"
    "[UBroker.CV.svc2]\n"
    "userName=a_name_that_is_much_longer_than_the_fifty_bytes_of_its_field\n";

TEST(ReadUBproperties, InheritsDownTheChainAndFallsBackToTableDefaults) {
    TempFile file(kChain);
    auto r = record();
    ErrDetail detail{};
    ASSERT_EQ(ReadUBproperties(file.path(), "CV", "svc1", r.get(), &detail), 0);
    EXPECT_EQ(r->infoVersion, 9010);
    EXPECT_EQ(r->portNumber, 4000) << "set only in UBroker, carried through";
    EXPECT_EQ(r->srvrMinPort, 5000) << "set in the service type's section";
    EXPECT_EQ(r->srvrMaxPort, 3502) << "set nowhere: table default";
    EXPECT_EQ(r->sessionTimeout, 300);
    EXPECT_EQ(r->reserved, 0);
    EXPECT_STREQ(r->srvrLogFile, "svc1.log") << "the deepest section wins";
    EXPECT_STREQ(r->srvrDebug, "Disabled") << "inherited text survives a deeper section";
    EXPECT_STREQ(r->applicationURL, "http://base");
    EXPECT_STREQ(r->srvrAppMode, "production");
    EXPECT_STREQ(r->stateTransport, "Cookies");
    EXPECT_STREQ(r->ZELPATH, "/a b/c") << "whole-line key keeps its blanks";
    EXPECT_STREQ(r->srvrExecFile, "/opt/x/_morvant -q");
}

TEST(ReadUBproperties, CutsOverlongValuesAtTheirField) {
    TempFile file(kChain);
    auto r = record();
    ASSERT_EQ(ReadUBproperties(file.path(), "CV", "svc2", r.get(), nullptr), 0);
    EXPECT_EQ(std::strlen(r->userName), 49u);
    EXPECT_STREQ(r->groupName, "") << "the neighbouring field is untouched";
}

TEST(ReadUBproperties, DefaultWorkDirBecomesTheWorkingDirectory) {
    TempFile file(kChain);
    auto r = record();
    char cwd[PATH_MAX];
    ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
    ASSERT_EQ(ReadUBproperties(file.path(), "CV", "svc1", r.get(), nullptr), 0);
    EXPECT_STREQ(r->workDir, cwd);
}

TEST(ReadUBproperties, DefaultsOnlyNameReadsTwoSections) {
    TempFile file("[UBroker]\n[UBroker.CV]\nsrvrLogFile=cv.log\n");
    auto r = record();
    EXPECT_EQ(ReadUBproperties(file.path(), "CV", UB_DEFAULTS_ONLY, r.get(), nullptr), 0);
    EXPECT_STREQ(r->srvrLogFile, "cv.log");
    EXPECT_EQ(
        ReadUBproperties(file.path(), "CV", "get_just_default_ubproperties", r.get(), nullptr),
        10004)
        << "another case is an ordinary service name";
}

// Values that refer to each other in a ring never settle: uuid fails with 10010.
const char* kEndlessReference =
    "[UBroker]\nuuid=!{value-of:x}\nx=!{value-of:y}\ny=!{value-of:x}\n"
    "[UBroker.CV]\n[UBroker.CV.svc1]\n";

struct FailureCase {
    const char* name;
    const char* file;  // nullptr: a path that does not exist
    const char* service;
    long result;
    int64_t code;
    int64_t sysError;
    std::string whereStart;
    std::string message;
};

TEST(ReadUBproperties, ReportsEachFailureInTheErrorDetail) {
    const std::string longName(250, 's');
    const FailureCase cases[] = {
        {"null_service_name", kChain, nullptr, 10007, 10007, 0, "ReadUBproperties",
         "ServiceName cannot be NULL or blank"},
        {"empty_service_name", kChain, "", 10007, 10007, 0, "ReadUBproperties",
         "ServiceName cannot be NULL or blank"},
        {"missing_service_section", kChain, "nosuch", 10004, 10004, 0, "find_Section of ",
         "Specified Service Name does not exist"},
        {"unreadable_file", nullptr, "svc1", ENOENT, 10015, ENOENT, "opencfg of /",
         std::strerror(ENOENT)},
        {"overlong_section_name", kChain, longName.c_str(), ENAMETOOLONG, 10015, ENAMETOOLONG,
         "ReadUBproperties section name", std::strerror(ENAMETOOLONG)},
        {"library_code_of_a_key_keeps_its_own_text", kEndlessReference, "svc1", 10010, 10010, 0,
         "getPropValue for keyword uuid", "Specified Keyword Value is invalid"},
    };
    TempInstall install("");  // a relative miss resolves under it and fails to open
    for (const FailureCase& c : cases) {
        TempFile file(c.file ? c.file : "");
        const char* path = c.file ? file.path() : "/nonexistent/dir/x.properties";
        auto r = record();
        ErrDetail detail{};
        EXPECT_EQ(ReadUBproperties(path, "CV", c.service, r.get(), &detail), c.result) << c.name;
        EXPECT_EQ(detail.code, c.code) << c.name;
        EXPECT_EQ(detail.sysError, c.sysError) << c.name;
        EXPECT_EQ(detail.msgNumber, CV_MSG_NUMBER) << c.name;
        EXPECT_EQ(std::string(detail.where).substr(0, c.whereStart.size()), c.whereStart)
            << c.name << ": " << detail.where;
        EXPECT_EQ(detail.message, c.message) << c.name;
    }
}

TEST(ReadUBproperties, MissingSectionIsNamedInTheWhereText) {
    TempFile file(kChain);
    auto r = record();
    ErrDetail detail{};
    ReadUBproperties(file.path(), "CV", "nosuch", r.get(), &detail);
    EXPECT_EQ(detail.where,
              std::string("find_Section of ") + file.path() + " for section UBroker.CV.nosuch");
}

TEST(ReadUBproperties, WrongVersionFailsEverySectionThatDoesNotRestateIt) {
    const char* text =
        "[UBroker]\ninfoVersion=9000\nportNumber=1\n"
        "[UBroker.CV]\nportNumber=2\n"
        "[UBroker.CV.ok]\ninfoVersion=9010\nsrvrMinPort=7\n"
        "[UBroker.CV.bad]\nsrvrMinPort=8\n";
    TempFile file(text);
    auto r = record();
    ErrDetail detail{};
    EXPECT_EQ(ReadUBproperties(file.path(), "CV", "bad", r.get(), &detail), 10005);
    EXPECT_EQ(detail.code, 10005);
    EXPECT_STREQ(detail.where, "ReadUBproperties");
    EXPECT_STREQ(detail.message, "UBSERVICEINFO struct is incorrect version");
    EXPECT_EQ(r->portNumber, 0) << "keys after the version were skipped";

    detail = ErrDetail{};
    EXPECT_EQ(ReadUBproperties(file.path(), "CV", "ok", r.get(), &detail), 0);
    EXPECT_EQ(r->srvrMinPort, 7);
    EXPECT_EQ(r->portNumber, 0) << "sections before the fix were skipped";
    EXPECT_EQ(detail.code, 10005) << "the earlier failure stays reported";
}

TEST(ReadCfgCV, ReadsTheInstallationsBrokerFile) {
    TempInstall install(kChain);
    auto r = record();
    ASSERT_EQ(readCfg_CV("svc1", r.get(), nullptr), 0);
    EXPECT_STREQ(r->srvrLogFile, "svc1.log");
}

TEST(ReadCfgValueCV, LooksKeysUpInTheCachedRecord) {
    TempFile file(kChain);
    char out[UB_VALUE_SIZE] = "untouched";
    EXPECT_EQ(readCfgValue_CV(file.path(), "svc1", "PORTNUMBER", out), 0);
    EXPECT_STREQ(out, "4000");
    EXPECT_EQ(readCfgValue_CV(file.path(), nullptr, "srvrlogfile", out), 0);
    EXPECT_STREQ(out, "svc1.log") << "a null name uses the cache";
    qorvel::bounded_copy(out, sizeof out, "untouched");
    EXPECT_EQ(readCfgValue_CV(file.path(), nullptr, "noSuchKey", out), 2);
    EXPECT_STREQ(out, "untouched");
    EXPECT_EQ(readCfgValue_CV(file.path(), "svc2", "srvrLogFile", out), 0);
    EXPECT_STREQ(out, "cv.log");
}

TEST(ReadCfgValueCV, FailedReadEmptiesTheCache) {
    TempFile file(kChain);
    char out[UB_VALUE_SIZE];
    ASSERT_EQ(readCfgValue_CV(file.path(), "svc1", "srvrLogFile", out), 0);
    EXPECT_EQ(readCfgValue_CV(file.path(), "gone", "srvrLogFile", out), 10004);
    EXPECT_EQ(readCfgValue_CV(file.path(), nullptr, "srvrLogFile", out), 0);
    EXPECT_STREQ(out, "") << "no half-read record passes for svc1";
    EXPECT_EQ(readCfgValue_CV(file.path(), "svc1", "srvrLogFile", out), 0);
    EXPECT_STREQ(out, "svc1.log") << "svc1 is read again";
}

}  // namespace
