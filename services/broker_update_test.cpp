#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "qorvel/services.h"
#include "services/test_files.h"

namespace {

using qorvel::services::testing::join;
using qorvel::testing::TempFile;

// Each handler call, as "<handler>:<key>;".
std::string calls;

int note(const char* handler, const char* key) {
    calls += std::string(handler) + ":" + key + ";";
    return 0;
}
int deferred(const char* key, UBSERVICEINFO*, UBSERVICEINFO*) { return note("deferred", key); }
int connectProc(const char* key, UBSERVICEINFO*, UBSERVICEINFO*) { return note("proc", key); }
int typedPort(const char* key, UBSERVICEINFO*, UBSERVICEINFO* fresh) {
    note("typed", key);
    return static_cast<int>(fresh->portNumber);
}

const UpdateFuncEntry kHandlers[] = {
    {deferred, "updateDeferedProperty"},
    {connectProc, "update_srvrConnectProc"},
    {typedPort, "update_CV_portNumber"},
    {nullptr, nullptr},
};

TEST(UpdateUBproperties, CallsTheHandlerOfEveryChangedKeyAndKeepsTheRecordInForce) {
    const struct {
        const char* name;
        const char* service;  // the service section as it is now in the file
        bool countDeferred;
        const char* expected;  // calls, deferred count, update result
    } cases[] = {
        {"unchanged_calls_nothing", "portNumber=3000\n", true, "|0|0"},
        {"deferred_key_counted", "srvrConnectProc=p\n", true, "deferred:srvrConnectProc;|1|0"},
        {"uncounted_deferred_key_goes_to_its_handler", "srvrConnectProc=p\n", false,
         "proc:srvrConnectProc;|0|0"},
        {"type_specific_handler_gives_the_result", "portNumber=42\n", true,
         "typed:portNumber;|0|42"},
        {"change_without_handler_is_skipped", "portNumber=3000\nuuid=u\n", true, "|0|0"},
    };
    const std::string sections = "[UBroker]\n[UBroker.CV]\n[UBroker.CV.s]\n";
    TempFile baseFile(sections + "portNumber=3000\n");
    auto current = std::make_unique<UBSERVICEINFO>();
    ASSERT_EQ(ReadUBproperties(baseFile.path(), "CV", "s", current.get(), nullptr), 0);
    const UBSERVICEINFO before = *current;
    for (const auto& c : cases) {
        TempFile file(sections + c.service);
        calls.clear();
        int64_t deferredCount = 0;
        int64_t result = -7;
        EXPECT_EQ(
            UpdateUBproperties(file.path(), "CV", "s", current.get(), nullptr,
                               c.countDeferred ? &deferredCount : nullptr, kHandlers, &result),
            0)
            << c.name;
        EXPECT_EQ(join(calls, deferredCount, result), c.expected) << c.name;
        EXPECT_EQ(std::memcmp(&before, current.get(), sizeof before), 0) << c.name;
    }
}

}  // namespace
