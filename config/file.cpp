#include "config/file.h"

#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <new>

#include "config/logical_line.h"
#include "config/text_split.h"

namespace qorvel::config {
namespace {

constexpr std::size_t kLineSize = 2048;

// What the section search compares: the first word of a line that is neither
// empty nor a comment, when it opens with "[".
std::string_view header_word(const char* line) {
    if (line[0] == '\0' || line[0] == '#') return {};
    std::string_view word = cfg::first_word(line);
    return word.starts_with('[') ? word : std::string_view{};
}

// The section name of a header line: the keyword's text after "[", leading
// "]" skipped, up to the next "]".
std::string_view header_name(const char* line) {
    std::string_view name = cfg::split_keyword(line).key;
    if (name.starts_with('[')) name.remove_prefix(1);
    std::size_t start = name.find_first_not_of(']');
    if (start == std::string_view::npos) return {};
    name.remove_prefix(start);
    return name.substr(0, name.find(']'));
}

// Case folded as the comparison without case folds it.
std::string fold_case(std::string_view text) {
    std::string folded(text);
    for (char& c : folded) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return folded;
}

}  // namespace

Cursor::Cursor(const File& file, std::size_t offset) : file_(file), pos_(offset) {
    if (file.whole_) {
        std::size_t start = std::min(offset, file.whole_size_);
        at_ = file.whole_.get() + start;
        end_ = file.whole_.get() + file.whole_size_;
        pos_ = start;
    }
}

int Cursor::refill() {
    if (!file_.whole_) {
        if (!chunk_) chunk_.reset(new (std::nothrow) char[File::kChunkSize]);
        std::string_view bytes = chunk_ ? file_.bytes_at(pos_, chunk_.get()) : std::string_view{};
        if (!bytes.empty()) {
            at_ = bytes.data();
            end_ = at_ + bytes.size();
            return next();
        }
    }
    ended_ = true;
    return EOF;
}

namespace {

// The physical line at `at` when the rules read it as it stands: shorter
// than the limit (so never cut) and not ending in "," (so never joined).
// `first` and `last` bound it without its leading and trailing blanks.
struct PlainLine {
    const char *first, *last, *eol;
};

bool plain_line(const char* at, const char* end, int limit, PlainLine& line) {
    line.eol = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
    if (line.eol == nullptr || line.eol - at >= limit - 1) return false;
    line.first = at;
    while (line.first < line.eol && cfg::is_blank(*line.first)) ++line.first;
    line.last = line.eol;
    while (line.last > line.first && cfg::is_blank(line.last[-1])) --line.last;
    return !(line.last > line.first && line.last[-1] == ',');
}

// Whether the physical line before the one starting at `line` (blank and
// empty lines passed over, as they only carry a join on) may end in a join.
bool joined_before(const char* begin, const char* line) {
    const char* p = line - 1;  // its '\n'
    while (p > begin && (cfg::is_blank(p[-1]) || p[-1] == '\n')) --p;
    return p == begin || p[-1] == ',';
}

}  // namespace

// Only lines whose every character the rules would merely pass over: plain,
// and not opening with "[" or a white-space character a header word may
// follow. The fuzz target's corpus, replayed in the tests, holds it to the rules.
void Cursor::skip_plain_lines(int limit) {
    PlainLine line;
    while (at_ < end_ && plain_line(at_, end_, limit, line)) {
        if (line.first < line.eol && (*line.first == '[' || cfg::is_space(*line.first))) return;
        pos_ += static_cast<std::size_t>(line.eol + 1 - at_);
        at_ = line.eol + 1;
    }
}

void Cursor::skip_to_candidate(int limit) {
    if (!file_.whole_) return;
    const std::size_t full = static_cast<std::size_t>(limit - 1);
    const char* begin = file_.whole_.get();
    if (short_to_ < at_) short_to_ = at_;
    for (const char* from = at_;;) {
        const char* q = static_cast<const char*>(std::memchr(from, '[', end_ - from));
        const char* stop = q ? q : end_;
        // A line as long as the limit is cut, and its rest may open with "[".
        while (short_to_ <= stop && short_to_ < end_) {
            std::size_t span = std::min(full, static_cast<std::size_t>(end_ - short_to_));
            auto last = static_cast<const char*>(memrchr(short_to_, '\n', span));
            if (last == nullptr && span == full) return;
            short_to_ = last ? last + 1 : end_;
        }
        const char* line = q ? q : end_;
        while (line > at_ && line[-1] != '\n' && cfg::is_space(line[-1])) --line;
        bool at_line_start = line == at_ || line[-1] == '\n';
        if (line > at_) {
            const char* physical = line;
            while (physical > at_ && physical[-1] != '\n') --physical;
            // A join may make a long line whose cut opens on a "[".
            if (physical > at_ && joined_before(begin, physical)) return;
        }
        if (q == nullptr || at_line_start) {
            pos_ += static_cast<std::size_t>(line - at_);
            at_ = line;
            return;
        }
        from = q + 1;  // a "[" inside a line that starts where a line does
    }
}

bool Cursor::plain_header(int limit, std::string_view& word) {
    PlainLine line;
    if (at_ == end_ || !plain_line(at_, end_, limit, line)) return false;  // nothing read yet
    if (line.first == line.eol || *line.first != '[') return false;
    const char* end = line.first;
    while (end < line.last && !cfg::is_space(*end) && *end != '\0' && *end != '\\') ++end;
    if (end < line.last && *end == '\\') return false;
    word = std::string_view(line.first, static_cast<std::size_t>(end - line.first));
    pos_ += static_cast<std::size_t>(line.eol + 1 - at_);
    at_ = line.eol + 1;
    return true;
}

File::File(int fd, std::string path) : fd_(fd), owns_fd_(true), path_(std::move(path)) {}

std::unique_ptr<File> File::over(std::FILE* stream, std::string_view path) {
    std::unique_ptr<File> file(new File(fileno(stream), std::string(path)));
    file->owns_fd_ = false;
    struct stat info;
    if (fstat(file->fd_, &info) == 0 && S_ISREG(info.st_mode) &&
        static_cast<std::size_t>(info.st_size) <= kWholeReadMax &&
        !file->read_whole(static_cast<std::size_t>(info.st_size))) {
        throw std::bad_alloc();
    }
    return file;
}

File::~File() {
    if (owns_fd_ && fd_ != -1) close(fd_);
}

long File::open_regular(const char* path, int& fd, std::size_t* size) {
    // Non-blocking, so a FIFO is refused instead of waited on; a regular
    // file reads the same either way.
    fd = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd == -1) return errno;
    struct stat info;
    long rc = fstat(fd, &info) != 0    ? errno
              : S_ISDIR(info.st_mode)  ? EISDIR
              : !S_ISREG(info.st_mode) ? EINVAL
                                       : 0;
    if (rc != 0) {
        close(fd);
        fd = -1;
    } else if (size) {
        *size = static_cast<std::size_t>(info.st_size);
    }
    return rc;
}

