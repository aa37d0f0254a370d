#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "qorvel/log.h"
#include "util/bounded_text.h"

extern "C" {

// Code page 500 (International) reduced to 7-bit ASCII, "?" for every code
// without an ASCII character. Nine entries differ from a plain reduction and
// must stay as they are, because dumps are compared with those of the other
// programs of the product: 04->13, 0A->0A, 15->15, 24->12 (controls kept
// distinct), 3C and 3F -> "?", 5A -> "!" (as 4F; nothing yields "]"),
// 6A -> "|" and BB -> "?".
const unsigned char ebctoasc[256] = {
    0x00, 0x01, 0x02, 0x03, 0x13, 0x09, 0x3F, 0x7F, 0x3F, 0x3F, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F,
    0x10, 0x11, 0x12, 0x13, 0x3F, 0x15, 0x08, 0x3F, 0x18, 0x19, 0x3F, 0x3F, 0x1C, 0x1D, 0x1E, 0x1F,
    0x3F, 0x3F, 0x3F, 0x3F, 0x12, 0x0A, 0x17, 0x1B, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x05, 0x06, 0x07,
    0x3F, 0x3F, 0x16, 0x3F, 0x3F, 0x3F, 0x3F, 0x04, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x15, 0x3F, 0x3F,
    0x20, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x5B, 0x2E, 0x3C, 0x28, 0x2B, 0x21,
    0x26, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x21, 0x24, 0x2A, 0x29, 0x3B, 0x5E,
    0x2D, 0x2F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x7C, 0x2C, 0x25, 0x5F, 0x3E, 0x3F,
    0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x60, 0x3A, 0x23, 0x40, 0x27, 0x3D, 0x22,
    0x3F, 0x61, 0x62, 0x63, 0x64, 0x65, 0x66, 0x67, 0x68, 0x69, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
    0x3F, 0x6A, 0x6B, 0x6C, 0x6D, 0x6E, 0x6F, 0x70, 0x71, 0x72, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
    0x3F, 0x7E, 0x73, 0x74, 0x75, 0x76, 0x77, 0x78, 0x79, 0x7A, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
    0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
    0x7B, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
    0x7D, 0x4A, 0x4B, 0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
    0x5C, 0x3F, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5A, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
    0x30, 0x31, 0x32, 0x33, 0x34, 0x35, 0x36, 0x37, 0x38, 0x39, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F, 0x3F,
};

}  // extern "C"

