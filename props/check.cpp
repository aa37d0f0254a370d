#include "check.h"

#include <qorvel/config.h>
#include <qorvel/services.h>
#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string_view>

namespace props {
namespace {

// Where a section's values go: the descriptor table of its record.
struct ServiceTable {
    const char* section;  // the section or its dotted parent
    const CfgInfo* table;
};
constexpr ServiceTable kServiceTables[] = {
    {"UBroker", UBcfg_info},
    {"NameServer", NScfg_info},
    {"Corvane.Messengers", MsngrCfg_info},
    {"configuration", CNFGcfg_info},
    {"database", DBcfg_info},
    {"servergroup", SRVRGRPcfg_info},
    {"server", replServerV2_info},
    {"control-agent", replControlAgentV2_info},
    {"agent", replAgentV2_info},
    {"transition", replTransition_info},
};

std::string lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

const CfgInfo* table_row(const std::string& section, const std::string& key) {
    for (const ServiceTable& t : kServiceTables) {
        std::size_t n = std::strlen(t.section);
        bool within = strncasecmp(section.c_str(), t.section, n) == 0 &&
                      (section.size() == n || section[n] == '.');
        if (!within) continue;
        for (const CfgInfo* row = t.table; row->keyword; ++row) {
            if (strcasecmp(row->keyword, key.c_str()) == 0) return row;
        }
    }
    return nullptr;
}

class Checker {
  public:
    explicit Checker(const FileText& file) : file_(file) {}
    std::vector<Finding> run();

  private:
    void add(int line, bool error, std::string message) {
        findings_.push_back({line, error, std::move(message)});
    }
    void physical_lines();
    void header(const LogicalLine& line);
    void entry(const LogicalLine& line);
    void references(const LogicalLine& line, const std::string& key, std::string_view value);
    bool section_exists(const std::string& name) const;
    bool key_exists(const std::string& section, const std::string& key) const;

    const FileText& file_;
    std::vector<Finding> findings_;
    std::map<std::string, int> headers_;                      // lower-case header word -> line
    std::map<std::string, std::map<std::string, int>> keys_;  // section -> key -> line
    std::string section_;                                     // "" above the first header
    bool unreachable_ = false;  // the section's entries are read by no lookup
    CFGHANDLE handle_{};
};

void Checker::physical_lines() {
    const std::string& bytes = file_.bytes();
    std::size_t carriage_returns = 0;
    int first_cr = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\n' && i > 0 && bytes[i - 1] == '\r' && carriage_returns++ == 0) {
            first_cr = file_.line_at(static_cast<long>(i));
        }
    }
    if (carriage_returns > 0) {
        add(first_cr, false,
            "carriage-return line end (" + std::to_string(carriage_returns) +
                " lines): values keep the carriage return and a trailing ',' no longer "
                "continues the line");
    }
    if (!bytes.empty() && bytes.back() != '\n') {
        add(file_.line_at(static_cast<long>(bytes.size()) - 1), false,
            "the last line has no line end: no reader sees it");
    }
}

void Checker::header(const LogicalLine& line) {
    std::string_view text = line.text;
    std::size_t close = text.find(']');
    if (close == std::string_view::npos) {
        add(line.number, true, "a header without ']'");
        return;
    }
    std::string_view word = text.substr(0, text.find_first_of(" \t\r"));
    section_ = file_.header_name(line.offset);
    if (word.back() != ']') {
        add(line.number, false, "a blank inside the header: only its first word is the header");
    } else if (text.find_first_not_of(" \t\r", word.size()) != std::string_view::npos) {
        add(line.number, false, "text after the header's ']' is ignored");
    }
    auto [known, added] = headers_.try_emplace(lower(std::string(word)), line.number);
    if (!added) {
        add(line.number, true,
            "section " + section_ + " already begins at line " + std::to_string(known->second) +
                ": this one is never found");
    }
    unreachable_ = !added || find_Section(section_.c_str(), &handle_) != 1;
}

