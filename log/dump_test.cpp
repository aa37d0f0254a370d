#include <cstdint>
#include <fstream>
#include <functional>

#include "qorvel/log.h"
#include "tests/unit.h"

namespace {

// Collects what a routine writes to its log handle.
std::string captured(const std::function<void(FILE*)>& write) {
    char* text = nullptr;
    std::size_t size = 0;
    FILE* log = open_memstream(&text, &size);
    write(log);
    std::fclose(log);
    std::string result(text, size);
    std::free(text);
    return result;
}

std::string expected_file(const std::string& name) {
    std::ifstream in(std::string(QORVEL_LOG_TESTDATA) + "/" + name, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

using Dump = void (*)(FILE*, int, int, const void*, int, const char*, ...);

TEST(LogDump, LayoutMatchesTheExpectedTextFiles) {
    struct Case {
        const char* file;
        Dump dump;
        std::string data;
        const char* header;
    } cases[] = {
        {"five_bytes.txt", LogDump, std::string("AB\0\x7F ", 5), "five bytes:"},
        {"sixteen_bytes.txt", LogDump, "0123456789:;<=>?", "16 bytes"},
        {"seventeen_bytes.txt", LogDump, "ABCDEFGHIJKLMNOPQ", "17 bytes"},
        {"empty.txt", LogDump, "", "nothing"},
        {"ebcdic.txt", LogDumpEbcdic, "\xC1\xC2\x40\xF1\x05\xB0\x5A\x4F\x6A\xBB\x81", "ebcdic:"},
    };
    for (const Case& c : cases) {
        std::string got = captured([&](FILE* log) {
            c.dump(log, 0, 1, c.data.data(), static_cast<int>(c.data.size()), "%s", c.header);
        });
        EXPECT_EQ(got, expected_file(c.file)) << c.file;
    }
}

TEST(Dumps, NullDataWritesTheHeaderAndTheMarkerOnly) {
    for (Dump dump : {LogDump, LogDumpEbcdic, LogPbCb}) {
        std::string got = captured([&](FILE* log) { dump(log, 0, 1, nullptr, 16, "hdr %d", 4); });
        EXPECT_EQ(got, "hdr 4 <<NULL pointer>>");
    }
}

// A request block laid out as its readers expect, the pairs following the
// control information unaligned; the filler is never read.
struct [[gnu::packed]] Pair {
    const void* address;
    std::uint32_t count, filler = 0xEEEEEEEE;
};
struct [[gnu::packed]] Fields {
    std::uint32_t info_size;
    std::uint8_t requests, responses;
    std::uint16_t filler = 0xEEEE;
    std::uint32_t user_num = 0x12, exch_resp = 0xABCDE, erc_ret = 0, rq_code = 7;
};

TEST(LogRequest, LayoutMatchesTheExpectedTextAndOmitsWhatTheBlockLacks) {
    std::string first = "hello", second = "0123456789abcdefgh";
    struct [[gnu::packed]] {
        Fields fields{3, 2, 1};
        std::uint8_t info[3] = {0x01, 0x02, 0xFF};
        Pair pairs[3];
    } rq{.pairs = {{first.data(), 5}, {second.data(), 18}, {first.data(), 0}}};
    std::string expected = expected_file("request.txt");
    const std::pair<std::string, const void*> marks[] = {
        {"@REQ0@", first.data()}, {"@REQ1@", second.data()}, {"@RESP0@", first.data()}};
    for (const auto& [mark, address] : marks) {
        char text[32];
        std::snprintf(text, sizeof text, "%p", address);
        expected.replace(expected.find(mark), mark.size(), text);
    }
    EXPECT_EQ(captured([&](FILE* log) { LogRequest(log, 0, 1, &rq, "request %d:", 9); }), expected);

    Fields bare{0, 0, 0};  // no control information and no pairs: nothing after the fields
    std::string got = captured([&](FILE* log) { LogRequest(log, 0, 0, &bare, "r"); });
    EXPECT_TRUE(got.ends_with("\n ercRet       : 0000h\n rqCode       : 0007h\n")) << got;
}

}  // namespace
