#include "launcher/console.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

struct Case {
    const char* name;
    const char* destination;
    int code;
    std::string expected_stdout;
    std::string expected_stderr;
};

TEST(OutMessage, WritesTheConsoleProtocol) {
    const std::string enoent = std::strerror(ENOENT);
    const Case cases[] = {
        {"plain_stderr", "stderr", 0, "", "completed\n"},
        {"stderr_with_code_has_no_line_end_after", "stderr", ENOENT, "", "completed\n" + enoent},
        {"tagged_stdout", "stdout", 0, "!+0099%completed\n\n", ""},
        {"tagged_stdout_with_code", "stdout", ENOENT, "!-0099%completed\n" + enoent + "\n", ""},
        {"other_case_is_silent", "STDERR", 0, "", ""},
        {"unknown_is_silent", "none", ENOENT, "", ""},
    };
    for (const Case& c : cases) {
        settings = LaunchSettings{};
        bounded_copy(settings.outputDesc, c.destination);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        outMessage(c.code, "%s", "completed\n");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), c.expected_stdout) << c.name;
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.expected_stderr) << c.name;
    }
}

TEST(OutMessage, PercentInTheTextIsWrittenAsIs) {
    settings = LaunchSettings{};
    bounded_copy(settings.outputDesc, "stdout");
    testing::internal::CaptureStdout();
    outMessage(0, "%s", "100%d done");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "!+0099%100%d done\n");
}

TEST(OutMessage, OverlongMessagesAreCutAndTaggedLinesStillEnd) {
    settings = LaunchSettings{};
    const std::string long_text(1000, 'x');
    testing::internal::CaptureStderr();
    outMessage(0, "%s", long_text.c_str());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string(255, 'x'));

    bounded_copy(settings.outputDesc, "stdout");
    testing::internal::CaptureStdout();
    outMessage(0, "%s", long_text.c_str());
    std::string line = testing::internal::GetCapturedStdout();
    EXPECT_EQ(line.size(), 255u);
    EXPECT_EQ(line.back(), '\n');
}

TEST(Report, IsSilencedOutsideVerboseMode) {
    settings = LaunchSettings{};
    settings.fOption = SILENT_MODE;
    testing::internal::CaptureStderr();
    report("hidden\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    settings.fOption = -1;  // a bad option reads as every bit set
    testing::internal::CaptureStderr();
    report("shown\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "shown\n");
}

}  // namespace
}  // namespace qorvel
