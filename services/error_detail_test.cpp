#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>

#include "qorvel/services.h"
#include "util/bounded_text.h"

namespace {

struct FillCase {
    const char* name;
    int64_t code;
    int64_t sysError;
    const char* defaultMessage;
    std::string expectedMessage;
};

TEST(FillErrDetail, ChoosesBetweenSystemTextAndTableText) {
    const FillCase cases[] = {
        {"system_error_wins_over_default", 10015, EACCES, "A system specific error occurred",
         std::strerror(EACCES)},
        {"library_code_takes_default", 10004, 0, "Specified Service Name does not exist",
         "Specified Service Name does not exist"},
        {"success_leaves_message_empty", 0, 0, "ignored", ""},
        {"code_without_default_is_empty", 10025, 0, nullptr, ""},
    };
    for (const FillCase& c : cases) {
        ErrDetail detail;
        std::memset(&detail, 'x', sizeof detail);
        fill_ErrDetail(&detail, c.code, c.sysError, CV_MSG_NUMBER, "where", c.defaultMessage);
        EXPECT_EQ(detail.code, c.code) << c.name;
        EXPECT_EQ(detail.sysError, c.sysError) << c.name;
        EXPECT_EQ(detail.msgNumber, CV_MSG_NUMBER) << c.name;
        EXPECT_STREQ(detail.where, "where") << c.name;
        EXPECT_EQ(detail.message, c.expectedMessage) << c.name;
    }
}

TEST(FillErrDetail, CutsLongTextsAndIgnoresNull) {
    fill_ErrDetail(nullptr, 10004, 0, 0, "where", "message");  // must not crash
    std::string longText(600, 'w');
    ErrDetail detail;
    fill_ErrDetail(&detail, 10004, 0, 0, longText.c_str(), longText.c_str());
    EXPECT_EQ(std::strlen(detail.where), 255u);
    EXPECT_EQ(std::strlen(detail.message), 255u);
}

TEST(CvErrorMsg, FindsExactTextsAndNothingElse) {
    const struct {
        int64_t code;
        const char* expected;
    } cases[] = {
        {10002, "Configuration Keyword in invalid"},
        {10005, "UBSERVICEINFO struct is incorrect version"},
        {10022, "Unable to validate user/password pair"},
        {10023, nullptr},
        {10025, nullptr},
        {0, nullptr},
    };
    for (const auto& c : cases) {
        const char* got = getCV_errorMsg(c.code);
        if (c.expected) {
            ASSERT_NE(got, nullptr) << c.code;
            EXPECT_STREQ(got, c.expected) << c.code;
        } else {
            EXPECT_EQ(got, nullptr) << c.code;
        }
    }
}

TEST(DefaultDir, ReplacesOnlyDotAndDotSlash) {
    char cwd[PATH_MAX];
    ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
    const struct {
        const char* input;
        std::string expected;
    } cases[] = {
        {".", cwd}, {"./", cwd}, {"..", ".."}, {"", ""}, {"./logs", "./logs"}, {"/var", "/var"},
    };
    for (const auto& c : cases) {
        char dir[255];
        qorvel::bounded_copy(dir, c.input);
        getdef_dir(dir, sizeof dir);
        EXPECT_EQ(dir, c.expected) << c.input;
    }
}

TEST(Platform, AnswersWithoutRegistryOrDefaultService) {
    EXPECT_EQ(getProductRegKey_CV(), 0);
    char name[16] = "old";
    char* p = name;
    EXPECT_EQ(getDefault_Service(&p), 0);
    EXPECT_STREQ(name, "");
    char host[256];
    char* h = host;
    ASSERT_EQ(getLocal_HostName(&h, sizeof host), 0);
    EXPECT_GT(std::strlen(host), 0u);
}

}  // namespace
