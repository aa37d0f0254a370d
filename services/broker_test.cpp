#include <sys/wait.h>

#include "qorvel/services.h"
#include "tests/unit.h"

namespace {

const char* kChain =
    "[UBroker]\nportNumber=4000\nsrvrDebug=Disabled\nsrvrLogFile=base.log\n"
    "[UBroker.CV]\nsrvrLogFile=cv.log\nsrvrMinPort=5000\n"
    "[UBroker.CV.svc1]\nsrvrLogFile=svc1.log\nZELPATH=/a b/c\n"
    "[UBroker.CV.svc2]\n"
    "userName=a_name_that_is_much_longer_than_the_fifty_bytes_of_its_field\n";

// An administrator rewriting the file while a service reads it: each read
// sees some version of the file, or fails with a status, and never crashes.
TEST(ReadUBproperties, ReadsWhileTheFileIsRewrittenNeverCrash) {
    TempFile file(kChain);
    pid_t writer = fork();
    if (writer == 0) {
        for (int i = 0; i < 300; ++i) {
            std::FILE* f = std::fopen(file.path(), "w");  // truncates, then grows again
            std::fputs(i % 2 ? kChain : "[UBroker]\n", f);
            std::fclose(f);
        }
        _exit(0);
    }
    auto r = std::make_unique<UBSERVICEINFO>();
    for (int i = 0; i < 300; ++i) {
        long result = ReadUBproperties(file.path(), "CV", "svc1", r.get(), nullptr);
        EXPECT_TRUE(result == 0 || result == CV_ERR_NO_SERVICE) << result;
    }
    waitpid(writer, nullptr, 0);
}

TEST(ReadCfgValueCV, AnswersFromTheCachedRecordUntilAReadFails) {
    TempFile file(kChain);
    const struct {
        const char* service;  // nullptr: the cached record
        const char* key;
        std::string expected;  // result and value
    } steps[] = {
        {"svc1", "PORTNUMBER", "0|4000"},
        {nullptr, "srvrlogfile", "0|svc1.log"},
        {nullptr, "noSuchKey", "2|untouched"},
        {"svc2", "srvrLogFile", "0|cv.log"},
        {"gone", "srvrLogFile", "10004|untouched"},
        {nullptr, "srvrLogFile", "0|"},       // no half-read record passes for svc2
        {"svc2", "srvrLogFile", "0|cv.log"},  // so svc2 is read again
    };
    for (const auto& s : steps) {
        char out[UB_VALUE_SIZE] = "untouched";
        EXPECT_EQ(join(readCfgValue_CV(file.path(), s.service, s.key, out), out), s.expected)
            << (s.service ? s.service : "(cache)") << " " << s.key;
    }
}

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
        // 3000 + 2^24: the bytes of the two numbers differ only past a zero byte.
        {"number_changed_past_a_zero_byte", "portNumber=16780216\n", true,
         "typed:portNumber;|0|16780216"},
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
