#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "qorvel/log.h"

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

TEST(LogDump, LayoutMatchesTheExpectedTextFiles) {
    struct Case {
        const char* file;
        std::string data;
        const char* header;
        bool ebcdic;
    } cases[] = {
        {"five_bytes.txt", std::string("AB\0\x7F ", 5), "five bytes:", false},
        {"sixteen_bytes.txt", "0123456789:;<=>?", "16 bytes", false},
        {"seventeen_bytes.txt", "ABCDEFGHIJKLMNOPQ", "17 bytes", false},
        {"empty.txt", "", "nothing", false},
        {"ebcdic.txt", "\xC1\xC2\x40\xF1\x05\xB0\x5A\x4F\x6A\xBB\x81", "ebcdic:", true},
    };
    for (const Case& c : cases) {
        std::string got = captured([&](FILE* log) {
            auto dump = c.ebcdic ? LogDumpEbcdic : LogDump;
            dump(log, 0, 1, c.data.data(), static_cast<int>(c.data.size()), "%s", c.header);
        });
        EXPECT_EQ(got, expected_file(c.file)) << c.file;
    }
}

TEST(LogDump, OffsetsPast0xFFFFTakeMoreDigits) {
    std::vector<unsigned char> data(0x10001, 'z');
    std::string got = captured([&](FILE* log) { LogDump(log, 0, 0, data.data(), 0x10001, "h"); });
    std::string last = " 10000 : 7A " + std::string(45, ' ') + "z\n";
    ASSERT_GE(got.size(), last.size());
    EXPECT_EQ(got.substr(got.size() - last.size()), last);
    EXPECT_NE(got.find("\n FFF0 : 7A"), std::string::npos);
}

TEST(Dumps, NullDataWritesTheHeaderAndTheMarkerOnly) {
    struct Case {
        const char* name;
        void (*dump)(FILE*, int, int, const void*, int, const char*, ...);
    } cases[] = {{"LogDump", LogDump}, {"LogDumpEbcdic", LogDumpEbcdic}, {"LogPbCb", LogPbCb}};
    for (const Case& c : cases) {
        std::string got = captured([&](FILE* log) { c.dump(log, 0, 1, nullptr, 16, "hdr %d", 4); });
        EXPECT_EQ(got, "hdr 4 <<NULL pointer>>") << c.name;
    }
}

TEST(Dumps, StampPrecedesTheHeader) {
    std::string got = captured([](FILE* log) { LogPbCb(log, 1, 0, "ab", 2, "hdr"); });
    std::regex stamped(R"(\n\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4} :: hdrab\n)");
    EXPECT_TRUE(std::regex_match(got, stamped)) << got;
}

TEST(LogPbCb, WritesTheBytesAsOneLineOfText) {
    std::string got = captured([](FILE* log) { LogPbCb(log, 0, 0, "ab\x01\x7F c~", 7, "pb:"); });
    EXPECT_EQ(got, "pb:ab.. c~\n");
}

TEST(Ebctoasc, TableKeepsItsDeliberateEntries) {
    struct Case {
        const char* name;
        int ebcdic;
        int ascii;
    } cases[] = {
        {"letter A", 0xC1, 'A'},
        {"letter a", 0x81, 'a'},
        {"digit 0", 0xF0, '0'},
        {"blank", 0x40, ' '},
        {"0x04 kept as 0x13", 0x04, 0x13},
        {"0x0A kept as itself", 0x0A, 0x0A},
        {"0x15 kept as itself", 0x15, 0x15},
        {"0x24 kept as 0x12", 0x24, 0x12},
        {"0x3C has no counterpart", 0x3C, '?'},
        {"0x3F has no counterpart", 0x3F, '?'},
        {"0x5A shows as !", 0x5A, '!'},
        {"0x4F shows as !", 0x4F, '!'},
        {"broken bar shows as |", 0x6A, '|'},
        {"0xBB has no counterpart", 0xBB, '?'},
        {"tab", 0x05, '\t'},
        {"no ASCII counterpart", 0xB0, '?'},
    };
    for (const Case& c : cases) EXPECT_EQ(ebctoasc[c.ebcdic], c.ascii) << c.name;

    int unknown = 0;
    for (unsigned char a : ebctoasc) {
        unknown += a == '?';
        EXPECT_NE(a, ']') << "no code yields ]";
        EXPECT_LT(a, 0x80) << "only 7-bit ASCII";
    }
    EXPECT_EQ(unknown, 127);
}

// A request block laid out as its readers expect, with the pairs following
// the control information unaligned.
struct RequestBlock {
    std::vector<unsigned char> bytes;
    template <typename T>
    void put(T value) {
        const auto* p = reinterpret_cast<const unsigned char*>(&value);
        bytes.insert(bytes.end(), p, p + sizeof value);
    }
    void pair(const void* address, std::uint32_t count) {
        put(reinterpret_cast<std::uintptr_t>(address));
        put(count);
        put(std::uint32_t{0xEEEEEEEE});  // not read
    }
};

RequestBlock request_header(std::uint32_t info_size, std::uint8_t requests,
                            std::uint8_t responses) {
    RequestBlock b;
    b.put(info_size);
    b.put(requests);
    b.put(responses);
    b.put(std::uint16_t{0xEEEE});  // not read
    for (std::uint32_t v : {0x12u, 0xABCDEu, 0u, 7u}) b.put(v);
    return b;
}

std::string pointer_text(const void* p) {
    char text[32];
    std::snprintf(text, sizeof text, "%p", p);
    return text;
}

void replace(std::string& text, const std::string& from, const std::string& to) {
    text.replace(text.find(from), from.size(), to);
}

TEST(LogRequest, LayoutMatchesTheExpectedTextFile) {
    std::string first = "hello", second = "0123456789abcdefgh";
    RequestBlock b = request_header(3, 2, 1);
    for (unsigned char c : {0x01, 0x02, 0xFF}) b.put(c);
    b.pair(first.data(), 5);
    b.pair(second.data(), 18);
    b.pair(first.data(), 0);

    std::string expected = expected_file("request.txt");
    replace(expected, "@REQ0@", pointer_text(first.data()));
    replace(expected, "@REQ1@", pointer_text(second.data()));
    replace(expected, "@RESP0@", pointer_text(first.data()));
    EXPECT_EQ(captured([&](FILE* log) { LogRequest(log, 0, 1, b.bytes.data(), "request %d:", 9); }),
              expected);
}

TEST(LogRequest, NoControlInformationMeansNoCntInfoLine) {
    RequestBlock b = request_header(0, 0, 0);
    std::string got = captured([&](FILE* log) { LogRequest(log, 0, 0, b.bytes.data(), "r"); });
    EXPECT_EQ(got.find("\n CntInfo"), std::string::npos);
    EXPECT_EQ(got.find("PbCb ("), std::string::npos);
    EXPECT_EQ(got.substr(got.size() - 22), " rqCode       : 0007h\n");
}

}  // namespace
