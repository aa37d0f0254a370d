#include "config/expand_envvars.h"

#include <cstdlib>
#include <string_view>

#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace {

constexpr std::size_t kOutputSize = QORVEL_EXPAND_MAX;
constexpr std::size_t kNameSize = 256;

// One left-to-right pass over the source; all state lives on the caller's stack.
class Pass {
  public:
    bool run(std::string_view src);
    const char* result() const { return output_; }
    bool cut() const { return produced_ > kOutputSize - 1; }

  private:
    bool substitute();
    void emit(char c) { emit(std::string_view(&c, 1)); }
    void emit(std::string_view text) {
        produced_ += text.size();
        qorvel::bounded_append(output_, kOutputSize, text);
    }
    bool collect(char c) {
        // A name that does not fit is refused rather than cut: a cut name would
        // silently name some other variable.
        name_overflow_ |= !qorvel::bounded_append(name_, kNameSize, std::string_view(&c, 1));
        return !name_overflow_;
    }
    bool step(char c, char next);

    char output_[kOutputSize] = "";
    char name_[kNameSize] = "";
    std::size_t produced_ = 0;  // characters the pass has emitted, kept or cut
    bool open_ = false;
    bool name_overflow_ = false;
    int braces_ = 0;
    char previous_ = '\0';
};

// The value goes in whole, so `produced_` counts every character of it.
bool Pass::substitute() {
    const char* value = name_overflow_ ? nullptr : std::getenv(name_);
    if (!value) return false;
    emit(value);
    name_[0] = '\0';
    return true;
}

// Handles one source character; false when the whole expansion fails.
bool Pass::step(char c, char next) {
    switch (c) {
        case '$':
            if (previous_ == '~') {
                emit('$');
            } else if (open_) {
                if (!substitute()) return false;
                open_ = false;
            } else {
                open_ = true;
            }
            return true;
        case '/':
            if (!open_) {
                emit('/');
            } else if (braces_ > 0) {
                return collect('/');
            } else {
                if (!substitute()) return false;
                emit('/');
                open_ = false;
            }
            return true;
        case '{':
            if (open_) {
                ++braces_;  // the brace itself is not part of the name
            } else {
                emit('{');
            }
            return true;
        case '}':
            if (open_ && braces_ > 0) {
                if (!substitute()) return false;
                open_ = false;
                braces_ = 0;
            } else {
                emit('}');
            }
            return true;
        default:
            if (c == '~' && next == '$') return true;
            if (open_) return collect(c);
            emit(c);
            return true;
    }
}

bool Pass::run(std::string_view src) {
    for (std::size_t i = 0; i < src.size(); ++i) {
        if (cut()) break;  // the rest of the input is dropped
        char next = i + 1 < src.size() ? src[i + 1] : '\0';
        if (!step(src[i], next)) return false;
        previous_ = src[i];
    }
    if (open_ && !substitute()) return false;
    return braces_ == 0;
}

}  // namespace

namespace qorvel {

Expansion expand_references(char* dst, const char* src) {
    Pass pass;
    if (!pass.run(src)) return Expansion::kFailed;
    bounded_copy(dst, kOutputSize, pass.result());
    return pass.cut() ? Expansion::kCut : Expansion::kWhole;
}

}  // namespace qorvel

extern "C" int expand_envvars(char* dst, const char* src) {
    return qorvel::expand_references(dst, src) != qorvel::Expansion::kFailed;
}
