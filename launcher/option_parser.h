// The launcher's own option parser, run once per launch over the whole command
// line; everything after it reads its result instead of parsing again.
#pragma once

#include <cstddef>
#include <vector>

#include "launcher/options.h"

namespace qorvel {

enum class OptionFault {
    kNone,
    kIllegal,       // a letter that is no option
    kMissingValue,  // an option that needs a value got none
    kUnknownLong,   // "--word" that is no long option as written
    kSilent,        // ':' names no option but has always been taken without a message
};

// One option as found, in command-line order.
struct OptionUse {
    const OptionRow* row = nullptr;  // nullptr for a fault
    OptionFault fault = OptionFault::kNone;
    int word = 0;              // argv index of the option's letter or long name
    char letter = '\0';        // the letter as found
    int value_word = -1;       // argv index of the value, -1 without one
    std::size_t value_at = 0;  // where the value starts within that word
};

// Options come first; the first word that is not one begins the command. Letters
// may be grouped ("-ds"); a value may be attached ("-cfoo") or the next word,
// but a word beginning with '-' is never taken as a value. "--" ends the
// options, as does a '-' inside a group (the rest of that word is ignored and
// the next word begins the command); a lone "-" is skipped. "--name",
// "--name=value" or "--name value" is a long option where a group could start.
class OptionParser {
  public:
    OptionParser(int argc, char* const* argv);

    const std::vector<OptionUse>& uses() const { return uses_; }
    int command() const { return command_; }  // argv index of the command, or argc

    // The value of `use` within argv (which may by now hold copies of the words).
    static char* value(const OptionUse& use, char* const* argv);

  private:
    int scan_group(int word);  // both return the index of the next word to scan
    int scan_long(int word);
    void add(const OptionRow* row, OptionFault fault, int word, char letter, int value_word = -1,
             std::size_t value_at = 0);

    int argc_;
    char* const* argv_;
    bool ended_ = false;  // a '-' letter or "--" ended the options
    std::vector<OptionUse> uses_;
    int command_;
};

}  // namespace qorvel
