#include "launcher/option_loop.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

int scan(std::vector<std::string> words) {
    words.insert(words.begin(), "qorvel");
    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    settings = LaunchSettings{};
    bounded_copy(settings.outputDesc, "none");  // keep the console quiet
    return scan_options(static_cast<int>(words.size()), argv.data());
}

// The console messages and exit statuses are checked through the built program (tests/cli).
TEST(ScanOptions, ResultCodesAndOptionBits) {
    const std::string long_dir = "/" + std::string(300, 'd');
    const struct {
        std::vector<std::string> argv;
        int rc;
        std::int64_t fOption;
    } cases[] = {
        {{"java"}, 0, VERBOSE_MODE},
        {{"-ds", "java"}, 0, VERBOSE_MODE | DAEMON_START | SUSPEND_AFTER_START},
        {{"-m", "SiLeNt", "java"}, 0, SILENT_MODE},
        {{"-m", "quiet", "java"}, 0, VERBOSE_MODE},
        {{"-z", "-m", "silent", "java"}, kBadOption, ~VERBOSE_MODE},  // -1, less the verbose bit
        {{"-c"}, kBadOption, -1},
        {{"-d:", "java"}, kBadOption, -1},
        {{"-w", long_dir}, kWorkDirFailed, VERBOSE_MODE},  // a cut directory would be another
        {{"-w", "$QV_UNSET", "-z"}, kWorkDirFailed, VERBOSE_MODE},  // the scan stops at once
        {{"-z", "-w", "$QV_UNSET"}, kWorkDirFailed, -1},
        {{"-1", "$QV_UNSET::1"}, kRedirectFailed, VERBOSE_MODE},
    };
    unsetenv("QV_UNSET");
    for (const auto& c : cases) {
        EXPECT_EQ(scan(c.argv), c.rc) << testing::PrintToString(c.argv);
        EXPECT_EQ(settings.fOption, c.fOption) << testing::PrintToString(c.argv);
    }
}

TEST(ScanOptions, SplitsTheUserSpecOrRefusesIt) {
    const std::string name49(49, 'n'), name50(50, 'n');  // 50 bytes leave no room for the end
    const struct {
        std::string value, fields;
    } cases[] = {
        {"a", "a||"},
        {"alice:staff", "alice|staff|"},
        {"alice:staff:secret", "alice|staff|secret"},
        {"alice::secret", "alice||secret"},
        {":staff", "|staff|"},
        {"alice:", "alice||"},
        {"alice:staff:pa:ss", "alice|staff|pa:ss"},  // the password keeps further colons
        {name49, name49 + "||"},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(scan({"-u", c.value, "java"}), 0) << c.value;
        EXPECT_EQ(std::string(settings.user) + "|" + settings.group + "|" + settings.password,
                  c.fields);
    }
    for (const std::string& bad :
         std::vector<std::string>{"", "::secret", ":staff:secret", "::", name50, "a:g:" + name50}) {
        EXPECT_EQ(scan({"-u", bad, "java"}), kUserFormat) << bad;
    }
}

TEST(ScanOptions, OversizedValuesAreCutOrRefusedWithoutOverrun) {
    const std::string huge(5000, 'x');
    EXPECT_EQ(scan({"-o", huge}), 0);
    EXPECT_EQ(std::string(settings.outputDesc), std::string(254, 'x'));
    EXPECT_EQ(scan({"-1", huge}), kRedirectFailed);  // the file part exceeds its staging buffer
    const std::string long_name(1500, 'i');          // -0 has no staging buffer to exceed
    EXPECT_EQ(scan({"-0", long_name}), 0);
    EXPECT_STREQ(settings.file_stdin.get(), long_name.c_str());
    EXPECT_EQ(scan({"-c", huge}), 0);
    EXPECT_EQ(std::string(std::getenv("CLASSPATH")), std::string(2047, 'x'));
}

}  // namespace
}  // namespace qorvel
