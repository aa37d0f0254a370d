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

std::string text(const HeapText& t) { return t ? t.get() : "<none>"; }

struct Case {
    const char* name;
    std::vector<std::string> argv;
    int rc;
    std::int64_t fOption;
};

TEST(ScanOptions, ResultCodesAndOptionBits) {
    const std::string long_dir = "/" + std::string(300, 'd');
    const Case cases[] = {
        {"defaults", {"java"}, 0, VERBOSE_MODE},
        {"daemon_suspend", {"-ds", "java"}, 0, VERBOSE_MODE | DAEMON_START | SUSPEND_AFTER_START},
        {"silent_any_case", {"-m", "SiLeNt", "java"}, 0, SILENT_MODE},
        {"unknown_mode_changes_nothing", {"-m", "quiet", "java"}, 0, VERBOSE_MODE},
        {"bad_outlives_later_mode", {"-z", "-m", "silent", "java"}, kBadOption, ~VERBOSE_MODE},
        {"missing_argument_is_bad", {"-c"}, kBadOption, -1},
        {"colon_letter_is_bad", {"-d:", "java"}, kBadOption, -1},
        {"unset_in_classpath", {"-c", "$QV_UNSET", "java"}, kClasspathFailed, VERBOSE_MODE},
        {"unset_variable_in_workdir", {"-w", "$QV_UNSET"}, kWorkDirFailed, VERBOSE_MODE},
        {"workdir_too_long_is_refused", {"-w", long_dir}, kWorkDirFailed, VERBOSE_MODE},
        {"user_format_error", {"-u", "::secret"}, kUserFormat, VERBOSE_MODE},
        {"stdin_expansion", {"-0", "${QV_UNSET}"}, kRedirectFailed, VERBOSE_MODE},
        {"stdout_expansion", {"-1", "$QV_UNSET::1"}, kRedirectFailed, VERBOSE_MODE},
        {"failure_stops_the_scan", {"-w", "$QV_UNSET", "-z"}, kWorkDirFailed, VERBOSE_MODE},
        {"failure_after_bad_option_wins", {"-z", "-w", "$QV_UNSET"}, kWorkDirFailed, -1},
    };
    unsetenv("QV_UNSET");
    for (const Case& c : cases) {
        EXPECT_EQ(scan(c.argv), c.rc) << c.name;
        EXPECT_EQ(settings.fOption, c.fOption) << c.name;
    }
}

TEST(ScanOptions, SettingsTakeTheExpandedValues) {
    setenv("QV_DIR", "/srv", 1);
    ASSERT_EQ(scan({"-w", "$QV_DIR/app", "-o", "stdout", "-r", "027", "-c", "${QV_DIR}/lib", "-u",
                    "alice:staff:pa:ss", "java"}),
              0);
    EXPECT_STREQ(settings.workDir, "/srv/app");
    EXPECT_STREQ(settings.outputDesc, "stdout");
    EXPECT_EQ(settings.umask_value, 027);
    EXPECT_STREQ(std::getenv("CLASSPATH"), "/srv/lib");
    EXPECT_STREQ(settings.user, "alice");
    EXPECT_STREQ(settings.group, "staff");
    EXPECT_STREQ(settings.password, "pa:ss");
}

TEST(ScanOptions, RedirectionNamesAndModes) {
    setenv("QV_DIR", "/srv", 1);
    struct Redirect {
        std::vector<std::string> argv;
        std::string stdout_name, stderr_name;
        int oflags_stdout, oflags_stderr;
    };
    const Redirect cases[] = {
        {{"-1", "$QV_DIR/out.log"}, "/srv/out.log", "<none>", OFLAGS_CREATE, OFLAGS_CREATE},
        {{"-1", "/tmp/out.log::1"}, "/tmp/out.log", "<none>", OFLAGS_APPEND, OFLAGS_CREATE},
        {{"-2", "e::$QV_UNSET"}, "<none>", "e", OFLAGS_CREATE, OFLAGS_APPEND},  // suffix unexpanded
        {{"-2", "e::", "-2", "f"}, "<none>", "f", OFLAGS_CREATE, OFLAGS_APPEND},  // mode sticks
    };
    for (const Redirect& c : cases) {
        ASSERT_EQ(scan(c.argv), 0) << c.argv[1];
        EXPECT_EQ(text(settings.file_stdout), c.stdout_name) << c.argv[1];
        EXPECT_EQ(text(settings.file_stderr), c.stderr_name) << c.argv[1];
        EXPECT_EQ(settings.oflags_stdout, c.oflags_stdout) << c.argv[1];
        EXPECT_EQ(settings.oflags_stderr, c.oflags_stderr) << c.argv[1];
    }
}

TEST(ScanOptions, OversizedValuesAreCutOrRefusedWithoutOverrun) {
    const std::string huge(5000, 'x');
    EXPECT_EQ(scan({"-o", huge}), 0);
    EXPECT_EQ(std::string(settings.outputDesc), std::string(254, 'x'));
    EXPECT_EQ(scan({"-1", huge}), kRedirectFailed);  // the file part exceeds its staging buffer
    const std::string long_name(1500, 'i');          // -0 has no staging buffer to exceed
    EXPECT_EQ(scan({"-0", long_name}), 0);
    EXPECT_EQ(text(settings.file_stdin), long_name);
    EXPECT_EQ(scan({"-u", huge}), kUserFormat);
    EXPECT_EQ(scan({"-c", huge}), 0);
    EXPECT_EQ(std::string(std::getenv("CLASSPATH")), std::string(2047, 'x'));
}

}  // namespace
}  // namespace qorvel
