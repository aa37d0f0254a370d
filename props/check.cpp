#include "check.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>
#include <unordered_set>

#include "check_parts.h"

namespace props {
namespace {

constexpr std::size_t kValueRead = 1023;  // what a lookup reads of a value

// The first word of a header line: what a section search compares with "[name]".
std::string first_word(const std::string& text) {
    std::string copy = text, word(text.size() + 1, '\0');
    cfg_getword(word.data(), copy.data());
    return word.c_str();
}

std::string unreachable_reason(const Header& h, const std::string& word, bool closed) {
    if (!closed) return "a header without ']'";
    if (h.name.empty()) return "a header without a name";
    if (h.name.size() > CFG_SECTION_NAME_MAX) {
        return "a section name of " + std::to_string(h.name.size()) + " characters, over " +
               std::to_string(CFG_SECTION_NAME_MAX);
    }
    return "a search for section " + h.name + " looks for '[" + h.name +
           "]', and this header's first word is '" + word + "'";
}

class Checker {
  public:
    explicit Checker(const FileText& file) : file_(file) {}
    std::vector<Finding> run();

  private:
    void add(int line, bool error, std::string message) {
        findings_.push_back({line, error, std::move(message)});
    }
    void collect_sections();
    void header(const LogicalLine& line);
    void entry(const LogicalLine& line);
    bool key_written(const Entry& e, int line);
    void references(const LogicalLine& line, const std::string& key, std::string_view value);
    bool key_exists(const std::string& section, const std::string& key);

    const FileText& file_;
    Findings findings_;
    std::unordered_set<std::string> sections_;      // lower-case names a search finds
    std::unordered_map<std::string, int> headers_;  // lower-case name -> header line
    std::unordered_map<std::string, int> keys_;     // of the current section
    std::unordered_map<std::string, bool> referenced_keys_;  // "section\nkey" -> exists
    std::string section_;                                    // "" above the first header
    const Family* family_ = nullptr;                         // its service reader, if any
    bool unreachable_ = false;  // the section's entries are read by no lookup
    CFGHANDLE handle_{};
};

// Every name a search finds, first: a chain's level or a reference may name
// a section further down.
void Checker::collect_sections() {
    for (const Header& h : file_.headers()) {
        if (h.reachable) sections_.insert(lower(h.name));
    }
}

void Checker::header(const LogicalLine& line) {
    const Header* h = file_.header_at(line.offset);
    keys_.clear();
    family_ = nullptr;
    unreachable_ = true;
    if (!h) return;
    std::string word = first_word(line.text);
    // Which rule keeps a search off it: its own shape, or an earlier header.
    bool searchable = !h->name.empty() && h->name.size() <= CFG_SECTION_NAME_MAX &&
                      lower(word) == lower("[" + h->name + "]");
    if (!searchable) {
        bool closed = line.text.find(']') != std::string::npos;
        add(line.number, true, unreachable_reason(*h, word, closed) + ": no search finds it");
        return;
    }
    auto [known, added] = headers_.try_emplace(lower(h->name), line.number);
    if (!added) {
        add(line.number, true,
            "section " + h->name + " already begins at line " + std::to_string(known->second) +
                ": this one is never found");
        return;
    }
    if (line.text.find_first_not_of(" \t\r", word.size()) != std::string::npos) {
        add(line.number, false, "text after the header's ']' is ignored");
    }
    section_ = h->name;
    family_ = family_of(section_);
    if (family_) {
        check_levels(
            *family_, section_,
            [this](const std::string& name) { return sections_.contains(name); }, line.number,
            findings_);
    }
    unreachable_ = find_Section(section_.c_str(), &handle_) != 1;
}

// False after a finding when no lookup reads this entry as written.
bool Checker::key_written(const Entry& e, int line) {
    if (!e.has_equals) {
        add(line, true, "neither an entry (key=value), a comment nor a header");
        return false;
    }
    if (!e.key.empty() && (e.key.back() == ' ' || e.key.back() == '\t')) {
        add(line, true,
            "blanks before '=' are part of the key: '" + e.key + "' never matches '" +
                e.key.substr(0, e.key.find_last_not_of(" \t") + 1) + "'");
        return false;
    }
    auto [known, added] = keys_.try_emplace(lower(e.key), line);
    if (!added) {
        add(line, true,
            "key " + e.key + " is already set at line " + std::to_string(known->second) +
                ": this value is never read");
    }
    return added;
}

void Checker::entry(const LogicalLine& line) {
    Entry e = split_entry(line.text);
    if (!key_written(e, line.number)) return;
    if (e.value.size() > kValueRead) {
        add(line.number, true,
            "the value is " + std::to_string(e.value.size()) +
                " characters: a lookup reads only the first " + std::to_string(kValueRead));
    }
    if (unreachable_) return;
    references(line, e.key, e.value);
    // The value as a reader gets it: the handle is on this entry's section.
    char resolved[CFG_VALUE_SIZE];
    long rc = getPropValue(&handle_, e.key.c_str(), resolved, sizeof resolved,
                           PROP_STRING | PROP_WHOLE_LINE, nullptr, PROP_NO_DEFAULT_NUMBER, 1);
    if (rc == CFG_BAD_VALUE) {
        add(line.number, true,
            "the substitution cannot complete: references that never settle, or a result past "
            "4095 characters");
        return;
    }
    if (rc != 0) return;
    check_environment(handle_, e.key, e.value, resolved, line.number, findings_);
    if (family_) check_service_entry(*family_, handle_, e.key, resolved, line.number, findings_);
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
        if (!section.empty() && !sections_.contains(lower(section))) {
            add(line.number, true, "!{value-of:" + ref + "} names a section that does not exist");
        } else if (!key_exists(section, name)) {
            add(line.number, true, "!{value-of:" + ref + "} names a key that does not exist");
        }
    }
}

// Each distinct reference is looked up once, however many values use it.
bool Checker::key_exists(const std::string& section, const std::string& key) {
    const std::string& where = section.empty() ? section_ : section;
    auto [it, added] = referenced_keys_.try_emplace(lower(where) + '\n' + lower(key), false);
    if (!added) return it->second;
    CFGHANDLE copy = handle_;
    if (!where.empty() && find_Section(where.c_str(), &copy) != 1) return false;
    char value[CFG_VALUE_SIZE];
    it->second = getPropValue(&copy, key.c_str(), value, sizeof value, PROP_STRING, nullptr,
                              PROP_NO_DEFAULT_NUMBER, 0) == 0;
    return it->second;
}

std::vector<Finding> Checker::run() {
    check_layout(file_, findings_);
    handle_ = file_.handle();
    collect_sections();
    for (const LogicalLine& line : file_.lines()) {
        if (line.text.empty() || line.text[0] == '#' || is_cut_rest(file_, line)) continue;
        if (line.text[0] == '[') {
            header(line);
        } else {
            entry(line);
        }
    }
    std::stable_sort(findings_.begin(), findings_.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
    return findings_;
}

}  // namespace

std::vector<Finding> check_file(const FileText& file) { return Checker(file).run(); }

}  // namespace props
