#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "qorvel/log.h"
#include "util/bounded_text.h"

namespace {

// Callers outside C++ see the slot through the public record; keep its layout fixed.
static_assert(offsetof(TRACETBL_ENTRY, size) == 4);
static_assert(offsetof(TRACETBL_ENTRY, count) == 8);
static_assert(offsetof(TRACETBL_ENTRY, writePos) == 16);
static_assert(offsetof(TRACETBL_ENTRY, buffer) == 24);
static_assert(sizeof(TRACETBL_ENTRY) == 32);

// The trace table: process-wide, zero at start, written only by InitTrace,
// StopTrace and the two data routines. tracetblend marks its end for scans.
TRACETBL_ENTRY tr[TRACETBL_ENTRIES];
TRACETBL_ENTRY* const tracetblend = tr + TRACETBL_ENTRIES;

bool event_generator_seeded = false;  // random_event seeds rand() once per process

unsigned char* ring_end(const TRACETBL_ENTRY& e) { return e.buffer + e.size; }

}  // namespace

extern "C" {

TRACETBL_ENTRY* available_tracetbl_entry(uint32_t* id) {
    if (!id) return nullptr;
    for (TRACETBL_ENTRY* e = tr; e != tracetblend; ++e) {
        if (e->buffer) continue;
        *id = static_cast<uint32_t>(e - tr);
        return e;
    }
    return nullptr;
}

TRACETBL_ENTRY* find_tracetbl_entry(uint32_t id) {
    if (id >= TRACETBL_ENTRIES) return nullptr;
    TRACETBL_ENTRY* e = &tr[id];
    return e->buffer && e->id == id ? e : nullptr;
}

// A ring of size 0 could never advance its write position, so it is refused.
int InitTrace(uint32_t size, uint32_t* id) {
    TRACETBL_ENTRY* e = available_tracetbl_entry(id);
    if (!e || size == 0) return 0;
    auto* buffer = static_cast<unsigned char*>(std::calloc(size, 1));
    if (!buffer) return 0;
    *e = TRACETBL_ENTRY{*id, size, 0, buffer, buffer};
    return 1;
}

int StopTrace(uint32_t id) {
    TRACETBL_ENTRY* e = find_tracetbl_entry(id);
    if (!e) return 0;
    std::free(e->buffer);
    *e = TRACETBL_ENTRY{};
    return 1;
}

// The count is summed in 64 bits so that lengths near 4 GiB cannot wrap it.
int PutTraceData(uint32_t id, const void* data, uint32_t length) {
    TRACETBL_ENTRY* e = find_tracetbl_entry(id);
    if (!e || (!data && length != 0)) return 0;
    e->count = static_cast<uint32_t>(std::min<uint64_t>(uint64_t{e->count} + length, e->size));
    const auto* next = static_cast<const unsigned char*>(data);
    for (uint32_t left = length; left != 0;) {
        uint32_t piece =
            std::min<uint32_t>(left, static_cast<uint32_t>(ring_end(*e) - e->writePos));
        std::memcpy(e->writePos, next, piece);
        next += piece;
        left -= piece;
        e->writePos += piece;
        if (e->writePos == ring_end(*e)) e->writePos = e->buffer;
    }
    return 1;
}

// The oldest byte held lies size - count bytes past the write position,
// counted round the ring.
uint32_t GetTraceData(uint32_t id, void* out, uint32_t max, uint32_t* nread) {
    TRACETBL_ENTRY* e = find_tracetbl_entry(id);
    uint32_t n = e && out ? std::min(e->count, max) : 0;
    if (nread) *nread = n;
    if (n == 0) return 0;
    uint32_t skip = e->size - e->count;
    auto room = static_cast<uint32_t>(ring_end(*e) - e->writePos);
    const unsigned char* oldest = skip < room ? e->writePos + skip : e->buffer + (skip - room);
    uint32_t first = std::min<uint32_t>(n, static_cast<uint32_t>(ring_end(*e) - oldest));
    std::memcpy(out, oldest, first);
    std::memcpy(static_cast<unsigned char*>(out) + first, e->buffer, n - first);
    e->count -= n;
    return n;
}

void seed_event_generator(void) {
    std::time_t now = std::time(nullptr);
    std::tm local{};
    if (!localtime_r(&now, &local)) return;
    std::srand(static_cast<unsigned>(local.tm_sec * local.tm_min));
}

// A range below 1 has no random countdown to draw; the event then fires on
// every call instead of dividing by zero.
int random_event(uint32_t* countdown, int range) {
    if (!countdown) return 0;
    if (!event_generator_seeded) {
        event_generator_seeded = true;
        seed_event_generator();
    }
    if (*countdown != 0) {
        --*countdown;
        return 0;
    }
    *countdown = range > 0 ? static_cast<uint32_t>(std::rand() % range) : 0;
    return 1;
}

long time_tToAsciiTime(time_t t, char* buf, int64_t size) {
    if (!buf || size <= 0) return -1;
    char text[32];  // ctime_r needs 26 bytes
    if (!ctime_r(&t, text)) return -1;
    qorvel::bounded_copy(buf, static_cast<std::size_t>(size), text);
    return static_cast<long>(qorvel::bounded_length(buf, static_cast<std::size_t>(size)));
}

}  // extern "C"
