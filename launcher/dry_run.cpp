#include "launcher/dry_run.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "launcher/env_lines.h"
#include "launcher/jvm_args.h"
#include "launcher/jvm_start.h"
#include "launcher/launch_summary.h"
#include "launcher/program_search.h"

extern char** environ;

namespace qorvel {
namespace {

// The entries of environ at the start. Every change the launch makes
// (putenv, setenv) puts a new entry in place, so a pointer not found here is
// a variable the launch set or changed.
std::vector<const char*> initial_environment;

// The word as a shell reads it back: bare when it holds only safe
// characters, else in single quotes with each quote written as '\''.
std::string shell_quoted(std::string_view word) {
    constexpr std::string_view kSafe =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_@%+=:,./-";
    if (!word.empty() && word.find_first_not_of(kSafe) == std::string_view::npos) {
        return std::string(word);
    }
    std::string quoted = "'";
    for (char c : word) {
        if (c == '\'') {
            quoted += "'\\''";
        } else {
            quoted += c;
        }
    }
    quoted += '\'';
    return quoted;
}

}  // namespace

void remember_environment() {
    initial_environment.clear();
    for (char** entry = environ; *entry; ++entry) initial_environment.push_back(*entry);
}

int dry_run(LaunchSettings& launch, char** command, const Identity& identity) {
    char** vector = nullptr;
    if (int rc = create_argv(command + 1, &vector, command[0], launch.jvm)) return rc;
    int rc = check_streams(launch);
    if (rc == 0) rc = find_program(vector[0]);
    if (rc != 0) {
        destroy_argv(vector);
        return rc;
    }
    std::string line;
    for (char** word = vector; *word; ++word) {
        if (!line.empty()) line += ' ';
        line += shell_quoted(*word);
    }
    destroy_argv(vector);
    std::printf("%s\n", line.c_str());
    for (char** entry = environ; *entry; ++entry) {
        bool initial = std::find(initial_environment.begin(), initial_environment.end(), *entry) !=
                       initial_environment.end();
        if (!initial) std::printf("%s\n", shown_entry(*entry).c_str());
    }
    print_launch_summary(launch, identity);
    std::fflush(stdout);
    return 0;
}

}  // namespace qorvel
