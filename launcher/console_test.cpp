#include "launcher/console.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

// report() and its silent mode are checked through the built program (tests/cli).
TEST(OutMessage, WritesTheConsoleProtocol) {
    const std::string enoent = std::strerror(ENOENT);
    const std::string long_text(1000, 'x');
    const struct {
        const char* destination;
        int code;
        std::string text, expected_stdout, expected_stderr;
    } cases[] = {
        {"stderr", 0, "done\n", "", "done\n"},
        {"stderr", ENOENT, "done\n", "", "done\n" + enoent},  // no line end after the code's text
        {"stdout", 0, "done\n", "!+0099%done\n\n", ""},
        {"stdout", ENOENT, "done\n", "!-0099%done\n" + enoent + "\n", ""},
        {"stdout", 0, "100%d", "!+0099%100%d\n", ""},  // a % in the text is kept as it is
        {"STDERR", 0, "done\n", "", ""},
        {"none", ENOENT, "done\n", "", ""},
        {"stderr", 0, long_text, "", std::string(255, 'x')},
        {"stdout", 0, long_text, "!+0099%" + std::string(247, 'x') + "\n", ""},  // a cut line ends
    };
    for (const auto& c : cases) {
        settings = LaunchSettings{};
        bounded_copy(settings.outputDesc, c.destination);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        outMessage(c.code, "%s", c.text.c_str());
        EXPECT_EQ(testing::internal::GetCapturedStdout(), c.expected_stdout) << c.destination;
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.expected_stderr) << c.destination;
    }
}

}  // namespace
}  // namespace qorvel
