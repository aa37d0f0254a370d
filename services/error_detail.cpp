// Filling the error-detail record.
#include "services/error_detail.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "util/bounded_text.h"

extern "C" void fill_ErrDetail(ErrDetail* detail, int64_t code, int64_t sysError,
                               uint64_t msgNumber, const char* where, const char* defaultMessage) {
    if (!detail) return;
    std::memset(detail, 0, sizeof *detail);
    detail->code = code;
    detail->sysError = sysError;
    detail->msgNumber = msgNumber;
    qorvel::bounded_copy(detail->where, where ? where : "");
    if (sysError >= 1) {
        fmtSystemMsg(static_cast<unsigned>(sysError), 0, detail->message, sizeof detail->message,
                     1);
        if (detail->message[0] == '\0' && defaultMessage) {
            qorvel::bounded_copy(detail->message, defaultMessage);
        }
    } else if (code >= 1 && defaultMessage) {
        qorvel::bounded_copy(detail->message, defaultMessage);
    }
}

namespace qorvel::services {
namespace {

constexpr long kFirstLibraryCode = 10001;

}  // namespace

void report_failure(ErrDetail* detail, long r, const char* where) {
    if (r >= kFirstLibraryCode) {
        report_code(detail, r, where);
    } else {
        report_system(detail, r, where);
    }
}

void report_code(ErrDetail* detail, long code, const char* where) {
    fill_ErrDetail(detail, code, 0, CV_MSG_NUMBER, where, getCV_errorMsg(code));
}

void report_system(ErrDetail* detail, long sysError, const char* where) {
    fill_ErrDetail(detail, CV_ERR_SYSTEM, sysError, CV_MSG_NUMBER, where, kSystemErrorText);
}

long refuse_null(ErrDetail* detail, const char* where) {
    report_system(detail, EINVAL, where);
    return EINVAL;
}

void report_failuref(ErrDetail* detail, long r, const char* format, ...) {
    char where[sizeof detail->where];
    std::va_list args;
    va_start(args, format);
    bounded_vformat(where, sizeof where, format, args);
    va_end(args);
    report_failure(detail, r, where);
}

}  // namespace qorvel::services
