#include "command_table.h"

#include <cstddef>
#include <iostream>
#include <limits>

#include "service.h"

namespace props {
namespace {

struct OptionRow {
    const char* word;
    Option bit;
    const char* meaning;
};
constexpr OptionRow kOptions[] = {
    {"-l", kLines, "sections: with the line of each header"},
    {"--raw", kRaw, "show, get, diff: values before substitution"},
    {"--launch", kLaunch, "show: what qorvel -a FILE::SECTION gives the JVM on this machine"},
};

constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();

struct CommandRow {
    const char* name;
    unsigned options;  // the Option bits it takes
    const char* operands;
    std::size_t min_operands, max_operands;
    const char* summary;
    int (*run)(Invocation&);
};
constexpr CommandRow kCommands[] = {
    {"sections", kLines, "FILE [PREFIX]", 1, 2, "section names in file order", run_sections},
    {"show", kRaw | kLaunch, "FILE SECTION", 2, 2,
     "every key SECTION sees through its levels, with the level and line it comes from", run_show},
    {"get", kRaw, "FILE SECTION KEY", 3, 3, "the resolved value alone", run_get},
    {"diff", kRaw, "FILE1 SECTION1 [FILE2] SECTION2", 3, 4,
     "the keys whose resolved values differ between two sections", run_diff},
    {"check", 0, "FILE...", 1, kAny, "findings as file:line: error|warning: message", run_check},
    {"service", 0, "KIND FILE [NAME...]", 2, kAny, "a record read by the library's reader for KIND",
     run_service},
};

void print_help() {
    std::cout << "Usage: qorvel-props [--json] COMMAND [OPTION...] OPERAND...\n\n";
    for (const CommandRow& command : kCommands) {
        std::string line = std::string("  ") + command.name;
        for (const OptionRow& option : kOptions) {
            if (command.options & option.bit) line += std::string(" [") + option.word + "]";
        }
        std::cout << line << ' ' << command.operands << "\n      " << command.summary << '\n';
    }
    std::cout
        << "\nOptions:\n  --json      one JSON object on standard output (see qorvel-props(1))\n";
    for (const OptionRow& option : kOptions) {
        std::cout << "  " << option.word << std::string(12 - std::string(option.word).size(), ' ')
                  << option.meaning << '\n';
    }
    std::cout << "  -h, --help  this text; --version: the version; --: the end of options\n"
              << "\nService kinds:\n"
              << service_kinds();
}

const OptionRow* find_option(const std::string& word) {
    for (const OptionRow& option : kOptions) {
        if (word == option.word) return &option;
    }
    return nullptr;
}

const CommandRow* find_command(const std::string& name) {
    for (const CommandRow& command : kCommands) {
        if (name == command.name) return &command;
    }
    return nullptr;
}

// An option named by its word in `options` (a set of Option bits).
std::string option_word(unsigned options) {
    for (const OptionRow& option : kOptions) {
        if (options & option.bit) return option.word;
    }
    return "";
}

// Sorts the words into options and operands; -1 when the run is complete
// (help, version, or a usage error already reported), else 0.
int parse(int argc, char** argv, Invocation& c) {
    bool options_end = false;
    for (int i = 1; i < argc; ++i) {
        std::string word = argv[i];
        if (options_end || word.size() < 2 || word[0] != '-') {
            c.operands.push_back(word);
        } else if (word == "--") {
            options_end = true;
        } else if (word == "-h" || word == "--help") {
            print_help();
            return -1;
        } else if (word == "--version") {
            std::cout << "qorvel-props " << QORVEL_VERSION << '\n';
            return -1;
        } else if (word == "--json") {
            c.json = true;
        } else if (const OptionRow* option = find_option(word)) {
            c.options |= option->bit;
        } else {
            c.fail("unknown option " + word + " (see --help)");
            return -1;
        }
    }
    return 0;
}

}  // namespace

int dispatch(int argc, char** argv, Invocation& c) {
    // Known before parsing, so that even a usage error is a JSON document.
    for (int i = 1; i < argc && std::string(argv[i]) != "--"; ++i) {
        c.json = c.json || std::string(argv[i]) == "--json";
    }
    if (parse(argc, argv, c) != 0) return c.doc.contains("error") ? kFailure : kSuccess;
    if (c.operands.empty()) return c.fail("no command (see --help)");
    const CommandRow* command = find_command(c.operands.front());
    if (!command) return c.fail("unknown command " + c.operands.front() + " (see --help)");
    c.operands.erase(c.operands.begin());
    if (unsigned stray = c.options & ~command->options; stray != 0) {
        return c.fail(std::string(command->name) + " takes no " + option_word(stray) +
                      " (see --help)");
    }
    std::size_t count = c.operands.size();
    if (count < command->min_operands || count > command->max_operands) {
        return c.fail(std::string("usage: qorvel-props ") + command->name + ' ' +
                      command->operands);
    }
    return command->run(c);
}

}  // namespace props
