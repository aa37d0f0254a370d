#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

#include "qorvel/log.h"

namespace {

namespace fs = std::filesystem;

class DebugLog : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("qorvel_log_" + std::to_string(::getpid()));
        fs::create_directories(dir_);
        path_ = (dir_ / "test.log").string();
    }
    void TearDown() override { fs::remove_all(dir_); }

    static std::string read(const std::string& path) {
        std::ifstream in(path);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

    fs::path dir_;
    std::string path_;
};

const std::string kStamp = R"(\n\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4} :: )";

// A handle whose opening failed must not fall back to a console stream, and
// the dumps must not read the data they would have shown.
TEST(NullHandle, WritesNothingAnywhere) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    LogMsg(nullptr, 1, 1, "%s", "nothing");
    FlushLogfile(nullptr);
    CloseLogfile(nullptr);
    LogDump(nullptr, 1, 1, nullptr, 100, "x");
    LogDumpEbcdic(nullptr, 1, 1, nullptr, 100, "x");
    LogPbCb(nullptr, 1, 1, nullptr, 100, "x");
    LogRequest(nullptr, 1, 1, nullptr, "x");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DebugLog, UnstampedMessagesBuildOneLineStampedOnesStartANewEntry) {
    FILE* log = ExtendLogfile(0, path_.c_str());
    ASSERT_NE(log, nullptr);
    LogMsg(log, 0, 1, "CmdLine = (");
    LogMsg(log, 0, 1, "%s)\n", "x");
    LogMsg(log, 1, 0, "stamped %d\n", 7);
    CloseLogfile(log);
    std::regex expected("\n\n" + kStamp + path_ + " Opened\nCmdLine = \\(x\\)\n" + kStamp +
                        "stamped 7\n" + kStamp + "Log Closed\n");
    EXPECT_TRUE(std::regex_match(read(path_), expected)) << read(path_);
}

TEST_F(DebugLog, AppendKeepsEarlierRunsTruncateDropsThem) {
    for (int append : {1, 1}) CloseLogfile(ExtendLogfile(append, path_.c_str()));
    std::string twice = read(path_);
    CloseLogfile(ExtendLogfile(0, path_.c_str()));
    std::string once = read(path_);
    EXPECT_EQ(twice.size(), 2 * once.size());
}

TEST_F(DebugLog, OpenLogfileNamesTheFileByMonthAndDay) {
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
}

TEST_F(DebugLog, UnopenableFileGivesNoHandleAndKeepsTheName) {
    char name[512];
    std::string prefix = (dir_ / "missing" / "ub").string();
    EXPECT_EQ(OpenLogfile(1, prefix.c_str(), name), nullptr);
    EXPECT_EQ(std::string(name).rfind(prefix, 0), 0u);
    EXPECT_EQ(ExtendLogfile(1, (dir_ / "missing" / "x.log").c_str()), nullptr);
}

TEST(GetRandom, StaysWithinOneToN) {
    for (int i = 0; i < 200; ++i) EXPECT_EQ(get_random(1), 1);
    EXPECT_EQ(get_random(0), 0);
    EXPECT_EQ(get_random(-3), 0);
    for (int i = 0; i < 200; ++i) {
        int r = get_random(6);
        EXPECT_GE(r, 1);
        EXPECT_LE(r, 6);
    }
}

}  // namespace