void Checker::entry(const LogicalLine& line) {
    EntryKey split = entry_key(line.text);
    if (!split.has_equals) {
        add(line.number, true, "neither an entry (key=value), a comment nor a header");
        return;
    }
    if (!split.key.empty() && (split.key.back() == ' ' || split.key.back() == '\t')) {
        add(line.number, false,
            "blanks before '=' are part of the key: '" + split.key + "' never matches '" +
                split.key.substr(0, split.key.find_last_not_of(" \t") + 1) + "'");
    }
    auto [known, added] = keys_[lower(section_)].try_emplace(lower(split.key), line.number);
    if (!added) {
        add(line.number, true,
            "key " + split.key + " is already set at line " + std::to_string(known->second) +
                ": this value is never read");
        return;
    }
    if (unreachable_) return;
    std::string_view value = std::string_view(line.text).substr(line.text.find('=') + 1);
    references(line, split.key, value);
    // The value as a reader gets it: the handle is on this entry's section.
    char resolved[CFG_VALUE_SIZE];
    long rc = getPropValue(&handle_, split.key.c_str(), resolved, sizeof resolved,
                           PROP_STRING | PROP_WHOLE_LINE, nullptr, PROP_NO_DEFAULT_NUMBER, 1);
    if (rc == CFG_BAD_VALUE) {
        add(line.number, true,
            "the substitution cannot complete: references that never settle, or a result past "
            "4095 characters");
    }
    const CfgInfo* row = rc == 0 ? table_row(section_, split.key) : nullptr;
    if (row && (row->flags & PROP_TYPE_MASK) == PROP_STRING &&
        std::strlen(resolved) >= row->valueSize) {
        add(line.number, false,
            "the value of " + split.key + " is " + std::to_string(std::strlen(resolved)) +
                " characters; its record field keeps " + std::to_string(row->valueSize - 1));
    }
}

void Checker::references(const LogicalLine& line, const std::string& key, std::string_view value) {
    constexpr std::string_view kValueOf = "!{value-of:";
    for (std::size_t at = value.find(kValueOf); at != std::string_view::npos;
         at = value.find(kValueOf, at + 1)) {
        std::size_t start = at + kValueOf.size(), close = value.find('}', start);
        if (close == std::string_view::npos) break;
        std::string ref(value.substr(start, close - start));
        std::size_t dot = ref.rfind('.');
        std::string section = dot == std::string::npos ? section_ : ref.substr(0, dot);
        std::string name = dot == std::string::npos ? ref : ref.substr(dot + 1);
        if (name.empty()) name = key;
        if (!section.empty() && !section_exists(section)) {
            add(line.number, true, "!{value-of:" + ref + "} names a section that does not exist");
        } else if (!key_exists(section, name)) {
            add(line.number, true, "!{value-of:" + ref + "} names a key that does not exist");
        }
    }
    for (std::size_t at = value.find("${"); at != std::string_view::npos;
         at = value.find("${", at + 2)) {
        std::size_t close = value.find('}', at + 2);
        if (close == std::string_view::npos) break;
        std::string name(value.substr(at + 2, close - at - 2));
        if (!std::getenv(name.c_str())) {
            add(line.number, false, "${" + name + "} refers to a variable that is not set here");
        }
    }
}

bool Checker::section_exists(const std::string& name) const {
    CFGHANDLE copy = handle_;
    return find_Section(name.c_str(), &copy) == 1;
}

bool Checker::key_exists(const std::string& section, const std::string& key) const {
    CFGHANDLE copy = handle_;
    if (!section.empty() && find_Section(section.c_str(), &copy) != 1) return false;
    char value[CFG_VALUE_SIZE];
    return getPropValue(&copy, key.c_str(), value, sizeof value, PROP_STRING, nullptr,
                        PROP_NO_DEFAULT_NUMBER, 0) == 0;
}

std::vector<Finding> Checker::run() {
    physical_lines();
    if (opencfg(nullptr, nullptr, file_.path().c_str(), &handle_) != 0) return findings_;
    for (const LogicalLine& line : file_.lines()) {
        if (line.text.empty() || line.text[0] == '#') continue;
        if (line.text[0] == '[') {
            header(line);
        } else {
            entry(line);
        }
    }
    closecfg(&handle_);
    std::stable_sort(findings_.begin(), findings_.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
    return findings_;
}

}  // namespace

std::vector<Finding> check_file(const FileText& file) { return Checker(file).run(); }

}  // namespace props
