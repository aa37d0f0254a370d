#include "config/file_image.h"

#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>

#include "config/logical_line.h"
#include "config/text_split.h"
#include "qorvel/config.h"

namespace qorvel {
namespace {

using cfg::kLookupLimit;
using cfg::kSearchLimit;

constexpr unsigned char ascii_lower(unsigned char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c - 'A' + 'a') : c;
}

std::string lower(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(ascii_lower(static_cast<unsigned char>(c)));
    return out;
}

// True when the physical line [line, line + length) is a logical line of its
// own that no search can take for a header: it neither starts with "[" nor
// ends in a way that joins it to the next line, and it is too short to be cut.
bool passes_over(const char* line, std::size_t length) {
    if (length >= kSearchLimit - 1) return false;
    std::size_t first = 0;
    while (first < length && cfg::is_space(line[first])) ++first;
    if (first == length) return true;  // white space alone: no header, no ','
    char last = line[length - 1];
    return line[first] != '[' && last != ',' && !cfg::is_blank(last);
}

// The physical lines of the image, and how cfg_getline joins them.
class Lines {
  public:
    Lines(const char* data, std::size_t size) : data_(data), size_(size) {}

    // Start of the line holding `pos`.
    std::size_t start_of(std::size_t pos) const {
        const void* nl = memrchr(data_, '\n', pos);
        return nl ? static_cast<std::size_t>(static_cast<const char*>(nl) - data_) + 1 : 0;
    }
    // End (its '\n', or the size) of the line holding `pos`.
    std::size_t end_of(std::size_t pos) const {
        const void* nl = std::memchr(data_ + pos, '\n', size_ - pos);
        return nl ? static_cast<std::size_t>(static_cast<const char*>(nl) - data_) : size_;
    }
    // The line's last character once read (a trailing run of blanks keeps its
    // first, a kept space is dropped); kAllBlank for a line of blanks alone.
    static constexpr int kAllBlank = -1;
    int last_kept(std::size_t start, std::size_t end) const {
        std::size_t run = end;
        while (run > start && cfg::is_blank(data_[run - 1])) --run;
        if (run == start) return kAllBlank;
        if (run == end) return static_cast<unsigned char>(data_[end - 1]);
        return data_[run] == ' ' ? static_cast<unsigned char>(data_[run - 1]) : '\t';
    }
    // Whether the line starting at `start` is joined to the line before it:
    // the nearest earlier line with text ends in ',' and each line of blanks
    // in between starts with a space (a kept tab would end the line instead).
    bool joined(std::size_t start) const {
        bool spaces_only = true;
        while (start > 0) {
            std::size_t prev = start_of(start - 1);
            int last = last_kept(prev, start - 1);
            if (last != kAllBlank) return last == ',' && spaces_only;
            if (prev < start - 1 && data_[prev] != ' ') spaces_only = false;
            start = prev;
        }
        return false;
    }
    // No logical line can reach the cut: every physical line, and every run
    // of joined lines, is shorter than the longest line a search reads.
    bool uncut() const;

