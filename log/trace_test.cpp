#include <cstdint>
#include <ctime>

#include "qorvel/log.h"
#include "tests/unit.h"

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

    static std::string get(std::uint32_t id, std::uint32_t max) {
        std::string out(max, '\0');
        std::uint32_t nread = 12345;
        out.resize(GetTraceData(id, out.data(), max, &nread));
        EXPECT_EQ(out.size(), nread);
        return out;
    }
};

TEST_F(TraceTable, FiveSlotsHandedOutLowestFirstReusedAndUnknownIdsRefused) {
    std::uint32_t id = 99;
    EXPECT_EQ(InitTrace(0, &id), 0) << "an empty ring is refused";
    for (std::uint32_t expected = 0; expected < 5; ++expected) EXPECT_EQ(start(16), expected);
    EXPECT_EQ(InitTrace(16, &id), 0) << "a sixth trace finds no slot";
    EXPECT_EQ(StopTrace(2) + StopTrace(0), 2);
    // Released (a cleared slot's id reads 0), past the table, far past.
    for (std::uint32_t unknown : {0u, 2u, 5u, 0xFFFFFFFFu}) {
        EXPECT_EQ(PutTraceData(unknown, "x", 1) + StopTrace(unknown), 0) << unknown;
        EXPECT_EQ(get(unknown, 4), "") << unknown;
    }
    EXPECT_EQ(start(16), 0u) << "a released slot is handed out again";
    EXPECT_EQ(start(16), 2u);
}

TEST_F(TraceTable, RingKeepsTheLatestBytesAndReadsOldestFirst) {
    // Read at most this many bytes, expecting the text; 0 writes the text instead.
    using Step = std::pair<std::uint32_t, std::string>;
    struct Case {
        const char* name;
        std::uint32_t size;
        std::vector<Step> steps;
    } cases[] = {
        {"wrap drops oldest", 8, {{0, "ABCDEF"}, {0, "GHIJ"}, {3, "CDE"}, {9, "FGHIJ"}, {9, ""}}},
        {"an overlong write keeps its tail", 8, {{0, "abcdefghijklmnopqrst"}, {9, "mnopqrst"}}},
        {"write after a partial read", 4, {{0, "ABCD"}, {3, "ABC"}, {0, "EF"}, {9, "DEF"}}},
    };
    for (const Case& c : cases) {
        std::uint32_t id = start(c.size);
        for (const auto& [read, bytes] : c.steps) {
            auto length = static_cast<std::uint32_t>(bytes.size());
            if (read == 0) {
                EXPECT_EQ(PutTraceData(id, bytes.data(), length), 1) << c.name;
            } else {
                EXPECT_EQ(get(id, read), bytes) << c.name;
            }
        }
        EXPECT_EQ(StopTrace(id), 1);
    }
}

// The countdown is drawn from rand(); seeding it again on a later call would
// break the sequence a caller's srand starts. A range below 1 has no countdown
// to draw, so the event fires on every call instead of dividing by zero.
TEST(RandomEvent, FiresWhenTheCountdownRunsOutAndRestartsItFromRand) {
    std::uint32_t countdown = 2;
    for (std::uint32_t left : {1u, 0u}) {
        EXPECT_EQ(random_event(&countdown, 1000), 0);  // the first call also seeds
        EXPECT_EQ(countdown, left);
    }
    std::srand(7);
    EXPECT_EQ(random_event(&countdown, 1000), 1);
    std::srand(7);
    EXPECT_EQ(countdown, static_cast<std::uint32_t>(std::rand() % 1000));
    for (int range : {1, 0, -3}) {
        countdown = 0;
        EXPECT_EQ(random_event(&countdown, range), 1) << range;
        EXPECT_EQ(countdown, 0u) << "so it fires again on the next call";
    }
}

TEST(TimeToAsciiTime, CutsTheTimeTextToTheBuffer) {
    std::time_t t = 1795471312;  // a fixed moment; its text depends on the local zone
    char reference[32];
    ASSERT_NE(ctime_r(&t, reference), nullptr);
    // Size and result: room for all 25 characters, cut to size - 1, a negative size.
    const std::pair<std::int64_t, long> cases[] = {{26, 25}, {11, 10}, {1, 0}, {-5, -1}};
    for (auto [size, result] : cases) {
        char buf[64];
        std::memset(buf, '#', sizeof buf);
        EXPECT_EQ(time_tToAsciiTime(t, buf, size), result) << size;
        std::string expected =
            result < 0 ? std::string(sizeof buf, '#') : std::string(reference, result);
        EXPECT_EQ(std::string(buf, strnlen(buf, sizeof buf)), expected) << size;
    }
    EXPECT_EQ(time_tToAsciiTime(t, nullptr, 26), -1);
}

}  // namespace
