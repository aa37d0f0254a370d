// What every unit-test file starts from: GoogleTest, the standard headers the
// tests use, files written at test time, and join.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/temp_file.h"

namespace qorvel::testing {

// The values joined by "|", so one expected text states a call's result and
// the fields it filled.
template <class... T>
std::string join(const T&... values) {
    std::ostringstream out;
    const char* separator = "";
    ((out << separator << values, separator = "|"), ...);
    return out.str();
}

}  // namespace qorvel::testing

using qorvel::testing::join;
using qorvel::testing::TempFile;
using qorvel::testing::TempInstall;
