#include "launcher/console.h"

#include <cstdarg>
#include <cstring>

#include "launcher/settings.h"
#include "qorvel/log.h"
#include "qorvel/services.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr std::size_t kTextSize = 256;

void write_plain(const char* message, const char* system_text) {
    std::fputs(message, stderr);
    std::fputs(system_text, stderr);
    std::fflush(stderr);
}

void write_tagged(int code, const char* message, const char* system_text) {
    char line[kTextSize];
    if (!bounded_format(line, sizeof line, "!%c%s%s%s%s\n", code == 0 ? '+' : '-', "0099", "%",
                        message, system_text)) {
        line[sizeof line - 2] = '\n';  // a cut line still ends the record
    }
    std::fputs(line, stdout);
    std::fflush(stdout);
}

void show(int code, const char* message) {
    char system_text[kTextSize] = {};
    if (code != 0) fmtSystemMsg(static_cast<unsigned>(code), 0, system_text, kTextSize, 1);
    if (settings.fDebug) {
        LogMsg(settings.LoggerLog, 0, 1, "%s", message);
        if (code != 0 && system_text[0] != '\0') {
            LogMsg(settings.LoggerLog, 0, 1, "Error = %d, ErrorMsg = (%s)\n", code, system_text);
        }
    }
    if (std::strcmp(settings.outputDesc, "stderr") == 0) {
        write_plain(message, system_text);
    } else if (std::strcmp(settings.outputDesc, "stdout") == 0) {
        write_tagged(code, message, system_text);
    }
}

// Formats into a kTextSize buffer. A message cut there keeps the line end
// its format ends with, so the next message still starts on a line of its own.
void format_message(char* message, const char* format, std::va_list args) {
    if (bounded_vformat(message, kTextSize, format, args)) return;
    std::size_t length = std::strlen(format);
    if (length > 0 && format[length - 1] == '\n') message[kTextSize - 2] = '\n';
}

}  // namespace

void outMessage(int code, const char* format, ...) {
    char message[kTextSize];
    std::va_list args;
    va_start(args, format);
    format_message(message, format, args);
    va_end(args);
    show(code, message);
}

void report(const char* format, ...) {
    if (!verbose()) return;
    char message[kTextSize];
    std::va_list args;
    va_start(args, format);
    format_message(message, format, args);
    va_end(args);
    show(0, message);
}

void trace(const char* format, ...) {
    if (!settings.fDebug) return;
    std::va_list args;
    va_start(args, format);
    LogMsgV(settings.LoggerLog, 0, 1, format, args);
    va_end(args);
}

}  // namespace qorvel
