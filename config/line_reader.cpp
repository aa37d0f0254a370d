// The logical-line reader every lookup and section search rests on.
#include "config/logical_line.h"
#include "qorvel/config.h"

using qorvel::cfg::StreamSource;

extern "C" int eat_ws(FILE* stream) {
    StreamSource in{stream};
    return qorvel::cfg::skip_blanks(in);
}

extern "C" int cfg_getline(char* buffer, int limit, FILE* stream) {
    StreamSource in{stream};
    return qorvel::cfg::read_logical_line(buffer, limit, in);
}
