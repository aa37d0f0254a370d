#include "launcher/jvm_args.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "config/expand_envvars.h"
#include "launcher/console.h"
#include "launcher/settings.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr char kPolicyPrefix[] = "-Djava.security.policy=";
constexpr char kMark = '\n';

bool is_set(const HeapText& text) { return text && text[0] != '\0'; }

// Marks the blanks that separate JVM options; quotes protect blanks but stay
// in the pieces. The last character is never a separator, and the character
// after one is passed over (neither counted as a quote nor tested).
void mark_separators(char* text, std::size_t length) {
    int quotes = 0;
    for (std::size_t i = 0; i + 1 < length; ++i) {
        if (text[i] == '"') ++quotes;
        if (text[i] == ' ' && quotes != 1) {
            if (quotes >= 2) quotes = 0;
            text[i] = kMark;
            ++i;
        }
    }
}

// Turns each mark (one already in the text included) that has a character
// after it into a terminator; returns the number of pieces.
std::size_t cut_pieces(char* text) {
    std::size_t pieces = 1;
    for (std::size_t i = 0; text[i] != '\0'; ++i) {
        if (text[i] == kMark && text[i + 1] != '\0') {
            text[i] = '\0';
            ++pieces;
            ++i;  // the first character of a piece is never a mark
        }
    }
    return pieces;
}

// The vector under construction: every element is owned, so one release fits
// every failure path.
class Builder {
  public:
    ~Builder() { destroy_argv(slots_); }
    bool allocate(std::size_t capacity) {
        slots_ = static_cast<char**>(std::calloc(capacity, sizeof(char*)));
        return slots_ != nullptr;
    }
    bool append(std::string_view text) {
        char* copy = static_cast<char*>(std::malloc(text.size() + 1));
        if (copy == nullptr) return false;
        std::memcpy(copy, text.data(), text.size());
        copy[text.size()] = '\0';
        slots_[used_++] = copy;
        return true;
    }
    char** release() { return std::exchange(slots_, nullptr); }

  private:
    char** slots_ = nullptr;
    std::size_t used_ = 0;
};

// The JVM options split into pieces inside one terminated copy; `count` stays
// 0 when the copy cannot be made, and the options then go on as one word.
struct OptionPieces {
    char* copy = nullptr;
    std::size_t length = 0;
    std::size_t count = 0;
    ~OptionPieces() { std::free(copy); }
};

void split_options(const char* text, OptionPieces& pieces) {
    pieces.length = std::strlen(text);
    pieces.copy = static_cast<char*>(std::malloc(pieces.length + 1));
    if (pieces.copy == nullptr) return;
    std::memcpy(pieces.copy, text, pieces.length + 1);
    mark_separators(pieces.copy, pieces.length);
    pieces.count = cut_pieces(pieces.copy);
}

bool append_options(Builder& vector, const OptionPieces& pieces, const char* jvmargs) {
    if (pieces.count == 0) return vector.append(jvmargs);
    const char* piece = pieces.copy;
    for (std::size_t i = 0; i < pieces.count; ++i) {
        if (!vector.append(piece)) return false;
        piece += std::strlen(piece) + 1;
    }
    return true;
}

// Rewrites `policyfile` as the whole policy option, sized to fit so a long
// file name is never cut.
bool make_policy_option(HeapText& policyfile) {
    std::size_t size = sizeof kPolicyPrefix + std::strlen(policyfile.get());
    HeapText option(new (std::nothrow) char[size]);
    if (!option) return false;
    bounded_format(option.get(), size, "%s%s", kPolicyPrefix, policyfile.get());
    policyfile = std::move(option);
    return true;
}

// A word without a reference goes in whole, however long; an expanded one
// that does not fit is refused, since a cut word would mean something else.
// `what` names the word in messages.
int append_expanded(Builder& vector, const char* word, const char* what) {
    if (!std::strchr(word, '$')) return vector.append(word) ? 0 : errno;
    char expanded[QORVEL_EXPAND_MAX] = "";
    Expansion result = expand_references(expanded, word);
    if (result == Expansion::kFailed) report("Error parsing %s: (%s)\n", what, word);
    if (result == Expansion::kCut) {
        report("Error parsing %s, longer than %d characters when expanded: (%s)\n", what,
               QORVEL_EXPAND_MAX - 1, word);
    }
    if (result != Expansion::kWhole) return EINVAL;
    return vector.append(expanded) ? 0 : errno;
}

}  // namespace

int create_argv(char** words, char*** argv, const char* program, JvmSettings& jvm) {
    std::size_t word_count = 0;
    long total = 0;
    for (char** word = words; *word != nullptr; ++word, ++word_count) {
        total += static_cast<long>(std::strlen(*word));
        if (total > kMaxArgumentChars) return E2BIG;
    }
    OptionPieces pieces;
    if (is_set(jvm.jvmargs)) split_options(jvm.jvmargs.get(), pieces);

    std::size_t capacity = word_count + 2 + (is_set(jvm.classpath) ? 2 : 0) +
                           (is_set(jvm.jvmargs) ? std::max<std::size_t>(pieces.count, 1) : 0) +
                           (is_set(jvm.policyfile) ? 1 : 0);
    Builder vector;
    if (!vector.allocate(capacity)) return errno;
    if (int rc = append_expanded(vector, program, "file argument")) return rc;
    if (is_set(jvm.classpath) &&
        !(vector.append("-classpath") && vector.append(jvm.classpath.get()))) {
        return errno;
    }
    if (is_set(jvm.jvmargs) && !append_options(vector, pieces, jvm.jvmargs.get())) return errno;
    if (is_set(jvm.policyfile) &&
        !(make_policy_option(jvm.policyfile) && vector.append(jvm.policyfile.get()))) {
        return ENOMEM;
    }
    for (char** word = words; *word != nullptr; ++word) {
        if (int rc = append_expanded(vector, *word, "argument")) return rc;
    }
    *argv = vector.release();
    return 0;
}

void destroy_argv(char** argv) {
    if (argv == nullptr) return;
    for (char** slot = argv; *slot != nullptr; ++slot) {
        std::free(*slot);
        *slot = nullptr;
    }
    std::free(argv);
}

void show_cmdLine(char** argv) {
    if (!console.fDebug) return;
    trace("CmdLine = (");
    for (char** slot = argv; *slot != nullptr; ++slot) trace("%s ", *slot);
    trace(")\n");
}

}  // namespace qorvel