namespace {

constexpr int kBytesPerLine = 16;

char shown_as_ascii(unsigned char b) { return b >= 0x20 && b <= 0x7E ? static_cast<char>(b) : '.'; }
char shown_as_ebcdic(unsigned char b) { return shown_as_ascii(ebctoasc[b]); }
using ShowByte = char (*)(unsigned char);

// The stamp and the header that open every dump; a NULL data address ends it
// there. Returns whether the data is to be written.
bool start_dump(FILE* log, int stamp, int flush, const void* data, const char* format,
                std::va_list args) {
    LogMsgV(log, stamp, 0, format, args);
    if (data) return true;
    LogMsg(log, 0, flush, " <<NULL pointer>>");
    return false;
}

// Lines of " OFFSET : " and sixteen "XX " groups, then the text column. A line
// is written when the next one starts, so the last one is always pending at
// the end and is padded there to full width.
void write_lines(FILE* log, int flush, const unsigned char* data, int length, ShowByte show) {
    char line[64] = "";  // " XXXXXXXX : " and 16 groups: at most 60 characters
    char text[kBytesPerLine + 1] = "";
    for (int i = 0; i < length; ++i) {
        if (i % kBytesPerLine == 0) {
            std::fprintf(log, "%s%s\n", line, text);
            qorvel::bounded_copy(text, "");
            qorvel::bounded_format(line, sizeof line, " %04X : ", static_cast<unsigned>(i));
        }
        char group[4];
        qorvel::bounded_format(group, sizeof group, "%02X ", data[i]);
        qorvel::bounded_append(line, group);
        // Emptied at each line start, the column takes this byte at i % 16.
        const char shown = show(data[i]);
        qorvel::bounded_append(text, std::string_view(&shown, 1));
    }
    if (text[0]) {
        int missing = (kBytesPerLine - length % kBytesPerLine) % kBytesPerLine;
        for (int i = 0; i < missing; ++i) qorvel::bounded_append(line, "   ");
        std::fprintf(log, "%s%s", line, text);
    }
    LogMsg(log, 0, flush, "\n");
}

// A request block as the product's programs exchange it, in the host's byte
// order; the fields are read by offset because the block need not be aligned.
struct RequestLayout {
    static constexpr std::size_t kCntInfoSize = 0, kReqCount = 4, kRespCount = 5, kUserNum = 8,
                                 kExchResp = 12, kErcRet = 16, kRqCode = 20, kCntInfo = 24;
    static constexpr std::size_t kPairSize = 16, kPairAddress = 0, kPairCount = 8;
};

template <typename T>
T read_at(const unsigned char* block, std::size_t offset) {
    T value;
    std::memcpy(&value, block + offset, sizeof value);
    return value;
}

void write_request_fields(FILE* log, const unsigned char* rq) {
    using L = RequestLayout;
    char fields[256];
    char part[128];
    qorvel::bounded_format(fields, sizeof fields,
                           "\n sCntInfo     : %04Xh\n nReqPbCb     :   %02Xh",
                           read_at<std::uint32_t>(rq, L::kCntInfoSize), rq[L::kReqCount]);
    qorvel::bounded_format(part, sizeof part, "\n nRespPbCb    :   %02Xh\n userNum      : %04Xh",
                           rq[L::kRespCount], read_at<std::uint32_t>(rq, L::kUserNum));
    qorvel::bounded_append(fields, part);
    qorvel::bounded_format(part, sizeof part, "\n exchResp     : %04Xh\n ercRet       : %04Xh",
                           read_at<std::uint32_t>(rq, L::kExchResp),
                           read_at<std::uint32_t>(rq, L::kErcRet));
    qorvel::bounded_append(fields, part);
    qorvel::bounded_format(part, sizeof part, "\n rqCode       : %04Xh",
                           read_at<std::uint32_t>(rq, L::kRqCode));
    qorvel::bounded_append(fields, part);
    std::fputs(fields, log);
}

enum class Pairs { request, response };

// Each pair's line, then its block dumped below an empty line. One blank fewer
// before the longer label's colon keeps the colons aligned. A count past
// INT_MAX dumps nothing rather than gigabytes.
const unsigned char* write_pairs(FILE* log, const unsigned char* pair, int count, Pairs kind) {
    using L = RequestLayout;
    for (int i = 0; i < count; ++i, pair += L::kPairSize) {
        auto address =
            reinterpret_cast<const void*>(read_at<std::uintptr_t>(pair, L::kPairAddress));
        std::uint32_t bytes = read_at<std::uint32_t>(pair, L::kPairCount);
        std::fprintf(log,
                     kind == Pairs::request ? "\n ReqPbCb (%d)  : %p, %04Xh"
                                            : "\n RespPbCb (%d) : %p, %04Xh",
                     i, address, bytes);
        LogDump(log, 0, 0, address, static_cast<int>(bytes), "\n");
    }
    return pair;
}

void dump(FILE* log, int stamp, int flush, const void* data, int length, ShowByte show,
          const char* format, std::va_list args) {
    if (!log) return;
    if (!start_dump(log, stamp, flush, data, format, args)) return;
    write_lines(log, flush, static_cast<const unsigned char*>(data), length, show);
}

}  // namespace

extern "C" {

void LogDump(FILE* log, int stamp, int flush, const void* data, int length, const char* format,
             ...) {
    std::va_list args;
    va_start(args, format);
    dump(log, stamp, flush, data, length, shown_as_ascii, format, args);
    va_end(args);
}

void LogDumpEbcdic(FILE* log, int stamp, int flush, const void* data, int length,
                   const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    dump(log, stamp, flush, data, length, shown_as_ebcdic, format, args);
    va_end(args);
}

void LogPbCb(FILE* log, int stamp, int flush, const void* data, int length, const char* format,
             ...) {
    if (!log) return;
    std::va_list args;
    va_start(args, format);
    bool has_data = start_dump(log, stamp, flush, data, format, args);
    va_end(args);
    if (!has_data) return;
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (int i = 0; i < length; ++i) std::fputc(shown_as_ascii(bytes[i]), log);
    LogMsg(log, 0, flush, "\n");
}

void LogRequest(FILE* log, int stamp, int flush, const void* request, const char* format, ...) {
    if (!log) return;
    std::va_list args;
    va_start(args, format);
    bool has_block = start_dump(log, stamp, flush, request, format, args);
    va_end(args);
    if (!has_block) return;

    using L = RequestLayout;
    const auto* rq = static_cast<const unsigned char*>(request);
    write_request_fields(log, rq);
    std::uint32_t info_size = read_at<std::uint32_t>(rq, L::kCntInfoSize);
    if (info_size != 0) {
        std::fputs("\n CntInfo      :", log);
        for (std::uint32_t i = 0; i < info_size; ++i)
            std::fprintf(log, " %02X", rq[L::kCntInfo + i]);
    }
    const unsigned char* pairs = rq + L::kCntInfo + info_size;
    pairs = write_pairs(log, pairs, rq[L::kReqCount], Pairs::request);
    write_pairs(log, pairs, rq[L::kRespCount], Pairs::response);
    LogMsg(log, 0, flush, "\n");
}

}  // extern "C"
