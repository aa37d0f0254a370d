// The logical-line rules, written once over any source of bytes: a stdio
// stream (cfg_getline) or a file image in memory (the fast searches). Both
// therefore read exactly the same lines.
#pragma once

#include <cstddef>
#include <cstdio>

namespace qorvel::cfg {

constexpr bool is_blank(int c) { return c == ' ' || c == '\t'; }

// How much of a logical line each reader takes (the limit given to
// read_logical_line): a search through the stream and one through the file's
// image must agree on it, or they would cut lines differently.
inline constexpr int kSearchLimit = 2047;  // section searches: up to 2046 characters
inline constexpr int kLookupLimit = 2048;  // key lookups: up to 2047 characters

// Reads without locking: the library never shares a stream between threads.
struct StreamSource {
    std::FILE* stream;
    int next() { return getc_unlocked(stream); }
    bool ended() const { return std::feof(stream) || std::ferror(stream); }
};

struct MemorySource {
    const char* data;
    std::size_t size;
    std::size_t pos;
    bool hit_end = false;
    int next() {
        if (pos == size) {
            hit_end = true;
            return EOF;
        }
        return static_cast<unsigned char>(data[pos++]);
    }
    bool ended() const { return hit_end; }
};

template <typename Source>
int skip_blanks(Source& in) {
    int c;
    do {
        c = in.next();
    } while (is_blank(c));
    return c;
}

// cfg_getline over `in`: one logical line of at most limit - 1 characters;
// 0 when read, 1 when the end (or a read error) came first.
template <typename Source>
int read_logical_line(char* buffer, int limit, Source& in) {
    if (limit < 1) return 1;  // not even room for the terminator: no line can be read
    const int full = limit - 1;
    int n = 0;
    int c = skip_blanks(in);
    for (;;) {
        if (c == '\n' || c == EOF || n == full) {
            if (n > 0 && buffer[n - 1] == ' ') --n;
            bool continued = c == '\n' && n > 0 && buffer[n - 1] == ',';
            if (!continued) {
                // At a cut, `c` is dropped and the rest of the physical line
                // becomes the next logical line.
                buffer[n] = '\0';
                // A read error (a directory opened as a file, a failing disk)
                // ends the lines as the end of the file does; otherwise every
                // reader would loop on empty lines forever.
                return in.ended() ? 1 : 0;
            }
        } else {
            buffer[n++] = static_cast<char>(c);
        }
        c = in.next();
        if (is_blank(c) && n < full) {
            buffer[n++] = static_cast<char>(c);  // a run of blanks keeps its first
            c = skip_blanks(in);
        }
    }
}

}  // namespace qorvel::cfg
