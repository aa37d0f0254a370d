#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

#include "config/test_file.h"
#include "qorvel/config.h"

namespace {

using qorvel::testing::TempFile;

const std::string kSections =
    "top=1\n"
    "# [Commented]\n"
    "[UBroker] first\n"
    "a=1\n"
    "[ UBroker.CV ]\n"
    "[ubroker.cv] # defaults\n"
    "b=2\n"
    "[UBroker.CV.broker1]\n"
    "[UBroker.CVX]\n"
    "[]\n"
    "[UBroker.CV.broker2]\n"
    "[Other]\n"
    "[UBroker.CV.broker1]\n"
    "[Last]";

TEST(FindSection, MatchesTheHeadersFirstWordWithoutCase) {
    TempFile file(kSections);
    struct Case {
        const char* name;
        const char* section;
        bool found;
    } const cases[] = {
        {"header followed by text", "UBroker", true},
        {"case differs, trailing comment", "UBroker.CV", true},
        {"blanks inside brackets never match", " UBroker.CV ", false},
        {"commented header is ignored", "Commented", false},
        {"last line without newline is unseen", "Last", false},
        {"absent section", "Nowhere", false},
    };
    for (const auto& c : cases) {
        CFGHANDLE h;
        ASSERT_EQ(opencfg(nullptr, nullptr, file.path(), &h), 0);
        EXPECT_EQ(find_Section(c.section, &h), c.found ? 1 : 0) << c.name;
        if (c.found) {
            EXPECT_EQ(std::string(h.sectionHeader), std::string("[") + c.section + "]") << c.name;
            EXPECT_GT(h.sectionOffset, 0) << c.name;
        } else {
            EXPECT_STREQ(h.sectionHeader, "") << c.name;
        }
        closecfg(&h);
    }
}

TEST(FindSection, FailedSearchKeepsTheCurrentSection) {
    TempFile file(kSections);
    CFGHANDLE h;
    ASSERT_EQ(opencfg("UBroker", nullptr, file.path(), &h), 0);
    long offset = h.sectionOffset;
    EXPECT_EQ(find_Section("Nowhere", &h), 0);
    EXPECT_STREQ(h.sectionHeader, "[UBroker]");
    EXPECT_EQ(h.sectionOffset, offset);
    EXPECT_EQ(find_Section(std::string(254, 'n').c_str(), &h), 0);  // too long to name a header
    closecfg(&h);
    closecfg(&h);  // twice is harmless
    EXPECT_EQ(h.fp, nullptr);
    EXPECT_STREQ(h.sectionHeader, "");
}

TEST(FindNextSection, ReportsChildrenInFileOrder) {
    TempFile file(kSections);
    CFGHANDLE h;
    ASSERT_EQ(opencfg("UBroker.CV", nullptr, file.path(), &h), 0);
    std::vector<std::string> found;
    char name[64];
    while (find_NextSection("UBroker.CV", name, sizeof name, &h) == 0) found.emplace_back(name);
    EXPECT_EQ(found, (std::vector<std::string>{"broker1", "CVX", "broker2", "broker1"}));
    EXPECT_EQ(find_NextSection("UBroker.CV", name, sizeof name, &h), CFG_NO_MORE_SECTIONS);
    EXPECT_STREQ(h.sectionHeader, "[UBroker.CV]");  // enumeration leaves the header alone
    closecfg(&h);
}

TEST(FindNextSection, CutsTheNameToTheCallersBuffer) {
    TempFile file("[P.abcdefgh]\n");
    CFGHANDLE h;
    ASSERT_EQ(opencfg(nullptr, nullptr, file.path(), &h), 0);
    char name[4];
    EXPECT_EQ(find_NextSection("P", name, sizeof name, &h), 0);
    EXPECT_STREQ(name, "abc");
    closecfg(&h);
}

class OpenCfg : public ::testing::Test {
  protected:
    void SetUp() override {
        char tmpl[] = "/tmp/qorvel_vtx_XXXXXX";
        vtx_ = mkdtemp(tmpl);
        mkdir((vtx_ + "/properties").c_str(), 0755);
        setenv("VTX", vtx_.c_str(), 1);
        unsetenv("QORVEL_CFG_FILE");
    }
    void TearDown() override {
        std::string cmd = "rm -rf " + vtx_;
        EXPECT_EQ(std::system(cmd.c_str()), 0);
    }
    std::string vtx_;
};

TEST_F(OpenCfg, ResolvesTheFile) {
    TempFile local("[Here]\n");
    TempFile installed("[UBroker]\n", (vtx_ + "/properties").c_str());
    std::string installedDefault = vtx_ + "/properties/ubroker.properties";
    TempFile named("[Named]\n");
    FILE* f = fopen(installedDefault.c_str(), "w");
    fputs("[ubroker]\n", f);
    fclose(f);
    setenv("QORVEL_EMPTY_VAR", "", 1);

    struct Case {
        const char* name;
        const char* env;
        const char* file;
        std::string expected;
    } const cases[] = {
        {"an existing file is taken as given", nullptr, local.path(), local.path()},
        {"a bare name is looked up under VTX", nullptr, installed.name(), installed.path()},
        {"no name opens ubroker.properties", nullptr, nullptr, installedDefault},
        {"the variable wins over an existing file", "QORVEL_CFG_FILE", local.path(), named.path()},
        {"an empty variable counts as unset", "QORVEL_EMPTY_VAR", local.path(), local.path()},
    };
    setenv("QORVEL_CFG_FILE", named.path(), 1);
    for (const auto& c : cases) {
        CFGHANDLE h;
        EXPECT_EQ(opencfg(nullptr, c.env, c.file, &h), 0) << c.name;
        EXPECT_EQ(std::string(h.fileName), c.expected) << c.name;
        EXPECT_EQ(h.sectionOffset, 0) << c.name;
        closecfg(&h);
    }
    CFGHANDLE h;
    EXPECT_EQ(opencfg("UBROKER", nullptr, nullptr, &h), 0);
    EXPECT_STREQ(h.sectionHeader, "[UBROKER]");  // the asked-for spelling
    closecfg(&h);
}

TEST_F(OpenCfg, ReportsFailures) {
    TempFile local("[Here]\n");
    std::string longName(300, 'x');
    std::string longSection(CFG_SECTION_NAME_MAX + 1, 's');
    mkdir((vtx_ + "/properties/dir").c_str(), 0755);
    struct Case {
        const char* name;
        bool vtxSet;
        const char* section;
        const char* file;
        long expected;
    } const cases[] = {
        {"VTX unset", false, nullptr, "my.properties", CFG_NOT_FOUND},
        {"missing file under VTX", true, nullptr, "my.properties", ENOENT},
        {"absent section keeps the file open", true, "Nowhere", local.path(), CFG_NO_SECTION},
        {"a directory reads as a file without sections", true, "S", "dir", CFG_NO_SECTION},
        {"path too long for the handle", true, nullptr, longName.c_str(), ENAMETOOLONG},
        {"section name too long to search for", true, longSection.c_str(), local.path(),
         ENAMETOOLONG},
    };
    for (const auto& c : cases) {
        if (!c.vtxSet) unsetenv("VTX");
        CFGHANDLE h;
        EXPECT_EQ(opencfg(c.section, nullptr, c.file, &h), c.expected) << c.name;
        EXPECT_EQ(h.fp != nullptr, c.expected == CFG_NO_SECTION) << c.name;
        closecfg(&h);
        setenv("VTX", vtx_.c_str(), 1);
    }
    setenv("VTX", std::string(256, 'v').c_str(), 1);
    CFGHANDLE h;
    EXPECT_EQ(opencfg(nullptr, nullptr, nullptr, &h), ENAMETOOLONG);
}

TEST_F(OpenCfg, InstallPathAndPathKinds) {
    char buf[256] = "keep";
    char* p = buf;
    EXPECT_EQ(getInstallPath(&p, sizeof buf), 0);
    EXPECT_EQ(std::string(buf), vtx_);
    char small[4] = "old";
    p = small;
    EXPECT_EQ(getInstallPath(&p, sizeof small), ENAMETOOLONG);
    EXPECT_STREQ(small, "old");
    unsetenv("VTX");
    EXPECT_EQ(getInstallPath(&p, sizeof small), CFG_NOT_FOUND);
    EXPECT_EQ(is_directory(vtx_.c_str()), 1);
    EXPECT_EQ(is_directory((vtx_ + "/nothing").c_str()), 0);
    TempFile file("x\n");
    EXPECT_EQ(is_directory(file.path()), 0);
    EXPECT_EQ(is_afile(file.path()), 1);
    EXPECT_EQ(is_afile(vtx_.c_str()), 0);
    EXPECT_EQ(is_afile("/dev/null"), 0);
    EXPECT_EQ(is_afile((vtx_ + "/nothing").c_str()), 0);
}

}  // namespace
