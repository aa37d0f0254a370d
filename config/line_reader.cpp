// The logical-line reader every lookup and section search rests on. It reads
// character by character without locking the stream: the library is
// single-threaded, and the unlocked read keeps large files fast to scan.
#include <cstdio>

#include "qorvel/config.h"

namespace {

constexpr bool is_blank(int c) { return c == ' ' || c == '\t'; }

}  // namespace

extern "C" int eat_ws(FILE* stream) {
    int c;
    do {
        c = getc_unlocked(stream);
    } while (is_blank(c));
    return c;
}

extern "C" int cfg_getline(char* buffer, int limit, FILE* stream) {
    if (limit < 1) return 1;  // not even room for the terminator: no line can be read
    const int full = limit - 1;
    int n = 0;
    int c = eat_ws(stream);
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
                return feof(stream) || ferror(stream) ? 1 : 0;
            }
        } else {
            buffer[n++] = static_cast<char>(c);
        }
        c = getc_unlocked(stream);
        if (is_blank(c) && n < full) {
            buffer[n++] = static_cast<char>(c);  // a run of blanks keeps its first
            c = eat_ws(stream);
        }
    }
}
