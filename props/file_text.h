// A properties file as qorvel-props reads it: the logical lines every reader
// of the library sees (through its own cfg_getline), each with the physical
// line it starts on, and the raw bytes for the checks that need them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace props {

struct LogicalLine {
    std::string text;  // blanks folded, continuations joined
    long offset;       // file offset where the line starts
    int number;        // physical line number, from 1
};

class FileText {
  public:
    // False (with errno set) when the file cannot be read.
    bool load(const std::string& path);

    const std::string& path() const { return path_; }
    const std::string& bytes() const { return bytes_; }
    const std::vector<LogicalLine>& lines() const { return lines_; }
    // The physical line holding byte `offset`.
    int line_at(long offset) const;

  private:
    std::string path_;
    std::string bytes_;
    std::vector<long> line_starts_;
    std::vector<LogicalLine> lines_;
};

// The section name of a header line ("[name] rest" gives "name"), or "" when
// the line is no header.
std::string header_name(const std::string& line);

// The key of an entry line as the lookups split it, and whether it has an "=".
struct EntryKey {
    std::string key;
    bool has_equals;
};
EntryKey entry_key(const std::string& line);

}  // namespace props
