#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "qorvel/log.h"

namespace {

// The table is process-wide: every test releases what it takes.
class TraceTable : public ::testing::Test {
  protected:
    void TearDown() override {
        for (std::uint32_t id = 0; id < TRACETBL_ENTRIES; ++id) StopTrace(id);
    }

    static std::uint32_t start(std::uint32_t size) {
        std::uint32_t id = 99;
        EXPECT_EQ(InitTrace(size, &id), 1);
        return id;
    }

    static void put(std::uint32_t id, const std::string& data) {
        EXPECT_EQ(PutTraceData(id, data.data(), static_cast<std::uint32_t>(data.size())), 1);
    }

    static std::string get(std::uint32_t id, std::uint32_t max) {
        std::string out(max, '\0');
        std::uint32_t nread = 12345;
        std::uint32_t n = GetTraceData(id, out.data(), max, &nread);
        EXPECT_EQ(n, nread);
        out.resize(n);
        return out;
    }
};

TEST_F(TraceTable, FiveSlotsHandedOutLowestFirstAndReused) {
    for (std::uint32_t expected = 0; expected < 5; ++expected) EXPECT_EQ(start(16), expected);
    std::uint32_t id = 99;
    EXPECT_EQ(InitTrace(16, &id), 0) << "a sixth trace finds no slot";
    EXPECT_EQ(id, 99u) << "and leaves the id alone";
    EXPECT_EQ(StopTrace(2), 1);
    EXPECT_EQ(find_tracetbl_entry(2), nullptr);
    EXPECT_EQ(start(16), 2u) << "a released slot is handed out again";
}

TEST_F(TraceTable, UnknownIdsAreRefused) {
    std::uint32_t in_use = start(8);
    struct Case {
        const char* name;
        std::uint32_t id;
    } cases[] = {{"past the table", 5}, {"far past the table", 0xFFFFFFFF}, {"free slot", 1}};
    for (const Case& c : cases) {
        EXPECT_EQ(find_tracetbl_entry(c.id), nullptr) << c.name;
        EXPECT_EQ(PutTraceData(c.id, "x", 1), 0) << c.name;
        EXPECT_EQ(StopTrace(c.id), 0) << c.name;
        EXPECT_EQ(get(c.id, 4), "") << c.name;
    }
    EXPECT_NE(find_tracetbl_entry(in_use), nullptr);
    EXPECT_EQ(PutTraceData(in_use, nullptr, 1), 0) << "no data to copy";
}

TEST_F(TraceTable, ZeroSizeIsRefusedButTheIdIsStored) {
    std::uint32_t id = 99;
    EXPECT_EQ(InitTrace(0, &id), 0);
    EXPECT_EQ(id, 0u);
    EXPECT_EQ(find_tracetbl_entry(0), nullptr);
}

TEST_F(TraceTable, RingKeepsTheLatestBytesAndReadsOldestFirst) {
    struct Case {
        const char* name;
        std::uint32_t size;
        std::vector<std::string> puts;
        std::vector<std::pair<std::uint32_t, std::string>> reads;  // maximum, bytes expected
    } cases[] = {
        {"wrap-around drops the oldest", 8, {"ABCDEF", "GHIJ"}, {{100, "CDEFGHIJ"}, {100, ""}}},
        {"partial reads leave the newer bytes", 8, {"ABC"}, {{2, "AB"}, {100, "C"}}},
        {"more than the size at once keeps its tail",
         8,
         {"abcdefghijklmnopqrst"},
         {{100, "mnopqrst"}}},
        {"reading across the ring's end", 8, {"ABCDEF", "GH", "IJ"}, {{3, "CDE"}, {100, "FGHIJ"}}},
        {"empty put changes nothing", 8, {"AB", ""}, {{100, "AB"}}},
        {"exact fill", 4, {"WXYZ"}, {{4, "WXYZ"}}},
    };
    for (const Case& c : cases) {
        std::uint32_t id = start(c.size);
        for (const std::string& data : c.puts) put(id, data);
        for (const auto& [max, expected] : c.reads) EXPECT_EQ(get(id, max), expected) << c.name;
        EXPECT_EQ(StopTrace(id), 1);
    }
}

TEST_F(TraceTable, ReadThenWriteKeepsOrder) {
    std::uint32_t id = start(4);
    put(id, "ABCD");
    EXPECT_EQ(get(id, 3), "ABC");
    put(id, "EF");
    EXPECT_EQ(find_tracetbl_entry(id)->count, 3u);
    EXPECT_EQ(get(id, 100), "DEF");
}

TEST(RandomEvent, FiresWhenTheCountdownRunsOut) {
    std::uint32_t countdown = 3;
    for (std::uint32_t left : {2u, 1u, 0u}) {
        EXPECT_EQ(random_event(&countdown, 10), 0);
        EXPECT_EQ(countdown, left);
    }
    EXPECT_EQ(random_event(&countdown, 10), 1);
    EXPECT_LT(countdown, 10u) << "restarts within the range";
}

TEST(RandomEvent, RangeOfOneFiresEveryCallAndBadRangesDoNotDivideByZero) {
    for (int range : {1, 0, -3}) {
        std::uint32_t countdown = 0;
        for (int i = 0; i < 5; ++i) EXPECT_EQ(random_event(&countdown, range), 1) << range;
    }
}

// Both draw from rand(); a generator seeded again on a later call would not
// follow the sequence a caller's srand starts.
TEST(SystemGenerator, SeededOnlyOnTheFirstCall) {
    struct Case {
        const char* name;
        long (*draw)();
        long (*expected)();
    } cases[] = {
        {"get_random", [] { return long{get_random(1000)}; },
         [] { return long{std::rand() % 1000 + 1}; }},
        {"random_event",
         [] {
             std::uint32_t countdown = 0;
             random_event(&countdown, 1000);
             return long{countdown};
         },
         [] { return long{std::rand() % 1000}; }},
    };
    for (const Case& c : cases) {
        c.draw();  // the first call seeds
        std::srand(7);
        long drawn = c.draw();
        std::srand(7);
        EXPECT_EQ(drawn, c.expected()) << c.name;
    }
}

TEST(TimeToAsciiTime, CutsTheTimeTextToTheBuffer) {
    std::time_t t = 1795471312;  // a fixed moment; its text depends on the local zone
    char reference[32];
    ASSERT_NE(ctime_r(&t, reference), nullptr);
    struct Case {
        const char* name;
        std::int64_t size;
        long result;
    } cases[] = {
        {"room for all 25 characters", 26, 25},
        {"more room than needed", 64, 25},
        {"cut to size - 1", 11, 10},
        {"room for the terminator only", 1, 0},
        {"no room at all", 0, -1},
        {"negative size", -5, -1},
    };
    for (const Case& c : cases) {
        char buf[64];
        std::memset(buf, '#', sizeof buf);
        EXPECT_EQ(time_tToAsciiTime(t, buf, c.size), c.result) << c.name;
        if (c.result < 0) continue;
        EXPECT_EQ(std::string(buf), std::string(reference, c.result)) << c.name;
    }
    EXPECT_EQ(time_tToAsciiTime(t, nullptr, 26), -1);
}

}  // namespace
