#include "file_text.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace props {
namespace {

constexpr int kLookupLimit = 2048;  // what a key lookup reads of one logical line
constexpr std::size_t kNameMax = 2048;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

FileText::~FileText() {
    closecfg(&handle_);
    closecfg(&search_);
}

bool FileText::load(const std::string& path, std::string& why) {
    // The library would look a directory's name up under $VTX/properties:
    // say what it is instead.
    struct stat info;
    if (stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
        why = S_ISDIR(info.st_mode) ? std::strerror(EISDIR) : "not a regular file";
        return false;
    }
    long rc = opencfg(nullptr, nullptr, path.c_str(), &handle_);
    if (rc == 0) rc = opencfg(nullptr, nullptr, handle_.fileName, &search_);
    if (rc == 0 && !read_bytes()) rc = errno;
    if (rc != 0) {
        why = read_failure(rc);
        return false;
    }
    path_ = handle_.fileName;
    line_starts_ = {0};
    for (const char* p = bytes_.data(); (p = static_cast<const char*>(std::memchr(
                                            p, '\n', bytes_.data() + bytes_.size() - p)));) {
        ++p;
        line_starts_.push_back(p - bytes_.data());
    }
    return true;
}

// Through the library's own descriptor, so that the bytes are those of the
// file it opened, and never more than the file held when it was opened.
bool FileText::read_bytes() {
    int fd = fileno(handle_.fp);
    struct stat info;
    if (fstat(fd, &info) != 0) return false;
    bytes_.resize(static_cast<std::size_t>(info.st_size));
    std::size_t got = 0;
    while (got < bytes_.size()) {
        ssize_t n = pread(fd, bytes_.data() + got, bytes_.size() - got, static_cast<off_t>(got));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        if (n == 0) break;
        got += static_cast<std::size_t>(n);
    }
    bytes_.resize(got);
    return true;
}

std::vector<LogicalLine> FileText::read_lines(long offset, bool to_next_header) const {
    std::vector<LogicalLine> lines;
    if (static_cast<std::size_t>(offset) >= bytes_.size()) return lines;
    // A stream of its own over the bytes: the handle's stream stays the library's.
    std::unique_ptr<std::FILE, FileCloser> in(
        fmemopen(const_cast<char*>(bytes_.data()) + offset, bytes_.size() - offset, "r"));
    if (!in) throw std::bad_alloc();
    char buffer[kLookupLimit];
    for (;;) {
        long at = offset + std::ftell(in.get());
        if (cfg_getline(buffer, kLookupLimit, in.get()) != 0) break;
        if (to_next_header && buffer[0] == '[') break;
        lines.push_back({buffer, at, line_at(at)});
    }
    return lines;
}

const std::vector<LogicalLine>& FileText::lines() const {
    if (!lines_read_) lines_ = read_lines(0, false);
    lines_read_ = true;
    return lines_;
}

std::vector<LogicalLine> FileText::section_lines(long offset) const {
    return read_lines(offset, true);
}

const std::vector<Header>& FileText::headers() const {
    if (headers_read_) return headers_;
    headers_read_ = true;
    CFGHANDLE walk = handle_;
    std::rewind(walk.fp);
    char name[kNameMax];
    for (long rc; (rc = find_NextHeader(name, sizeof name, &walk)) != CFG_NO_MORE_SECTIONS;) {
        long after = walk.sectionOffset;
        CFGHANDLE search = search_;
        bool reachable = rc == 0 && find_Section(name, &search) && search.sectionOffset == after;
        headers_.push_back({name, line_at(after - 1), after, reachable});
    }
    return headers_;
}

const Header* FileText::header_at(long offset) const {
    const std::vector<Header>& all = headers();
    auto holding = std::upper_bound(all.begin(), all.end(), offset,
                                    [](long at, const Header& h) { return at < h.after; });
    return holding == all.end() ? nullptr : &*holding;
}

int FileText::line_at(long offset) const {
    auto after = std::upper_bound(line_starts_.begin(), line_starts_.end(), offset);
    return static_cast<int>(after - line_starts_.begin());
}

std::string read_failure(long rc) {
    const char* vtx = std::getenv("VTX");
    if (rc == CFG_NOT_FOUND || (rc == ENOENT && !vtx)) {
        return "no such file here, and VTX is unset, so $VTX/properties was not searched";
    }
    if (rc == ENOENT) return std::string("no such file here, nor in ") + vtx + "/properties";
    if (rc == EINVAL) return "not a regular file";
    if (rc == CFG_BAD_VALUE) return "a value's substitution could not complete";
    return std::strerror(static_cast<int>(rc));
}

Entry split_entry(const std::string& line) {
    std::string value = line, key(line.size() + 1, '\0');
    cfg_getkeyword(key.data(), value.data());
    bool has_equals = false;
    for (std::size_t i = 0; i < line.size() && !has_equals; ++i) {
        has_equals = line[i] == '=' && (i == 0 || line[i - 1] != '\\');
    }
    return {key.c_str(), value.c_str(), has_equals};
}

std::string lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace props
