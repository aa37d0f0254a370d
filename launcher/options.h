// The launcher's options, one row each: all the parser, the dispatch, --help,
// the usage lines, the masking of secrets and the debug-log dump know of one.
#pragma once

#include <span>
#include <string_view>

#include "launcher/settings.h"

namespace qorvel {

// A handler's result for a faulty option that ends nothing by itself: the
// scan goes on, and the launch ends with it after the scan.
inline constexpr int kBadOption = -8;

// Acts on one option with its value (nullptr for an option without one).
// Returns 0, kBadOption, or a code that ends the launch at once.
using OptionHandler = int (*)(LaunchSettings& launch, char* value);

struct OptionRow {
    char letter;            // the short option, or '\0' for a long one
    std::string_view name;  // the long option's name (--name), or empty
    bool takes_value;       // "-c value", "-cvalue", "--name=value" or "--name value"
    OptionHandler handler;
    std::string_view synopsis;  // --help: the option as written
    std::string_view help;      // --help: what it does
    int usage_rank;             // place in the usage line, from 1; 0: not there
    std::string_view usage;     // the option as the usage line writes it
    void (*mask)(char* value);  // hides a secret value in argv; nullptr for none
};

// Every option, in the order --help lists them.
std::span<const OptionRow> option_rows();

// The row of a short or a long option, or nullptr.
const OptionRow* find_letter(char letter);
const OptionRow* find_long(std::string_view name);

}  // namespace qorvel
