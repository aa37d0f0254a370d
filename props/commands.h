// The commands of qorvel-props: what each is handed, what each gives back.
#pragma once

#include <string>
#include <vector>

#include "json_output.h"
#include "resolve.h"

namespace props {

// Exit statuses every command shares.
constexpr int kSuccess = 0;
constexpr int kNo = 1;       // nothing found, a difference, a value that cannot be read
constexpr int kFailure = 2;  // a usage error, or a file or kind that cannot be read

// The options a command may take, one bit each.
enum Option : unsigned { kRaw = 1u, kLines = 2u, kLaunch = 4u };

struct Invocation {
    std::vector<std::string> operands;  // after the command's name
    unsigned options = 0;
    bool json = false;
    Json doc = document();  // what --json prints when the command returns

    bool has(Option option) const { return (options & option) != 0; }
    // Reports `message` on standard error and as the document's "error";
    // returns `status`.
    int fail(const std::string& message, int status = kFailure);
};

int run_sections(Invocation& c);
int run_show(Invocation& c);
int run_get(Invocation& c);
int run_check(Invocation& c);
int run_service(Invocation& c);
int run_diff(Invocation& c);
int run_launch_view(Invocation& c);  // show --launch

// Resolves `section` of `path`; false after c.fail when the file cannot be read.
bool resolve_section(Invocation& c, const std::string& path, const std::string& section,
                     Resolution& out);

// Adds the levels to the document and the text ("level a.b: line 4" or
// "level a.b: absent"); false when none is found.
bool put_levels(Invocation& c, const Resolution& resolution);

// What the JSON says of a setting.
Json setting_json(const Setting& setting);

// The text line of a setting: "key = value  [level:line]".
std::string setting_text(const Setting& setting);

// Reports the settings whose substitution failed, naming each; kNo when
// there is one, else kSuccess.
int report_failed_substitutions(Invocation& c, const std::vector<Setting>& settings);

}  // namespace props
