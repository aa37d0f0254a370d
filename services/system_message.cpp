// The system's text for an error number, shared by the launcher's console
// messages and the service library's error details.
#include <cstring>
#include <string_view>

#include "qorvel/services.h"
#include "util/bounded_text.h"

extern "C" size_t fmtSystemMsg(unsigned int code, unsigned long /*reserved*/, char* buf,
                               size_t size, int strip) {
    if (!buf) return 0;
    const char* text = std::strerror(static_cast<int>(code));
    qorvel::bounded_copy(buf, size, text ? text : "");
    std::size_t length = qorvel::bounded_length(buf, size);
    if (strip && length > 0) {
        if (char* crlf = std::strstr(buf, "\r\n")) crlf[0] = crlf[1] = '\0';
    }
    return length;
}

extern "C" size_t FormatSysMessage(unsigned int code, unsigned long reserved, char* buf,
                                   size_t size) {
    return fmtSystemMsg(code, reserved, buf, size, 0);
}
