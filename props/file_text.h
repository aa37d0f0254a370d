// A properties file as qorvel-props reads it: opened as the library opens it
// and read once, its bytes, the logical lines every reader of the library
// sees (through its own cfg_getline), each with the physical line it starts
// on, and its headers as the library enumerates them.
#pragma once

#include <qorvel/config.h>

#include <cstddef>
#include <string>
#include <vector>

namespace props {

struct LogicalLine {
    std::string text;  // blanks folded, continuations joined
    long offset;       // file offset where the line starts
    int number;        // physical line number, from 1
};

struct Header {
    std::string name;  // as the library's enumeration reads it
    int line;          // of the header's last physical line
    long after;        // the offset after it
    bool reachable;    // a search for `name` lands on this header
};

class FileText {
  public:
    FileText() = default;
    ~FileText();
    FileText(const FileText&) = delete;
    FileText& operator=(const FileText&) = delete;

    // Opens `path` as the launcher and the library's readers do (the file
    // named, else the one under $VTX/properties/) and reads it. False with
    // `why` set to the reason when it cannot be read.
    bool load(const std::string& path, std::string& why);

    const std::string& path() const { return path_; }  // as resolved
    const std::string& bytes() const { return bytes_; }
    // Every logical line of the file, read on first use.
    const std::vector<LogicalLine>& lines() const;
    // The logical lines from `offset` up to the next header.
    std::vector<LogicalLine> section_lines(long offset) const;
    // Every header in file order, enumerated on first use.
    const std::vector<Header>& headers() const;
    // The header whose logical line holds byte `offset`, or nullptr.
    const Header* header_at(long offset) const;
    // The physical line holding byte `offset`.
    int line_at(long offset) const;
    // A byte copy of the open handle, for searches and lookups; valid while
    // this object lives.
    CFGHANDLE handle() const { return handle_; }

  private:
    bool read_bytes();
    std::vector<LogicalLine> read_lines(long offset, bool to_next_header) const;

    std::string path_;
    std::string bytes_;
    std::vector<long> line_starts_;
    mutable std::vector<LogicalLine> lines_;
    mutable bool lines_read_ = false;
    mutable std::vector<Header> headers_;
    mutable bool headers_read_ = false;
    CFGHANDLE handle_{};
    CFGHANDLE search_{};  // a second handle, so that searches leave the enumeration's stream be
};

// Why a file the library was asked to open or read could not be: `rc` is
// its status.
std::string read_failure(long rc);

// An entry line as the lookups split it: its key, the value after the key
// (the "=" and blanks dropped), and whether it has an unescaped "=".
struct Entry {
    std::string key, value;
    bool has_equals;
};
Entry split_entry(const std::string& line);

// Keys and section names compared without case, as lookups compare them.
std::string lower(std::string text);

}  // namespace props