  private:
    const char* data_;
    std::size_t size_;
};

bool Lines::uncut() const {
    constexpr std::size_t kLongest = kSearchLimit - 2;  // kept characters stay below the cut
    for (std::size_t pos = 0; pos < size_;) {
        std::size_t window = std::min(kLongest + 1, size_ - pos);
        const void* nl = memrchr(data_ + pos, '\n', window);
        if (!nl) {
            if (size_ - pos > kLongest) return false;
            break;
        }
        pos = static_cast<std::size_t>(static_cast<const char*>(nl) - data_) + 1;
    }
    // Runs of joined lines: from each line ending in ',' to the line ending the run.
    std::size_t run_start = 0, run_end = 0;  // a run spans [run_start, run_end)
    for (const char* c = data_;
         (c = static_cast<const char*>(std::memchr(c, ',', size_ - (c - data_)))) != nullptr; ++c) {
        auto pos = static_cast<std::size_t>(c - data_);
        std::size_t after = pos + 1;  // only blanks may follow a ',' that joins lines
        while (after < size_ && cfg::is_blank(data_[after])) ++after;
        if (after == size_ || data_[after] != '\n') continue;
        std::size_t start = start_of(pos), end = after;
        if (last_kept(start, end) != ',') continue;
        if (start > run_end) run_start = start;  // else the run goes on through this line
        std::size_t next = end + 1;
        while (next < size_ && last_kept(next, end_of(next)) == kAllBlank) {
            next = end_of(next) + 1;
        }
        run_end = next < size_ ? end_of(next) : size_;
        if (run_end - run_start > kLongest) return false;
        c = data_ + end;
    }
    return true;
}

constexpr std::uint64_t kEachByte = 0x0101010101010101ULL;
constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;

// True when no byte of `v` is below '!', above 127 or a backslash.
bool plain8(std::uint64_t v) {
    std::uint64_t below = (v - kEachByte * 0x21) & ~v & kHighBits;
    std::uint64_t backslash = v ^ (kEachByte * '\\');
    backslash = (backslash - kEachByte) & ~backslash & kHighBits;
    return ((below | backslash) | (v & kHighBits)) == 0;
}

// True when the text at `text` cannot begin a first word equal to `header`:
// a character differs before any blank, backslash, line end or NUL, up to
// which the text is the word as any reader sees it.
bool differs(const char* text, std::size_t available, std::string_view header) {
    std::size_t n = std::min(available, header.size());
    std::size_t i = 0;
    // Eight characters at a time while the text's are plain (no white space,
    // backslash, NUL or byte above 127): a difference in any bit but the
    // case bit is then a difference a reader would see too.
    for (; i + 8 <= n; i += 8) {
        std::uint64_t a, b;
        std::memcpy(&a, text + i, 8);
        std::memcpy(&b, header.data() + i, 8);
        if (!plain8(a)) break;
        if (((a ^ b) & ~(kEachByte * 0x20)) != 0) return true;
    }
    for (; i < n; ++i) {
        char c = text[i];
        if (cfg::is_space(c) || c == '\\' || c == '\0') return false;
        // Only plain ASCII is compared here; anything else is left to strncasecmp.
        auto a = static_cast<unsigned char>(c), b = static_cast<unsigned char>(header[i]);
        if (a > 127 || b > 127) return false;
        if (ascii_lower(a) != ascii_lower(b)) return true;
    }
    return false;
}

bool same_word(std::string_view word, std::string_view header) {
    return word.size() == header.size() &&
           strncasecmp(word.data(), header.data(), header.size()) == 0;
}

}  // namespace

std::shared_ptr<FileImage> FileImage::map(int fd) {
    struct stat info;
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) return nullptr;
    auto size = static_cast<std::size_t>(info.st_size);
    if (size == 0) return std::shared_ptr<FileImage>(new FileImage(nullptr, 0));
    // Populated at once: one pass over the page cache beats a fault per page.
    void* data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd, 0);
    if (data == MAP_FAILED) return nullptr;
    return std::shared_ptr<FileImage>(new FileImage(static_cast<const char*>(data), size));
}

FileImage::~FileImage() {
    if (data_) munmap(const_cast<char*>(data_), size_);
}

