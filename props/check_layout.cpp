// What the bytes of the file show: line ends, a ',' that joins a header or an
// entry to the line above it, lines longer than a reader takes.
#include "check_parts.h"

namespace props {
namespace {

using Lines = std::vector<LogicalLine>;

void line_ends(const FileText& file, Findings& out) {
    const std::string& bytes = file.bytes();
    std::size_t carriage_returns = 0;
    int first_cr = 0;
    for (std::size_t i = 1; i < bytes.size(); ++i) {
        if (bytes[i] == '\n' && bytes[i - 1] == '\r' && carriage_returns++ == 0) {
            first_cr = file.line_at(static_cast<long>(i));
        }
    }
    if (carriage_returns > 0) {
        out.push_back({first_cr, false,
                       "carriage-return line end (" + std::to_string(carriage_returns) +
                           " lines): values keep the carriage return and a trailing ',' no "
                           "longer continues the line"});
    }
    if (!bytes.empty() && bytes.back() != '\n') {
        out.push_back({file.line_at(static_cast<long>(bytes.size()) - 1), true,
                       "the last line has no line end: no reader sees it"});
    }
}

// Where logical line `i` ends. The last one ends the file, unless an unended
// line follows, which a reader drops: then its own first newline ends it.
std::size_t end_of(const FileText& file, std::size_t i) {
    const Lines& lines = file.lines();
    const std::string& bytes = file.bytes();
    if (i + 1 < lines.size()) return static_cast<std::size_t>(lines[i + 1].offset);
    if (bytes.ends_with('\n')) return bytes.size();
    return bytes.find('\n', static_cast<std::size_t>(lines[i].offset)) + 1;
}

// The physical lines a ',' joined to logical line `line`, which ends at `end`:
// a header there is no header, an entry joined to a comment is no entry.
void joined_lines(const FileText& file, const LogicalLine& line, std::size_t end, Findings& out) {
    const std::string& bytes = file.bytes();
    bool comment = line.text[0] == '#';
    int number = line.number;
    for (std::size_t at = bytes.find('\n', static_cast<std::size_t>(line.offset));
         at != std::string::npos && at + 1 < end; at = bytes.find('\n', at + 1)) {
        ++number;
        std::size_t first = bytes.find_first_not_of(" \t", at + 1);
        if (first >= end || bytes[first] == '\n' || bytes[first] == '#') continue;
        std::string above = std::to_string(line.number);
        if (bytes[first] == '[') {
            out.push_back({number, true,
                           "line " + above +
                               " ends in ',' and takes this header in: its section does not "
                               "exist, its entries belong to the section above"});
        } else if (comment) {
            out.push_back({number, true,
                           "the comment on line " + above +
                               " ends in ',' and takes this line in: it is never read"});
        }
    }
}

}  // namespace

bool is_cut_rest(const FileText& file, const LogicalLine& line) {
    return line.offset > 0 && file.bytes()[static_cast<std::size_t>(line.offset) - 1] != '\n';
}

void check_layout(const FileText& file, Findings& out) {
    line_ends(file, out);
    const Lines& lines = file.lines();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].text.empty()) continue;
        joined_lines(file, lines[i], end_of(file, i), out);
        bool cut = i + 1 < lines.size() && is_cut_rest(file, lines[i + 1]);
        if (cut && !is_cut_rest(file, lines[i])) {
            out.push_back({lines[i].number, true,
                           "a line of more than 2,047 characters: a reader cuts it there and "
                           "reads the rest as a line of its own"});
        }
    }
}

}  // namespace props
