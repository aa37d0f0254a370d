#include <fcntl.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

#include "qorvel/log.h"
#include "util/bounded_text.h"
#include "util/safe_open.h"

namespace {

void write_stamp(FILE* log) {
    std::time_t now = std::time(nullptr);
    std::string_view text = std::ctime(&now);
    if (!text.empty()) text.remove_suffix(1);  // ctime ends its text with a line feed
    std::fprintf(log, "\n%.*s :: ", static_cast<int>(text.size()), text.data());
}

// A debug log holds the environment and the arguments, perhaps a superuser's:
// it goes only into a file of the user's own that no link or other user chose.
FILE* open_log(int append, const char* path) {
    if (!path) return nullptr;
    int fd = qorvel::open_private(path, O_WRONLY | (append ? O_APPEND : O_TRUNC));
    if (fd == -1) return nullptr;
    FILE* log = fdopen(fd, append ? "a" : "w");
    if (!log) {
        close(fd);
        return nullptr;
    }
    std::fputs("\n\n", log);
    LogMsg(log, 1, 1, "%s Opened\n", path);
    return log;
}

bool random_seeded = false;  // get_random seeds rand() once per process

}  // namespace

extern "C" {

void LogMsgV(FILE* log, int stamp, int flush, const char* format, va_list args) {
    if (!log) return;
    if (stamp) write_stamp(log);
    std::vfprintf(log, format, args);
    if (flush) std::fflush(log);
}

void LogMsg(FILE* log, int stamp, int flush, const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    LogMsgV(log, stamp, flush, format, args);
    va_end(args);
}

FILE* OpenLogfile(int append, const char* prefix, char* name) {
    if (!prefix || !name) return nullptr;
    std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    // The caller promises room for the prefix plus 9 bytes ("MMDD.log" and the terminator).
    qorvel::bounded_format(name, std::strlen(prefix) + 9, "%s%02d%02d.log", prefix,
                           local.tm_mon + 1, local.tm_mday);
    return open_log(append, name);
}

FILE* ExtendLogfile(int append, const char* path) { return open_log(append, path); }

void CloseLogfile(FILE* log) {
    if (!log) return;
    LogMsg(log, 1, 1, "Log Closed\n");
    std::fclose(log);
}

void FlushLogfile(FILE* log) {
    if (log) std::fflush(log);
}

int get_random(int n) {
    if (n < 1) return 0;  // no range to draw from; a modulo by it would trap
    if (!random_seeded) {
        std::srand(static_cast<unsigned>(std::time(nullptr)));
        random_seeded = true;
    }
    return std::rand() % n + 1;
}

}  // extern "C"