long File::open(const std::string& path, std::unique_ptr<File>& file) {
    int fd;
    std::size_t size = 0;
    if (long rc = open_regular(path.c_str(), fd, &size); rc != 0) return rc;
    file.reset(new (std::nothrow) File(fd, path));
    if (!file) {
        close(fd);
        return ENOMEM;
    }
    return size <= kWholeReadMax && !file->read_whole(size) ? ENOMEM : 0;
}

// One snapshot of the file: a later change to it is seen by the next open.
bool File::read_whole(std::size_t size) {
    whole_.reset(new (std::nothrow) char[size + 1]);
    if (!whole_) return false;
    std::size_t got = 0;
    while (got < size) {
        ssize_t n = pread(fd_, whole_.get() + got, size - got, static_cast<off_t>(got));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;  // shrunk meanwhile, or unreadable: what was read is the file
        got += static_cast<std::size_t>(n);
    }
    whole_size_ = got;
    return true;
}

std::string_view File::bytes_at(std::size_t offset, char* chunk) const {
    if (whole_) {
        return offset < whole_size_ ? std::string_view(whole_.get() + offset, whole_size_ - offset)
                                    : std::string_view{};
    }
    ssize_t n;
    do {
        n = pread(fd_, chunk, kChunkSize, static_cast<off_t>(offset));
    } while (n < 0 && errno == EINTR);
    return n > 0 ? std::string_view(chunk, static_cast<std::size_t>(n)) : std::string_view{};
}

