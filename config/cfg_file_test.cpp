#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "qorvel/config.h"
#include "tests/unit.h"

namespace {

// A found section is named as asked, and its offset is where the next line
// begins; a section not found leaves the handle's section as it was.
TEST(FindSection, MatchesTheFirstWordWithoutCaseElseKeepsTheSection) {
    const std::string text =
        "x=1\n# [Commented]\n[UBroker] first\na=1\n[ UBroker.CV ]\n[ubroker.cv] #\nb\n[Last]";
    TempFile file(text);
    CFGHANDLE h;
    ASSERT_EQ(opencfg(nullptr, nullptr, file.path(), &h), 0);
    const std::string tooLong(254, 'n');
    struct Case {
        const char *why, *section, *header, *next;
    } const cases[] = {
        {"header followed by text", "UBroker", "[UBroker]", "a=1"},
        {"case differs, trailing comment; header as asked", "UBroker.CV", "[UBroker.CV]", "b\n"},
        {"blanks inside brackets never match", " UBroker.CV ", "[UBroker.CV]", "b\n"},
        {"commented header is ignored", "Commented", "[UBroker.CV]", "b\n"},
        {"last line without newline is unseen", "Last", "[UBroker.CV]", "b\n"},
        {"too long to name a header", tooLong.c_str(), "[UBroker.CV]", "b\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(find_Section(c.section, &h),
                  c.header == std::string("[").append(c.section).append("]"))
            << c.why;
        EXPECT_STREQ(h.sectionHeader, c.header) << c.why;
        EXPECT_EQ(h.sectionOffset, static_cast<long>(text.find(c.next))) << c.why;
    }
    closecfg(&h);
    EXPECT_TRUE(h.fp == nullptr && h.sectionOffset == 0 && h.sectionHeader[0] == '\0');
    closecfg(&h);  // twice is harmless
}

// A line ending in "," is joined with the next, through blank lines too: the
// header it reaches is text of that entry, found by no search.
TEST(FindSection, AJoinCarriedOverBlankLinesTakesTheHeaderIn) {
    TempFile file("a=x,\n  \t\n\n[S]\nk=1\n[T]\n");
    CFGHANDLE h;
    ASSERT_EQ(opencfg(nullptr, nullptr, file.path(), &h), 0);
    EXPECT_EQ(find_Section("S", &h), 0);
    EXPECT_EQ(find_Section("T", &h), 1);
    closecfg(&h);
}

class OpenCfg : public ::testing::Test {
  protected:
    void SetUp() override {
        mkdir((vtx_ + "/properties/dir").c_str(), 0755);
        std::ofstream(vtx_ + "/properties/installed.properties") << "[UBroker]\n";
        setenv("QORVEL_CFG_FILE", named_.path(), 1);
        setenv("QORVEL_EMPTY_VAR", "", 1);
        setenv("QORVEL_DIR_VAR", vtx_.c_str(), 1);
        mkfifo((vtx_ + "/properties/fifo").c_str(), 0644);
        setenv("QORVEL_FIFO_VAR", (vtx_ + "/properties/fifo").c_str(), 1);
    }

    // Opens with `section` and `file`; the status and the resolved path, or "" when closed.
    // The handle is opened twice and closed once: re-opening closes what it held.
    std::pair<long, std::string> open(const char* section, const char* env, const char* file) {
        std::size_t before = descriptors();
        CFGHANDLE h;
        opencfg(section, env, file, &h);
        long rc = opencfg(section, env, file, &h);
        std::pair<long, std::string> result{rc, h.fp ? h.fileName : ""};
        closecfg(&h);
        EXPECT_EQ(descriptors(), before) << file;
        return result;
    }

    static std::size_t descriptors() {
        auto fds = std::filesystem::directory_iterator("/proc/self/fd");
        return static_cast<std::size_t>(std::distance(fds, {}));
    }

    TempInstall install_{"[ubroker]\n"};
    const std::string& vtx_ = install_.dir();
    TempFile local_{"[Here]\n"}, named_{"[Named]\n"};
};

TEST_F(OpenCfg, ResolvesTheFileOrReportsWhy) {
    std::string installed = vtx_ + "/properties/installed.properties";
    std::string installedDefault = vtx_ + "/properties/ubroker.properties";
    std::string longName(300, 'x'), longSection(CFG_SECTION_NAME_MAX + 1, 's');
    const char *local = local_.path(), *named = named_.path();
    struct Case {
        const char *why, *env, *section, *file;
        long status;
        std::string open;  // the file left open
    } const cases[] = {
        {"an existing file is taken as given", nullptr, nullptr, local, 0, local},
        {"a bare name is looked up under VTX", nullptr, nullptr, "installed.properties", 0,
         installed},
        {"no name opens ubroker.properties", nullptr, nullptr, nullptr, 0, installedDefault},
        {"the variable wins over an existing file", "QORVEL_CFG_FILE", nullptr, local, 0, named},
        {"an empty variable counts as unset", "QORVEL_EMPTY_VAR", nullptr, local, 0, local},
        {"missing file under VTX", nullptr, nullptr, "my.properties", ENOENT, ""},
        {"absent section", nullptr, "Nowhere", local, CFG_NO_SECTION, local},
        {"a directory under VTX is no file", nullptr, "S", "dir", EISDIR, ""},
        {"a directory named by the variable is no file", "QORVEL_DIR_VAR", nullptr, local, EISDIR,
         ""},
        {"a directory is not taken as the file", nullptr, nullptr, vtx_.c_str(), ENOENT, ""},
        {"a FIFO under VTX is refused, not waited on", nullptr, nullptr, "fifo", EINVAL, ""},
        {"a FIFO named by the variable likewise", "QORVEL_FIFO_VAR", nullptr, local, EINVAL, ""},
        {"a device is not taken as the file", nullptr, nullptr, "/dev/null", ENOENT, ""},
        {"path too long", nullptr, nullptr, longName.c_str(), ENAMETOOLONG, ""},
        {"section too long", nullptr, longSection.c_str(), local, ENAMETOOLONG, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(open(c.section, c.env, c.file), std::pair(c.status, c.open)) << c.why;
    }
    setenv("VTX", std::string(256, 'v').c_str(), 1);
    EXPECT_EQ(open(nullptr, nullptr, nullptr), std::pair(long{ENAMETOOLONG}, std::string()));
    unsetenv("VTX");
    EXPECT_EQ(open(nullptr, nullptr, nullptr), std::pair(CFG_NOT_FOUND, std::string()));
    EXPECT_EQ(is_directory(vtx_.c_str()), 1);
    EXPECT_EQ(is_directory(local_.path()), 0);
}

}  // namespace
