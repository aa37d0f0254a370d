#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "qorvel/services.h"
#include "services/test_files.h"
#include "util/bounded_text.h"

namespace {

using qorvel::services::testing::join;
using qorvel::testing::TempFile;
using qorvel::testing::TempInstall;

TEST(CvErrorMsg, KnowsTheCodesOfItsTableAndNoOthers) {
    EXPECT_STREQ(getCV_errorMsg(10005), "UBSERVICEINFO struct is incorrect version");
    EXPECT_STREQ(getCV_errorMsg(10022), "Unable to validate user/password pair");
    for (int64_t code : {0, 10023, 10025}) EXPECT_EQ(getCV_errorMsg(code), nullptr) << code;
}

TEST(DefaultDir, ReplacesOnlyDotAndDotSlash) {
    char cwd[PATH_MAX];
    ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
    const struct {
        const char* input;
        std::string expected;
    } cases[] = {{".", cwd}, {"./", cwd}, {"..", ".."}, {"", ""}, {"./logs", "./logs"}};
    for (const auto& c : cases) {
        char dir[255];
        qorvel::bounded_copy(dir, c.input);
        getdef_dir(dir, sizeof dir);
        EXPECT_EQ(dir, c.expected) << c.input;
    }
}

// The where-text with the test's file as "<file>" and installation as "<vtx>".
std::string placeholders(std::string text, const std::string& file, const std::string& vtx) {
    for (const auto& [from, to] : {std::pair{file, "<file>"}, std::pair{vtx, "<vtx>"}}) {
        if (auto at = text.find(from); at != std::string::npos) text.replace(at, from.size(), to);
    }
    return text;
}

// Values that refer to each other in a ring never settle; "old" sections
// state a record version the readers do not know.
const char* kFailures =
    "[UBroker]\n[UBroker.CV]\n"
    "[UBroker.CV.ring]\nuuid=!{value-of:x}\nx=!{value-of:y}\ny=!{value-of:x}\n"
    "[UBroker.CV.old]\ninfoVersion=9000\n"
    "[configuration]\n[configuration.sports.cfg1]\n[server]\n";

TEST(ServiceReaders, ReportEachFailureInTheErrorDetail) {
    TempInstall install("");  // a file that is not found is looked for under it
    TempFile file(kFailures);
    const char* f = file.path();
    const char* missing = "/nonexistent/x.properties";
    const std::string longName(250, 's');
    const std::string noName = "|ServiceName cannot be NULL or blank";
    const std::string noService = "|Specified Service Name does not exist";
    const std::string enoent = std::string("|") + std::strerror(ENOENT);
    const std::string openMissing =
        "2|10015|2|6275|opencfg of <vtx>/properties/" + std::string(missing);
    const UpdateFuncEntry noHandlers[] = {{nullptr, nullptr}};
    int64_t updateResult = 0;
    UBSERVICEINFO ub{};
    MsngrServiceInfo msngr{};
    CNFGserviceInfo cnfg{};
    ReplServerPropsV2 server{};
    ReplTransitionProps transition{};
    const struct {
        const char* name;
        std::function<long(ErrDetail*)> read;
        std::string expected;  // result|code|sysError|msgNumber|where|message
    } cases[] = {
        {"broker_null_name", [&](auto d) { return ReadUBproperties(f, "CV", nullptr, &ub, d); },
         "10007|10007|0|6275|ReadUBproperties" + noName},
        {"broker_missing_section", [&](auto d) { return ReadUBproperties(f, "CV", "x", &ub, d); },
         "10004|10004|0|6275|find_Section of <file> for section UBroker.CV.x" + noService},
        {"broker_unreadable_file",
         [&](auto d) { return ReadUBproperties(missing, "CV", "x", &ub, d); },
         openMissing + " for service x" + enoent},
        {"broker_overlong_section_name",
         [&](auto d) { return ReadUBproperties(f, "CV", longName.c_str(), &ub, d); },
         join(ENAMETOOLONG, 10015, ENAMETOOLONG, 6275, "ReadUBproperties section name",
              std::strerror(ENAMETOOLONG))},
        {"broker_key_keeps_its_own_code",
         [&](auto d) { return ReadUBproperties(f, "CV", "ring", &ub, d); },
         "10010|10010|0|6275|getPropValue for keyword uuid|Specified Keyword Value is invalid"},
        {"broker_wrong_version", [&](auto d) { return ReadUBproperties(f, "CV", "old", &ub, d); },
         "10005|10005|0|6275|ReadUBproperties|UBSERVICEINFO struct is incorrect version"},
        {"update_failed_read_is_a_system_error",
         [&](auto d) {
             return UpdateUBproperties(f, "CV", "x", &ub, d, nullptr, noHandlers, &updateResult);
         },
         join(10004, 10015, 10004, 6275, "UpdateUBproperties read property file",
              std::strerror(10004))},  // a code with no text of its own
        {"messenger_null_name", [&](auto d) { return ReadMsngrProperties(f, nullptr, &msngr, d); },
         "10007|10007|0|6275|ReadMsngrProperties" + noName},
        {"config_missing_middle_section_is_recorded_but_passes",
         [&](auto d) { return ReadConfigProperties(f, "sports.cfg1", &cnfg, 0, d); },
         "0|10004|0|6275|find_Section of <file> for section configuration.sports" + noService},
        {"replication_unknown_version",
         [&](auto d) { return ReadReplServerProperties(f, &server, 2, d); },
         "10025|10025|0|0|Invalid Velmor Replication version specified| "},
        {"replication_open_failure_comes_before_the_version_test",
         [&](auto d) { return ReadReplServerProperties(missing, &server, 2, d); },
         openMissing + " for service " + enoent},
        {"transition_missing_section",
         [&](auto d) { return ReadReplTransitionProperties(f, &transition, 0, d); },
         "10004|10004|0|6275|find_Section of <file> for section transition" + noService},
    };
    for (const auto& c : cases) {
        ErrDetail detail{};
        const long result = c.read(&detail);
        EXPECT_EQ(join(result, detail.code, detail.sysError, detail.msgNumber,
                       placeholders(detail.where, f, std::getenv("VTX")), detail.message),
                  c.expected)
            << c.name;
    }
}

}  // namespace
