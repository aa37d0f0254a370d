#include "launcher/option_parser.h"

#include <string_view>

namespace qorvel {

OptionParser::OptionParser(int argc, char* const* argv) : argc_(argc), argv_(argv) {
    int word = 1;
    while (word < argc && !ended_ && argv[word][0] == '-') {
        const char* arg = argv[word];
        word = arg[1] == '-' && arg[2] != '\0' ? scan_long(word) : scan_group(word);
    }
    command_ = word < argc ? word : argc;
}

char* OptionParser::value(const OptionUse& use, char* const* argv) {
    return use.value_word < 0 ? nullptr : argv[use.value_word] + use.value_at;
}

void OptionParser::add(const OptionRow* row, OptionFault fault, int word, char letter,
                       int value_word, std::size_t value_at) {
    uses_.push_back({row, fault, word, letter, value_word, value_at});
}

int OptionParser::scan_group(int word) {
    const char* arg = argv_[word];
    for (std::size_t at = 1; arg[at] != '\0'; ++at) {
        char letter = arg[at];
        if (letter == '-') {
            ended_ = true;
            break;
        }
        const OptionRow* row = find_letter(letter);
        if (!row) {
            add(nullptr, letter == ':' ? OptionFault::kSilent : OptionFault::kIllegal, word,
                letter);
        } else if (!row->takes_value) {
            add(row, OptionFault::kNone, word, letter);
        } else if (arg[at + 1] != '\0') {
            add(row, OptionFault::kNone, word, letter, word, at + 1);
            break;
        } else if (word + 1 < argc_ && argv_[word + 1][0] != '-') {
            add(row, OptionFault::kNone, word, letter, word + 1);
            return word + 2;
        } else {
            add(nullptr, OptionFault::kMissingValue, word, letter);
        }
    }
    return word + 1;
}

// A value after '=' or, as for a letter, the next word when it does not begin
// with '-'. An empty value after '=', or one for an option that takes none,
// makes the word a bad option as a whole.
int OptionParser::scan_long(int word) {
    std::string_view text = argv_[word] + 2;
    std::size_t equals = text.find('=');
    const OptionRow* row = find_long(text.substr(0, equals));
    bool attached = equals != std::string_view::npos;
    if (!row || (attached && (!row->takes_value || equals + 1 == text.size()))) {
        add(nullptr, OptionFault::kUnknownLong, word, '\0');
    } else if (attached) {
        add(row, OptionFault::kNone, word, '\0', word, 2 + equals + 1);
    } else if (!row->takes_value) {
        add(row, OptionFault::kNone, word, '\0');
    } else if (word + 1 < argc_ && argv_[word + 1][0] != '-') {
        add(row, OptionFault::kNone, word, '\0', word + 1);
        return word + 2;
    } else {
        add(nullptr, OptionFault::kMissingValue, word, '\0');
    }
    return word + 1;
}

}  // namespace qorvel
