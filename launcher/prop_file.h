// The -a and -x options: class path, JVM options and policy file from a
// section of a properties file.
#pragma once

#include <cstddef>

#include "launcher/settings.h"

namespace qorvel {

inline constexpr int kPropNoMemory = -14;
inline constexpr int kPropFileFailed = -15;

// Sizes of the settings the properties fill.
inline constexpr std::size_t kPropClasspathSize = 4096;
inline constexpr std::size_t kPropJvmargsSize = 2048;
inline constexpr std::size_t kPropPolicyfileSize = 2048;

struct PropFileResult {
    int code = 0;  // 0, kPropNoMemory, kPropFileFailed, or EINVAL when a value did not fit
    JvmSettings values;
};

// Reads `classpath`, `jvmargs` and `policyfile` for "file::section" (either
// part may be empty: "JavaTools.properties" and "Common" stand in) from the
// section and its parents, then from its child named `osname` (when not
// empty). A value found nowhere is none.
PropFileResult processPropFile(const char* arg, const char* osname);

}  // namespace qorvel
