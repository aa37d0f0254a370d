// Reading one key of the current section, with defaults.
#include "config/lookup.h"

#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "config/logical_line.h"
#include "config/open_streams.h"
#include "config/text_split.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr std::size_t kLineSize = 2048;
constexpr std::size_t kWholeValueSize = 1024;

struct Entry {
    char whole[kWholeValueSize];  // the value, cut at 1023 characters
    char word[kLineSize];         // its first word
    bool whole_cut;               // whether `whole` lost characters
};

// Reads the section's lines from `in` for `key`; true when found.
template <typename Source>
bool scan_section(Source& in, const char* key, Entry& entry) {
    char line[kLineSize];
    char keyword[kLineSize];
    while (cfg::read_logical_line(line, cfg::kLookupLimit, in) == 0) {
        if (line[0] == '[') return false;  // the next section begins
        if (line[0] == '\0' || line[0] == '#') continue;
        cfg_getkeyword(keyword, line);
        if (strcasecmp(keyword, key) != 0) continue;
        // A line the reader cut leaves a longer value than `whole` holds (for
        // any key under 1000 characters), so that cut shows here as well.
        entry.whole_cut = !bounded_copy(entry.whole, line);
        bounded_copy(entry.word, cfg::first_word(line));
        return true;
    }
    return false;
}

// Scans the section from its recorded offset for `key`: in the file's image
// when it has one, else through the stream.
bool find_entry(const CFGHANDLE& handle, const char* key, Entry& entry) {
    std::shared_ptr<FileImage> image = open_streams::image_of(handle.fp);
    const FileImage::Entries* section =
        image ? image->entries_at(static_cast<std::size_t>(handle.sectionOffset)) : nullptr;
    if (!section) {
        std::fseek(handle.fp, handle.sectionOffset, SEEK_SET);
        cfg::StreamSource in{handle.fp};
        return scan_section(in, key, entry);
    }
    // Only the matching line is read; the stream ends where a reading lookup
    // would have left it: after that line, or where the section ends.
    for (const FileImage::Entry& candidate : section->entries) {
        if (strcasecmp(candidate.keyword.c_str(), key) != 0) continue;
        cfg::MemorySource in{image->data(), image->size(), candidate.start};
        bool found = scan_section(in, key, entry);
        std::fseek(handle.fp, static_cast<long>(in.pos), SEEK_SET);
        return found;
    }
    std::fseek(handle.fp, static_cast<long>(section->end), SEEK_SET);
    return false;
}

void store_number(void* out, long number) { std::memcpy(out, &number, sizeof number); }

// Fills `out` from a found entry; returns the status.
long take_value(const CFGHANDLE& handle, const char* key, const Entry& entry, void* out,
                std::size_t outSize, unsigned int flags, int substitute, std::size_t* cutAt) {
    std::memset(out, 0, outSize);
    if ((flags & PROP_TYPE_MASK) == PROP_INTEGER) {
        char number[QORVEL_EXPAND_MAX];
        if (substitute && filter_value(&handle, key, number, sizeof number, entry.word) == 0) {
            return CFG_BAD_VALUE;
        }
        store_number(out, std::strtol(substitute ? number : entry.word, nullptr, 10));
        return 0;
    }
    bool whole = (flags & PROP_WHOLE_LINE) != 0;
    if (whole && entry.whole_cut) note_cut(cutAt, kWholeValueSize - 1);
    const char* source = whole ? entry.whole : entry.word;
    char* text = static_cast<char*>(out);
    if (!substitute) {
        if (!bounded_copy(text, outSize, source)) note_cut(cutAt, outSize - 1);
        return 0;
    }
    return filter_value(&handle, key, text, outSize, source, cutAt) == 0 ? CFG_BAD_VALUE : 0;
}

}  // namespace

long lookup_value(const CFGHANDLE* handle, const char* key, void* out, std::size_t outSize,
                  unsigned int flags, const char* defaultText, long defaultNumber, int substitute,
                  std::size_t* cutAt) {
    if (!handle) return CFG_NULL_HANDLE;
    if (!key || !out) return CFG_NOT_FOUND;
    const CFGHANDLE copy = *handle;  // the caller's handle stays as it was
    bool isNumber = (flags & PROP_TYPE_MASK) == PROP_INTEGER;

    long status = CFG_NOT_FOUND;
    Entry entry;
    if (copy.fp && find_entry(copy, key, entry)) {
        status = take_value(copy, key, entry, out, outSize, flags, substitute, cutAt);
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

}  // namespace qorvel

extern "C" long getPropValue(const CFGHANDLE* handle, const char* key, void* out,
                             std::size_t outSize, unsigned int flags, const char* defaultText,
                             long defaultNumber, int substitute) {
    return qorvel::lookup_value(handle, key, out, outSize, flags, defaultText, defaultNumber,
                                substitute);
}
