// qorvel-props: what a properties file resolves to, through the library's
// public interface alone. A small dispatcher suffices for five commands and
// five flags, so no argument-parsing library is pulled in.
#include <strings.h>

#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "check.h"
#include "file_text.h"
#include "resolve.h"
#include "service.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr int kNotFound = 1;  // no level of a section, or no key, exists
constexpr int kFailure = 2;   // a usage error, or a file or kind that cannot be read

struct Command {
    std::vector<std::string> words;  // the command and its operands
    bool json = false, raw = false, lines = false;
};

int fail(const std::string& message, int status = kFailure) {
    std::cerr << "qorvel-props: " << message << '\n';
    return status;
}

void print(const Json& json) { std::cout << json.dump(2) << '\n'; }

bool load(const std::string& path, props::FileText& file) {
    std::string why;
    if (file.load(path, why)) return true;
    fail(path + ": " + why);
    return false;
}

// The section named by the command's FILE and SECTION operands, resolved;
// false after a message when the file cannot be read.
bool resolve(const Command& c, props::Resolution& resolution) {
    props::FileText file;
    if (!load(c.words[1], file)) return false;
    props::resolve(file, c.words[2], c.raw, resolution);
    return true;
}

// A header no search reaches is listed (a reader may still meet its lines),
// marked in -l and in the JSON.
int sections(const Command& c) {
    props::FileText file;
    if (!load(c.words[1], file)) return kFailure;
    std::string prefix = c.words.size() > 2 ? c.words[2] : "";
    Json out = Json::array();
    for (const props::Header& header : file.headers()) {
        if (strncasecmp(header.name.c_str(), prefix.c_str(), prefix.size()) != 0) continue;
        if (c.json) {
            out.push_back(
                {{"name", header.name}, {"line", header.line}, {"reachable", header.reachable}});
        } else if (c.lines) {
            std::printf("%5d  %s%s\n", header.line, header.name.c_str(),
                        header.reachable ? "" : "  (no search reaches it)");
        } else {
            std::printf("%s\n", header.name.c_str());
        }
    }
    if (c.json) print(out);
    return 0;
}

int show(const Command& c) {
    props::Resolution resolution;
    if (!resolve(c, resolution)) return kFailure;
    Json out = {{"file", c.words[1]},
                {"section", c.words[2]},
                {"levels", Json::array()},
                {"keys", Json::array()}};
    bool any = false;
    for (const props::Level& level : resolution.levels) {
        any = any || level.found;
        out["levels"].push_back({{"name", level.name}, {"found", level.found}});
        if (level.found) out["levels"].back()["line"] = level.line;
        if (!c.json && level.found)
            std::printf("level %s: line %d\n", level.name.c_str(), level.line);
        if (!c.json && !level.found) std::printf("level %s: absent\n", level.name.c_str());
    }
    for (const props::Setting& s : resolution.settings) {
        out["keys"].push_back({{"key", s.key},
                               {"value", s.value},
                               {"level", s.level},
                               {"line", s.line},
                               {"substitution_failed", s.failed}});
        if (c.json) continue;
        std::printf("%s = %s  [%s:%d]%s\n", s.key.c_str(), s.value.c_str(), s.level.c_str(), s.line,
                    s.failed ? " substitution failed" : "");
    }
    if (c.json) print(out);
    if (!any) return fail("no level of " + c.words[2] + " is in " + c.words[1], kNotFound);
    return 0;
}

int get(const Command& c) {
    props::Resolution resolution;
    if (!resolve(c, resolution)) return kFailure;
    const props::Setting* s = props::find_setting(resolution, c.words[3]);
    if (!s) return fail(c.words[3] + " is set in no level of " + c.words[2], kNotFound);
    if (c.json) {
        print({{"key", s->key}, {"value", s->value}, {"level", s->level}, {"line", s->line}});
    } else {
        std::printf("%s\n", s->value.c_str());
    }
    return s->failed ? kFailure : 0;
}

