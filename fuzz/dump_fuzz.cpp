// Dumps arbitrary buffers, and request blocks built from the input whose
// parameter blocks all point inside it with counts that stay inside it.
#include <cstdint>
#include <cstdio>
#include <vector>

#include "qorvel/log.h"

namespace {

FILE* sink = nullptr;

template <typename T>
void put(std::vector<unsigned char>& block, T value) {
    const auto* p = reinterpret_cast<const unsigned char*>(&value);
    block.insert(block.end(), p, p + sizeof value);
}

// The block's fields and control information are the input's first bytes;
// each parameter block points at a stretch of the input.
std::vector<unsigned char> request_from(const std::uint8_t* data, std::size_t size) {
    auto pick = [&](std::size_t i) -> unsigned { return size ? data[i % size] : 0; };
    std::uint32_t info_size = pick(0) % 40;
    unsigned requests = pick(1) % 6, responses = pick(2) % 6;
    std::vector<unsigned char> block;
    put(block, info_size);
    put(block, static_cast<std::uint8_t>(requests));
    put(block, static_cast<std::uint8_t>(responses));
    put(block, std::uint16_t{0});
    for (std::size_t i = 0; i < 16 + info_size; ++i)
        put(block, static_cast<std::uint8_t>(pick(3 + i)));
    for (unsigned p = 0; p < requests + responses; ++p) {
        std::size_t offset = size ? pick(8 + 2 * p) * 131u % size : 0;
        put(block, reinterpret_cast<std::uintptr_t>(data + offset));
        put(block, static_cast<std::uint32_t>(pick(9 + 2 * p) * 7u % (size - offset + 1)));
        put(block, std::uint32_t{0});
    }
    return block;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    sink = std::fopen("/dev/null", "w");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    int length = static_cast<int>(size);
    LogDump(sink, 0, 0, data, length, "dump %zu", size);
    LogDumpEbcdic(sink, 0, 0, data, length, "ebcdic");
    LogPbCb(sink, 0, 1, data, length, "pbcb");
    std::vector<unsigned char> block = request_from(data, size);
    LogRequest(sink, 0, 1, block.data(), "request");
    return 0;
}
