// How every reader reports a failure into the caller's ErrDetail.
#pragma once

#include "qorvel/services.h"

namespace qorvel::services {

inline constexpr const char* kSystemErrorText = "A system specific error occurred";

// A failing result `r` of a lower layer: a library code (10001 and up) is
// reported as itself with its table text, anything else as a system error.
void report_failure(ErrDetail* detail, long r, const char* where);

// A library code with its table text and no system error.
void report_code(ErrDetail* detail, long code, const char* where);

// A system error (allocation, over-long names) under code 10015.
void report_system(ErrDetail* detail, long sysError, const char* where);

// A NULL record, list or table argument: EINVAL, reported as a system error
// under `where` so the caller's detail never holds an earlier failure's text.
long refuse_null(ErrDetail* detail, const char* where);

// report_failure with a where-text made from `format`.
void report_failuref(ErrDetail* detail, long r, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

}  // namespace qorvel::services
