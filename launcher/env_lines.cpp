#include "launcher/env_lines.h"

#include <cstdlib>
#include <string_view>

#include "launcher/console.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr std::size_t kLineSize = 1024;

// putenv keeps pointers into these, so they live as long as the process.
char env_tmp[kLineSize];
char env_variables[kMaxEnvLines][kLineSize];

int line_count(const char* text) {
    long count = std::strtol(text, nullptr, 10);
    if (count < 0) return 0;
    return count > kMaxEnvLines ? kMaxEnvLines : static_cast<int>(count);
}

// Reads one line without its line end (and without a CR before it). False at
// end of input; `whole` is false when the line did not fit and was cut.
bool read_line(std::FILE* input, bool& whole) {
    std::size_t length = 0;
    int c;
    whole = true;
    while ((c = std::fgetc(input)) != EOF && c != '\n') {
        if (length + 1 < kLineSize) {
            env_tmp[length++] = static_cast<char>(c);
        } else {
            whole = false;  // keep consuming so the rest never becomes the next line
        }
    }
    env_tmp[length] = '\0';
    if (c == EOF && length == 0 && whole) return false;
    if (length > 0 && env_tmp[length - 1] == '\r') env_tmp[--length] = '\0';
    return true;
}

bool set_variable(char* slot) {
    char expanded[QORVEL_EXPAND_MAX];
    if (!expand_envvars(expanded, env_tmp)) return false;
    if (!bounded_copy(slot, kLineSize, expanded)) return false;
    return putenv(slot) == 0;
}

}  // namespace

void read_env_lines(const char* count_text, std::FILE* input) {
    int count = line_count(count_text);
    // Read byte by byte, so the input after the last line is left for the JVM
    // instead of vanishing into a stdio buffer.
    std::setvbuf(input, nullptr, _IONBF, 0);
    trace("Enabled -e option, setting %d environment variables.\n", count);
    bool whole = true;
    for (int i = 0; i < count; ++i) {
        if (!read_line(input, whole)) continue;
        if (whole && set_variable(env_variables[i])) {
            trace("set (%s)\n", env_variables[i]);
        } else {
            report("Unabled to set environment: (%s)\n", env_tmp);
        }
    }
}

}  // namespace qorvel
