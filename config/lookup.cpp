// Reading one key of the current section, with defaults.
#include "config/lookup.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel::config {
namespace {

void store_number(void* out, long number) { std::memcpy(out, &number, sizeof number); }

// Fills `out` from a found entry; returns the status.
long take_value(const Section& section, const char* key, const Entry& entry, void* out,
                std::size_t outSize, unsigned int flags, int substitute, std::size_t* cutAt) {
    std::memset(out, 0, outSize);
    if ((flags & PROP_TYPE_MASK) == PROP_INTEGER) {
        char number[QORVEL_EXPAND_MAX];
        if (substitute &&
            filter_value(section, key, number, sizeof number, entry.word.c_str()) == 0) {
            return CFG_BAD_VALUE;
        }
        store_number(out, std::strtol(substitute ? number : entry.word.c_str(), nullptr, 10));
        return 0;
    }
    bool whole = (flags & PROP_WHOLE_LINE) != 0;
    if (whole && entry.whole_cut) note_cut(cutAt, File::kWholeValueMax);
    const std::string& source = whole ? entry.whole : entry.word;
    char* text = static_cast<char*>(out);
    if (!substitute) {
        if (!bounded_copy(text, outSize, source)) note_cut(cutAt, outSize - 1);
        return 0;
    }
    return filter_value(section, key, text, outSize, source.c_str(), cutAt) == 0 ? CFG_BAD_VALUE
                                                                                 : 0;
}

}  // namespace

long lookup_value(const Section& section, const char* key, void* out, std::size_t outSize,
                  unsigned int flags, const char* defaultText, long defaultNumber, int substitute,
                  std::size_t* cutAt) {
    if (!key || !out) return CFG_NOT_FOUND;
    bool isNumber = (flags & PROP_TYPE_MASK) == PROP_INTEGER;
    // A number is a long: a smaller destination would be written past.
    if (isNumber && outSize < sizeof(long)) return EINVAL;

    long status = CFG_NOT_FOUND;
    Entry entry;
    if (section.file && section.file->find_entry(section.offset, key, entry)) {
        status = take_value(section, key, entry, out, outSize, flags, substitute, cutAt);
    } else if (isNumber && defaultNumber != PROP_NO_DEFAULT_NUMBER) {
        if (out != defaultText) store_number(out, defaultNumber);
        status = 0;
    } else if (!isNumber && defaultText) {
        if (out != defaultText) bounded_copy(static_cast<char*>(out), outSize, defaultText);
        status = 0;
    }
    if (status != 0) {
        if (isNumber) {
            store_number(out, PROP_ABSENT_NUMBER);
        } else {
            bounded_copy(static_cast<char*>(out), outSize, key);
        }
    }
    return status;
}

}  // namespace qorvel::config
