#include <climits>
#include <functional>

#include "qorvel/services.h"
#include "tests/unit.h"
#include "util/bounded_text.h"

namespace {

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

TEST(Platform, HasNoDefaultServiceNorRegistryKey) {
    char service[8] = "stale";
    char* name = service;
    EXPECT_EQ(getDefault_Service(&name), 0);
    EXPECT_STREQ(service, "");
    EXPECT_EQ(getProductRegKey_CV(), 0);
}

// Failures qorvel-props cannot show: a null name, another record version,
// an update, and the message number every reader sets.
TEST(ServiceReaders, ReportEachFailureInTheErrorDetail) {
    TempFile file("[UBroker]\n[UBroker.CV]\n");
    const char* f = file.path();
    const UpdateFuncEntry noHandlers[] = {{nullptr, nullptr}};
    int64_t updateResult = 0;
    UBSERVICEINFO ub{};
    MsngrServiceInfo msngr{};
    ReplServerPropsV2 server{};
    const struct {
        const char* name;
        std::function<long(ErrDetail*)> read;
        std::string expected;  // result|code|sysError|msgNumber|where|message
    } cases[] = {
        {"broker_missing_section", [&](auto d) { return ReadUBproperties(f, "CV", "x", &ub, d); },
         "10004|10004|0|6275|find_Section of <file> for section UBroker.CV.x|"
         "Specified Service Name does not exist"},
        {"update_failed_read_is_a_system_error",
         [&](auto d) {
             return UpdateUBproperties(f, "CV", "x", &ub, d, nullptr, noHandlers, &updateResult);
         },
         join(10004, 10015, 10004, 6275, "UpdateUBproperties read property file",
              std::strerror(10004))},  // a code with no text of its own
        {"messenger_null_name", [&](auto d) { return ReadMsngrProperties(f, nullptr, &msngr, d); },
         "10007|10007|0|6275|ReadMsngrProperties|ServiceName cannot be NULL or blank"},
        {"replication_unknown_version",
         [&](auto d) { return ReadReplServerProperties(f, &server, 2, d); },
         "10025|10025|0|0|Invalid Velmor Replication version specified| "},
    };
    for (const auto& c : cases) {
        ErrDetail detail{};
        const long result = c.read(&detail);
        std::string where = detail.where;
        if (auto at = where.find(f); at != std::string::npos) {
            where.replace(at, std::strlen(f), "<file>");
        }
        EXPECT_EQ(
            join(result, detail.code, detail.sysError, detail.msgNumber, where, detail.message),
            c.expected)
            << c.name;
    }
}

}  // namespace