// A file in which no logical line can be cut: a header is found by its "["
// and its word alone, then checked to begin a line that no ',' joins to the
// one before. A header line that ends in ',' (its logical line goes on), or
// whose word holds an escaped blank, is read by cfg_getline's own rules.
long FileImage::search_by_brackets(std::string_view header) const {
    Lines lines(data_, size_);
    char line[kSearchLimit];
    for (std::size_t at = 0; at < size_;) {
        const void* bracket = std::memchr(data_ + at, '[', size_ - at);
        if (!bracket) return -1;
        at = static_cast<std::size_t>(static_cast<const char*>(bracket) - data_);
        if (differs(data_ + at, size_ - at, header)) {
            ++at;
            continue;
        }
        std::size_t end = lines.end_of(at);
        if (end == size_) return -1;  // a last line without its end is read by no search
        std::size_t word_end = at;
        bool escaped = false;
        while (word_end < end && data_[word_end] != '\0' &&
               !(cfg::is_space(data_[word_end]) && data_[word_end - 1] != '\\')) {
            escaped = escaped || data_[word_end] == '\\';
            ++word_end;
        }
        // A word followed by nothing but blanks (a trailing space is dropped)
        // goes on in the next line when this one is joined to it.
        std::size_t rest = word_end;
        while (rest < end && cfg::is_blank(data_[rest])) ++rest;
        bool exact = escaped || (rest == end && lines.last_kept(at, end) == ',');
        bool candidate = exact || same_word({data_ + at, word_end - at}, header);
        std::size_t start = at;  // the first word of a line is its text after any white space
        while (start > 0 && data_[start - 1] != '\n' && cfg::is_space(data_[start - 1])) --start;
        if (candidate && (start == 0 || data_[start - 1] == '\n') && !lines.joined(start)) {
            if (!exact && lines.last_kept(start, end) != ',') return static_cast<long>(end + 1);
            cfg::MemorySource in{data_, size_, start};
            if (cfg::read_logical_line(line, kSearchLimit, in) != 0) return -1;
            if (same_word(cfg::first_word(line), header)) return static_cast<long>(in.pos);
        }
        at = end + 1;
    }
    return -1;
}

// Any file: every logical line is read, most passed over with a memchr.
long FileImage::search_line_by_line(std::string_view header) const {
    char line[kSearchLimit];
    std::size_t pos = 0;
    while (pos < size_) {
        const void* end = std::memchr(data_ + pos, '\n', size_ - pos);
        if (!end) return -1;  // a last line without its end is read by no search
        auto length = static_cast<std::size_t>(static_cast<const char*>(end) - (data_ + pos));
        if (passes_over(data_ + pos, length)) {
            pos += length + 1;
            continue;
        }
        cfg::MemorySource in{data_, size_, pos};
        if (cfg::read_logical_line(line, kSearchLimit, in) != 0) return -1;
        pos = in.pos;
        if (same_word(cfg::first_word(line), header)) return static_cast<long>(pos);
    }
    return -1;
}

long FileImage::section_offset(std::string_view header) noexcept {
    try {
        std::lock_guard guard(lock_);
        std::string key = lower(header);
        if (auto known = found_.find(key); known != found_.end()) return known->second;
        if (uncut_ == Uncut::Unknown) {
            uncut_ = size_ > 0 && Lines(data_, size_).uncut() ? Uncut::Yes : Uncut::No;
        }
        long offset = size_ == 0             ? -1
                      : uncut_ == Uncut::Yes ? search_by_brackets(header)
                                             : search_line_by_line(header);
        found_.emplace(std::move(key), offset);
        return offset;
    } catch (const std::bad_alloc&) {
        return kUnanswered;
    }
}

const FileImage::Entries* FileImage::entries_at(std::size_t offset) noexcept {
    try {
        std::lock_guard guard(lock_);
        if (auto known = entries_.find(offset); known != entries_.end()) return &known->second;
        // Listed aside and kept only when whole: a list cut short by a
        // failed allocation would hide keys from every later lookup.
        Entries section;
        char line[kLookupLimit];
        cfg::MemorySource in{data_, size_, std::min(offset, size_)};
        for (;;) {
            std::size_t start = in.pos;
            if (cfg::read_logical_line(line, kLookupLimit, in) != 0 || line[0] == '[') break;
            if (line[0] == '\0' || line[0] == '#') continue;
            char keyword[kLookupLimit];
            cfg_getkeyword(keyword, line);
            section.entries.push_back({keyword, start});
        }
        section.end = in.pos;
        return &entries_.emplace(offset, std::move(section)).first->second;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace qorvel
