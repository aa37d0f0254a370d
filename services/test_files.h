// Helpers of the service readers' tests; the file helpers come with it.
#pragma once

#include <sstream>
#include <string>

#include "config/test_file.h"

namespace qorvel::services::testing {

// The values joined by "|", so one expected text states a reader's result
// and the fields it filled.
template <class... T>
std::string join(const T&... values) {
    std::ostringstream out;
    const char* separator = "";
    ((out << separator << values, separator = "|"), ...);
    return out.str();
}

}  // namespace qorvel::services::testing
