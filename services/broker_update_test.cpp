#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using qorvel::services::testing::TempFile;

// Records each handler call as "<handler>:<key>".
std::vector<std::string> calls;

int deferred(const char* key, UBSERVICEINFO*, UBSERVICEINFO*) {
    calls.push_back(std::string("deferred:") + key);
    return 0;
}
int connectProc(const char* key, UBSERVICEINFO*, UBSERVICEINFO*) {
    calls.push_back(std::string("update_srvrConnectProc:") + key);
    return 0;
}
int typedPort(const char* key, UBSERVICEINFO*, UBSERVICEINFO* fresh) {
    calls.push_back(std::string("update_CV_portNumber:") + key);
    return static_cast<int>(fresh->portNumber);
}
int fallback(const char* key, UBSERVICEINFO*, UBSERVICEINFO*) {
    calls.push_back(std::string("fallback:") + key);
    return 0;
}

const UpdateFuncEntry kHandlers[] = {
    {deferred, "updateDeferedProperty"},
    {connectProc, "update_srvrConnectProc"},
    {typedPort, "update_CV_portNumber"},
    {nullptr, nullptr},
};

const char* kBase = "[UBroker]\n[UBroker.CV]\n[UBroker.CV.s]\nportNumber=3000\n";

struct Case {
    const char* name;
    const char* fileText;
    bool countDeferred;
    std::vector<std::string> expectedCalls;
    int64_t expectedDeferred;
    int64_t expectedResult;
};

TEST(UpdateUBproperties, CallsTheHandlerOfEveryChangedKey) {
    const Case cases[] = {
        {"unchanged_calls_nothing", kBase, true, {}, 0, 0},
        {"deferred_key_with_counter",
         "[UBroker]\n[UBroker.CV]\n[UBroker.CV.s]\nsrvrConnectProc=p\n",
         true,
         {"deferred:srvrConnectProc"},
         1,
         0},
        {"deferred_key_without_counter",
         "[UBroker]\n[UBroker.CV]\n[UBroker.CV.s]\nsrvrConnectProc=p\n",
         false,
         {"update_srvrConnectProc:srvrConnectProc"},
         0,
         0},
        {"type_specific_handler_and_its_result",
         "[UBroker]\n[UBroker.CV]\n[UBroker.CV.s]\nportNumber=42\n",
         true,
         {"update_CV_portNumber:portNumber"},
         0,
         42},
        {"change_without_handler_is_skipped",
         "[UBroker]\n[UBroker.CV]\n[UBroker.CV.s]\nuuid=u\n",
         true,
         {},
         0,
         0},
    };
    TempFile baseFile(kBase);
    auto current = std::make_unique<UBSERVICEINFO>();
    ASSERT_EQ(ReadUBproperties(baseFile.path(), "CV", "s", current.get(), nullptr), 0);
    for (const Case& c : cases) {
        TempFile file(c.fileText);
        calls.clear();
        int64_t deferredCount = 0;
        int64_t result = -7;
        auto before = *current;
        EXPECT_EQ(
            UpdateUBproperties(file.path(), "CV", "s", current.get(), nullptr,
                               c.countDeferred ? &deferredCount : nullptr, kHandlers, &result),
            0)
            << c.name;
        EXPECT_EQ(calls, c.expectedCalls) << c.name;
        EXPECT_EQ(deferredCount, c.expectedDeferred) << c.name;
        EXPECT_EQ(result, c.expectedResult) << c.name;
        EXPECT_EQ(std::memcmp(&before, current.get(), sizeof before), 0)
            << c.name << ": the record in force is not changed";
    }
}

TEST(UpdateUBproperties, FailedReadIsReportedAsSystemError) {
    TempFile file("[UBroker]\n");
    UBSERVICEINFO current{};
    ErrDetail detail{};
    int64_t result = 0;
    EXPECT_EQ(
        UpdateUBproperties(file.path(), "CV", "s", &current, &detail, nullptr, kHandlers, &result),
        10004);
    EXPECT_EQ(detail.code, 10015);
    EXPECT_EQ(detail.sysError, 10004);
    EXPECT_STREQ(detail.where, "UpdateUBproperties read property file");
}

TEST(GetUpdateFunction, MatchesNamesExactlyElseTheEndingPair) {
    const UpdateFuncEntry table[] = {{deferred, "update_a"}, {fallback, nullptr}};
    EXPECT_EQ(getUpdateFunction("update_a", table), deferred);
    EXPECT_EQ(getUpdateFunction("UPDATE_A", table), fallback);
    EXPECT_EQ(getUpdateFunction("update_b", table), fallback);
}

}  // namespace
