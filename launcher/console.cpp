#include "launcher/console.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstring>
#include <string>

#include "qorvel/log.h"
#include "qorvel/services.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr std::size_t kTextSize = 256;

// Descriptors 1 and 2 as the caller passed them, close-on-exec; written by
// keep_caller_console, read by tell_caller.
int caller_stdout = -1;
int caller_stderr = -1;

// The message and the system text, then a line end when they lack one, so the
// next message never runs on after a system text.
std::string plain_text(const char* message, const char* system_text) {
    std::string text = std::string(message) + system_text;
    if (!text.empty() && text.back() != '\n') text += '\n';
    return text;
}

std::string tagged_text(int code, const char* message, const char* system_text) {
    char line[kTextSize];
    if (!bounded_format(line, sizeof line, "!%c%s%s%s%s\n", code == 0 ? '+' : '-', "0099", "%",
                        message, system_text)) {
        line[sizeof line - 2] = '\n';  // a cut line still ends the record
    }
    return line;
}

// What the console selected by outputDesc shows, and the stream number it uses
// (-1: none).
int console_text(int code, const char* message, const char* system_text, std::string& text) {
    if (std::strcmp(console.outputDesc, "stderr") == 0) {
        text = plain_text(message, system_text);
        return 2;
    }
    if (std::strcmp(console.outputDesc, "stdout") == 0) {
        text = tagged_text(code, message, system_text);
        return 1;
    }
    return -1;
}

void system_text_of(int code, char (&text)[kTextSize]) {
    text[0] = '\0';
    if (code != 0) fmtSystemMsg(static_cast<unsigned>(code), 0, text, kTextSize, 1);
}

void show(int code, const char* message) {
    char system_text[kTextSize];
    system_text_of(code, system_text);
    if (console.fDebug) {
        LogMsg(console.LoggerLog, 0, 1, "%s", message);
        if (code != 0 && system_text[0] != '\0') {
            LogMsg(console.LoggerLog, 0, 1, "Error = %d, ErrorMsg = (%s)\n", code, system_text);
        }
    }
    std::string text;
    int stream = console_text(code, message, system_text, text);
    if (stream == -1) return;
    std::FILE* console = stream == 1 ? stdout : stderr;
    std::fputs(text.c_str(), console);
    std::fflush(console);
}

bool same_file(int first, int second) {
    struct stat a, b;
    return fstat(first, &a) == 0 && fstat(second, &b) == 0 && a.st_dev == b.st_dev &&
           a.st_ino == b.st_ino;
}

// Formats into a kTextSize buffer. A message cut there keeps the line end
// its format ends with, so the next message still starts on a line of its own.
void format_message(char* message, const char* format, std::va_list args) {
    if (bounded_vformat(message, kTextSize, format, args)) return;
    std::size_t length = std::strlen(format);
    if (length > 0 && format[length - 1] == '\n') message[kTextSize - 2] = '\n';
}

}  // namespace

ConsoleState console;

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

int report_failure(int code, const char* format) {
    if (verbose()) outMessage(code, format, code);
    return code;
}

void trace(const char* format, ...) {
    if (!console.fDebug) return;
    std::va_list args;
    va_start(args, format);
    LogMsgV(console.LoggerLog, 0, 1, format, args);
    va_end(args);
}

void keep_caller_console() {
    caller_stdout = fcntl(1, F_DUPFD_CLOEXEC, 3);
    caller_stderr = fcntl(2, F_DUPFD_CLOEXEC, 3);
}

void tell_caller(int code, const char* format, ...) {
    if (!verbose()) return;
    char message[kTextSize], system_text[kTextSize];
    std::va_list args;
    va_start(args, format);
    format_message(message, format, args);
    va_end(args);
    system_text_of(code, system_text);
    std::string text;
    int stream = console_text(code, message, system_text, text);
    int kept = stream == 1 ? caller_stdout : stream == 2 ? caller_stderr : -1;
    // Not redirected: the console has shown it already.
    if (kept == -1 || same_file(kept, stream)) return;
    if (write(kept, text.data(), text.size()) < 0) return;  // a closed console stops nothing
}

}  // namespace qorvel
