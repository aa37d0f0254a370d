#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <memory>
#include <string>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using qorvel::services::testing::join;
using qorvel::testing::TempFile;

const char* kChain =
    "[UBroker]\nportNumber=4000\nsrvrDebug=Disabled\nsrvrLogFile=base.log\n"
    "[UBroker.CV]\nsrvrLogFile=cv.log\nsrvrMinPort=5000\n"
    "[UBroker.CV.svc1]\nsrvrLogFile=svc1.log\nZELPATH=/a b/c\n"
    "[UBroker.CV.svc2]\n"
    "userName=a_name_that_is_much_longer_than_the_fifty_bytes_of_its_field\n";

TEST(ReadUBproperties, EachLevelOverridesTheOneBeforeAndTableDefaultsFillTheRest) {
    TempFile file(kChain);
    char cwd[PATH_MAX];
    ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
    const struct {
        const char* service;
        std::string expected;  // result, then fields set at each level, a default, the cut
    } cases[] = {
        {"svc1", join(0, 9010, 4000, 5000, 3502, "svc1.log", "Disabled", "/a b/c", cwd, 0)},
        {"svc2", join(0, 9010, 4000, 5000, 3502, "cv.log", "Disabled", "", cwd, 49)},
        {UB_DEFAULTS_ONLY, join(0, 9010, 4000, 5000, 3502, "cv.log", "Disabled", "", cwd, 0)},
        {"get_just_default_ubproperties", join(10004, 9010, 4000, 5000, 3502, "cv.log", "Disabled",
                                               "", cwd, 0)},  // another case is a service name
    };
    for (const auto& c : cases) {
        auto r = std::make_unique<UBSERVICEINFO>();
        const long result = ReadUBproperties(file.path(), "CV", c.service, r.get(), nullptr);
        EXPECT_EQ(join(result, r->infoVersion, r->portNumber, r->srvrMinPort, r->srvrMaxPort,
                       r->srvrLogFile, r->srvrDebug, r->ZELPATH, r->workDir,
                       std::string(r->userName).size()),
                  c.expected)
            << c.service;
        EXPECT_STREQ(r->groupName, "") << "the field after a cut value is untouched";
    }
}

TEST(ReadUBproperties, WrongVersionFailsEverySectionThatDoesNotRestateIt) {
    TempFile file(
        "[UBroker]\ninfoVersion=9000\nportNumber=1\n[UBroker.CV]\nportNumber=2\n"
        "[UBroker.CV.ok]\ninfoVersion=9010\nsrvrMinPort=7\n[UBroker.CV.bad]\nsrvrMinPort=8\n");
    auto r = std::make_unique<UBSERVICEINFO>();
    ErrDetail detail{};
    EXPECT_EQ(ReadUBproperties(file.path(), "CV", "bad", r.get(), &detail), 10005);
    EXPECT_EQ(join(r->portNumber, r->srvrMinPort), "0|0") << "keys after the version skipped";
    detail = ErrDetail{};
    EXPECT_EQ(ReadUBproperties(file.path(), "CV", "ok", r.get(), &detail), 0);
    EXPECT_EQ(join(r->portNumber, r->srvrMinPort), "0|7") << "sections before the fix skipped";
    EXPECT_EQ(detail.code, 10005) << "the earlier failure stays reported";
}

TEST(ReadCfgValueCV, AnswersFromTheCachedRecordUntilAReadFails) {
    TempFile file(kChain);
    const struct {
        const char* service;  // nullptr: the cached record
        const char* key;
        std::string expected;  // result and value
    } steps[] = {
        {"svc1", "PORTNUMBER", "0|4000"},
        {nullptr, "srvrlogfile", "0|svc1.log"},
        {nullptr, "noSuchKey", "2|untouched"},
        {"svc2", "srvrLogFile", "0|cv.log"},
        {"gone", "srvrLogFile", "10004|untouched"},
        {nullptr, "srvrLogFile", "0|"},       // no half-read record passes for svc2
        {"svc2", "srvrLogFile", "0|cv.log"},  // so svc2 is read again
    };
    for (const auto& s : steps) {
        char out[UB_VALUE_SIZE] = "untouched";
        EXPECT_EQ(join(readCfgValue_CV(file.path(), s.service, s.key, out), out), s.expected)
            << (s.service ? s.service : "(cache)") << " " << s.key;
    }
}

}  // namespace