// 0 when clean, 1 with warnings only, 2 with errors.
int check(const Command& c) {
    int status = 0;
    Json out = Json::array();
    for (std::size_t i = 1; i < c.words.size(); ++i) {
        props::FileText file;
        if (!load(c.words[i], file)) {
            status = kFailure;
            continue;
        }
        for (const props::Finding& f : props::check_file(file)) {
            status = std::max(status, f.error ? 2 : 1);
            const char* severity = f.error ? "error" : "warning";
            out.push_back({{"file", c.words[i]},
                           {"line", f.line},
                           {"severity", severity},
                           {"message", f.message}});
            if (!c.json) {
                std::printf("%s:%d: %s: %s\n", c.words[i].c_str(), f.line, severity,
                            f.message.c_str());
            }
        }
    }
    if (c.json) print(out);
    return status;
}

int service(const Command& c) {
    props::ServiceRead read;
    std::string error;
    std::vector<std::string> names(c.words.begin() + 3, c.words.end());
    if (!props::read_service(c.words[1], c.words[2], names, read, error)) return fail(error);
    if (read.result != 0) {
        const ErrDetail& d = read.detail;
        Json detail = {
            {"code", d.code}, {"sysError", d.sysError}, {"where", d.where}, {"message", d.message}};
        if (c.json) print({{"result", read.result}, {"error", detail}});
        std::cerr << "qorvel-props: " << c.words[1] << " read failed: code " << d.code
                  << ", system error " << d.sysError << ", " << d.where << ": " << d.message
                  << '\n';
        return static_cast<int>(read.result);
    }
    Json out = Json::object();
    for (const props::Field& f : read.fields) {
        if (f.number) {
            out[f.key] = f.integer;
            if (!c.json) std::printf("%s = %lld\n", f.key.c_str(), f.integer);
        } else {
            out[f.key] = f.text;
            if (!c.json) std::printf("%s = %s\n", f.key.c_str(), f.text.c_str());
        }
    }
    if (c.json) print(out);
    return 0;
}

constexpr const char* kUsage =
    "Usage: qorvel-props [--json] COMMAND ...\n"
    "\n"
    "  sections [-l] FILE [PREFIX]   section names in file order (-l: with line numbers)\n"
    "  show [--raw] FILE SECTION     every key SECTION sees through its levels, with the\n"
    "                                level and line it comes from (--raw: unsubstituted)\n"
    "  get [--raw] FILE SECTION KEY  the resolved value alone\n"
    "  check FILE...                 findings as file:line: error|warning: message\n"
    "  service KIND FILE [NAME...]   a record read by the library's reader for KIND:\n";

struct Dispatch {
    const char* name;
    std::size_t min_operands, max_operands;
    int (*run)(const Command&);
};
constexpr Dispatch kCommands[] = {
    {"sections", 1, 2, sections},
    {"show", 2, 2, show},
    {"get", 3, 3, get},
    {"check", 1, 1000000, check},
    {"service", 2, 1000000, service},
};

}  // namespace

int main(int argc, char** argv) {
    Command c;
    for (int i = 1; i < argc; ++i) {
        std::string word = argv[i];
        if (word == "--help") {
            std::cout << kUsage << props::service_kinds();
            return 0;
        }
        if (word == "--version") {
            std::cout << "qorvel-props " << QORVEL_VERSION << '\n';
            return 0;
        }
        if (word == "--json" || word == "--raw" || word == "-l") {
            (word == "--json" ? c.json : word == "--raw" ? c.raw : c.lines) = true;
        } else if (word.size() > 1 && word[0] == '-') {
            return fail("unknown option " + word + " (see --help)");
        } else {
            c.words.push_back(word);
        }
    }
    if (c.words.empty()) return fail("no command (see --help)");
    for (const Dispatch& d : kCommands) {
        if (c.words[0] != d.name) continue;
        std::size_t operands = c.words.size() - 1;
        if (operands < d.min_operands || operands > d.max_operands) {
            return fail("wrong number of operands for " + c.words[0] + " (see --help)");
        }
        return d.run(c);
    }
    return fail("unknown command " + c.words[0] + " (see --help)");
}
