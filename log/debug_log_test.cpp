#include <ctime>
#include <filesystem>
#include <fstream>
#include <regex>

#include "qorvel/log.h"
#include "tests/unit.h"

namespace {

namespace fs = std::filesystem;

class DebugLog : public ::testing::Test {
  protected:
    void SetUp() override { fs::create_directories(dir_); }
    void TearDown() override { fs::remove_all(dir_); }

    std::string read(const std::string& path = {}) const {
        std::ifstream in(path.empty() ? path_ : path);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

    const fs::path dir_ = fs::temp_directory_path() / ("qorvel_log_" + std::to_string(getpid()));
    const std::string path_ = (dir_ / "test.log").string();
};

// A handle whose opening failed must not fall back to a console stream, and
// the dumps must not read the data they would have shown.
TEST(NullHandle, WritesNothingAnywhere) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    LogMsg(nullptr, 1, 1, "%s", "nothing");
    FlushLogfile(nullptr);
    CloseLogfile(nullptr);
    LogDump(nullptr, 1, 1, nullptr, 100, "x");
    LogPbCb(nullptr, 1, 1, nullptr, 100, "x");
    LogRequest(nullptr, 1, 1, nullptr, "x");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DebugLog, StampedEntriesOneLinePiecesAndAppendOrTruncate) {
    FILE* log = ExtendLogfile(0, path_.c_str());
    ASSERT_NE(log, nullptr);
    LogMsg(log, 0, 1, "CmdLine = (");
    LogMsg(log, 0, 1, "%s)\n", "x");
    LogMsg(log, 1, 0, "stamped %d\n", 7);
    CloseLogfile(log);
    const std::string stamp = R"(\n\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4} :: )";
    std::regex expected("\n\n" + stamp + path_ + " Opened\nCmdLine = \\(x\\)\n" + stamp +
                        "stamped 7\n" + stamp + "Log Closed\n");
    std::string one_run = read();
    EXPECT_TRUE(std::regex_match(one_run, expected)) << one_run;

    CloseLogfile(ExtendLogfile(1, path_.c_str()));
    EXPECT_TRUE(read().starts_with(one_run + "\n\n")) << "append keeps the earlier run";
    CloseLogfile(ExtendLogfile(0, path_.c_str()));
    EXPECT_EQ(read().find("stamped"), std::string::npos) << "truncate drops it";
}

TEST_F(DebugLog, OpenLogfileNamesTheFileByMonthAndDayAndGivesNoHandleWhenItCannot) {
    std::string prefix = (dir_ / "ub").string();
    char name[512];
    FILE* log = OpenLogfile(1, prefix.c_str(), name);
    ASSERT_NE(log, nullptr);
    CloseLogfile(log);
    std::time_t now = std::time(nullptr);
    char date[8];
    std::strftime(date, sizeof date, "%m%d", std::localtime(&now));
    EXPECT_EQ(std::string(name), prefix + date + ".log");
    EXPECT_TRUE(fs::exists(name));

    prefix = (dir_ / "missing" / "ub").string();
    EXPECT_EQ(OpenLogfile(1, prefix.c_str(), name), nullptr);
    EXPECT_EQ(std::string(name), prefix + date + ".log") << "the name is still reported";
    EXPECT_EQ(ExtendLogfile(1, (dir_ / "missing" / "x.log").c_str()), nullptr);
}

// A log may hold a superuser's environment: it never goes through a link or
// into a file shared by another name, and a refused file keeps its content,
// also when the log would have truncated it.
TEST_F(DebugLog, RefusesALinkOrAHardLinkedFileAndLeavesItsTargetUntouched) {
    const std::string target = (dir_ / "target").string();
    struct Case {
        const char* name;
        int (*plant)(const char*, const char*);
        int error;
    };
    for (const Case& c : {Case{"symlink", symlink, ELOOP}, Case{"hard link", link, EPERM}}) {
        for (int append : {0, 1}) {
            std::ofstream(target) << "kept";
            fs::remove(path_);
            ASSERT_EQ(c.plant(target.c_str(), path_.c_str()), 0);
            errno = 0;
            EXPECT_EQ(ExtendLogfile(append, path_.c_str()), nullptr) << c.name;
            EXPECT_EQ(errno, c.error) << c.name;
            EXPECT_EQ(read(target), "kept") << c.name << " append=" << append;
        }
    }
}

// Draws come from rand(); seeding it again on a later call would break the
// sequence a caller's srand starts.
TEST(GetRandom, DrawsOneToNFromTheCallersSequenceAndZeroBelowOne) {
    get_random(1000);  // the first call seeds
    std::srand(7);
    int drawn = get_random(1000);
    std::srand(7);
    EXPECT_EQ(drawn, std::rand() % 1000 + 1);
    EXPECT_EQ(get_random(1), 1);
    for (int n : {0, -3}) EXPECT_EQ(get_random(n), 0) << n;
}

}  // namespace
