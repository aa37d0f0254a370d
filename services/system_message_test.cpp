#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "qorvel/services.h"

namespace {

TEST(FmtSystemMsg, CutsToTheBufferAndTerminates) {
    char buf[8];
    std::memset(buf, '#', sizeof buf);
    std::size_t n = FormatSysMessage(ENOENT, 0, buf, 5);
    EXPECT_EQ(n, 4u);
    EXPECT_EQ(std::string(buf), std::string(std::strerror(ENOENT), 4));
    EXPECT_EQ(buf[5], '#');
}

}  // namespace
