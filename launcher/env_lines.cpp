#include "launcher/env_lines.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "launcher/console.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr std::size_t kLineSize = 1024;
constexpr const char* kValueHidden = "<value not shown>";

// The line being read.
char env_tmp[kLineSize];
// The texts handed to putenv: the environment points into them for the life
// of the process, so they are never released. A refused line never gets one,
// and no -e line reuses another's.
std::vector<const char*> env_variables;

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

// The variable's name with its value hidden, for the console and the log:
// -e carries secrets such as passwords into the JVM's environment.
std::string shown(std::string_view line) {
    std::size_t equals = line.find('=');
    std::string text(line.substr(0, equals == std::string_view::npos ? line.size() : equals + 1));
    if (equals != std::string_view::npos) text += kValueHidden;
    return text;
}

bool set_variable() {
    char expanded[QORVEL_EXPAND_MAX];
    if (!expand_envvars(expanded, env_tmp)) return false;
    std::size_t length = std::strlen(expanded);
    if (length >= kLineSize) return false;
    char* text = new (std::nothrow) char[length + 1];
    if (!text) return false;
    std::memcpy(text, expanded, length + 1);
    if (putenv(text) != 0) {
        delete[] text;
        return false;
    }
    env_variables.push_back(text);
    return true;
}

}  // namespace

void read_env_lines(const char* count_text, std::FILE* input) {
    int count = line_count(count_text);
    // Read byte by byte, so the input after the last line is left for the JVM
    // instead of vanishing into a stdio buffer.
    std::setvbuf(input, nullptr, _IONBF, 0);
    trace("Enabled -e option, setting %d environment variables.\n", count);
    env_variables.reserve(env_variables.size() + static_cast<std::size_t>(count));
    bool whole = true;
    for (int i = 0; i < count; ++i) {
        if (!read_line(input, whole)) continue;
        if (whole && set_variable()) {
            trace("set (%s)\n", shown(env_tmp).c_str());
        } else {
            report("Unabled to set environment: (%s)\n", shown(env_tmp).c_str());
        }
    }
}

std::string shown_entry(const char* entry) {
    bool from_input =
        std::find(env_variables.begin(), env_variables.end(), entry) != env_variables.end();
    return from_input ? shown(entry) : std::string(entry);
}

bool set_by_env_line(std::string_view name) {
    return std::any_of(env_variables.begin(), env_variables.end(), [name](const char* text) {
        std::string_view entry = text;
        return entry.starts_with(name) && entry.size() > name.size() && entry[name.size()] == '=';
    });
}

}  // namespace qorvel