std::size_t File::find_section(std::string_view header) {
    std::string folded = fold_case(header);
    if (auto seen = headers_.find(folded); seen != headers_.end()) return stop_ = seen->second;
    if (!searched_all_) {
        Cursor in(*this, searched_to_);
        char line[kLineSize];
        for (;;) {
            in.skip_to_candidate(cfg::kSearchLimit);
            std::string_view word;
            if (!in.plain_header(cfg::kSearchLimit, word)) {
                in.skip_plain_lines(cfg::kSearchLimit);  // after a join or a long line
                if (cfg::read_logical_line(line, cfg::kSearchLimit, in) != 0) break;
                word = header_word(line);
                if (word.empty()) continue;
            }
            std::string key = fold_case(word);
            headers_.try_emplace(key, in.position());  // the first of a name is the one found
            if (key == folded) return stop_ = searched_to_ = in.position();
        }
        searched_all_ = true;
        searched_to_ = in.position();
    }
    stop_ = searched_to_;  // a search that finds nothing reads to the end
    return std::string_view::npos;
}

// Reads the section at `offset` from `in` until `key` or the section's end;
// the value of a found entry goes into `entry`.
bool File::scan_for(Cursor& in, const char* key, Entry& entry) {
    char line[kLineSize];
    while (cfg::read_logical_line(line, cfg::kLookupLimit, in) == 0 && line[0] != '[') {
        if (line[0] == '\0' || line[0] == '#') continue;
        auto [keyword, value] = cfg::split_keyword(line);
        if (!cfg::equals_nocase(keyword, key)) continue;
        entry.whole_cut = value.size() > kWholeValueMax;
        entry.whole = value.substr(0, kWholeValueMax);
        entry.word = cfg::first_word(value);
        return true;
    }
    return false;
}

const File::Entries& File::entries_at(std::size_t offset) {
    if (auto it = entries_.find(offset); it != entries_.end()) return it->second;
    Entries section;
    Cursor in(*this, offset);
    char line[kLineSize];
    for (;;) {
        std::size_t start = in.position();
        if (section.lines.size() == kMaxIndexedEntries) {
            section.complete = false;  // a huge section is read on, not held
            break;
        }
        if (cfg::read_logical_line(line, cfg::kLookupLimit, in) != 0) break;
        if (line[0] == '[') break;  // the next section begins
        if (line[0] == '\0' || line[0] == '#') continue;
        section.lines.push_back({std::string(cfg::split_keyword(line).key), start, in.position()});
    }
    section.end = in.position();
    return entries_.emplace(offset, std::move(section)).first->second;
}

bool File::find_entry(std::size_t offset, const char* key, Entry& entry) {
    const Entries& section = entries_at(offset);
    for (const KeyedLine& keyed : section.lines) {
        if (strcasecmp(keyed.keyword.c_str(), key) != 0) continue;
        Cursor in(*this, keyed.start);
        bool found = scan_for(in, key, entry);
        stop_ = keyed.end;
        return found;
    }
    if (section.complete) {
        stop_ = section.end;
        return false;
    }
    Cursor in(*this, section.end);
    bool found = scan_for(in, key, entry);
    stop_ = in.position();
    return found;
}

bool File::next_section(std::size_t from, std::string_view prefix, std::string& name,
                        std::size_t& after) {
    Cursor in(*this, from);
    char line[kLineSize];
    while (cfg::read_logical_line(line, cfg::kSearchLimit, in) == 0) {
        if (line[0] != '[') continue;
        std::string_view found = header_name(line);
        if (found.empty() || !found.starts_with(prefix)) continue;
        name = found;
        after = stop_ = in.position();
        return true;
    }
    stop_ = in.position();
    return false;
}

}  // namespace qorvel::config
