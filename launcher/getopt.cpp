#include "launcher/getopt.h"

#include <cstdio>
#include <cstring>

namespace qorvel::opt {

int optind = 0;
char* optarg = nullptr;
int opterr = 1;

namespace {

std::size_t offset_in_group = 1;  // next letter within the current option group
int end_optind = 0;               // argument whose "-" letter ended the options
int last_optind = 0;              // optind when the previous call returned

constexpr int kEnd = -1;
constexpr int kNextWord = 0;  // no letter is 0: the scan goes on with the next word

bool is_option_group(const char* arg) {
    return arg[0] == '-' && (end_optind <= 0 || optind <= end_optind);
}

// "--name" or "--name=value" where an option group could start; "--" alone
// still ends the options.
bool is_long_option(const char* arg) {
    return offset_in_group == 1 && is_option_group(arg) && arg[1] == '-' && arg[2] != '\0';
}

void next_argument() {
    ++optind;
    offset_in_group = 1;
}

void fault(const char* program, const char* text, char c) {
    if (opterr) std::fprintf(stderr, "%s: %s -- %c\n", program, text, c);
}

// Takes the next letter of the current group: the letter, '?', or kNextWord.
int scan_group(int argc, char* const argv[], const char* optstring) {
    char* arg = argv[optind];
    if (offset_in_group >= std::strlen(arg)) {
        next_argument();
        return kNextWord;
    }
    char* letter = arg + offset_in_group++;
    if (*letter == '-') {  // "--", or a '-' inside a group: the options end here
        end_optind = optind;
        next_argument();
        return kNextWord;
    }
    // A ':' is found in the option string like any letter and comes back as
    // itself; the option loop has no use for it and counts it as a bad option.
    const char* spec = std::strchr(optstring, *letter);
    if (!spec) {
        fault(argv[0], "illegal option", *letter);
        optarg = letter;
        return '?';
    }
    if (spec[1] != ':') return *letter;
    if (letter[1] != '\0') {  // argument attached to the letter
        optarg = letter + 1;
        offset_in_group = std::strlen(arg);
        return *letter;
    }
    ++optind;
    if (optind < argc && argv[optind][0] != '-') {
        optarg = argv[optind];
        return *letter;
    }
    fault(argv[0], "option requires an argument", *letter);
    optarg = letter;
    offset_in_group = 1;
    return '?';
}

}  // namespace

int getopt(int argc, char* const argv[], const char* optstring) {
    if (optind <= 0) {
        end_optind = 0;
        last_optind = 0;
        optind = 1;
    }
    if (optind != last_optind) offset_in_group = 1;
    optarg = nullptr;
    int result = kEnd;
    while (optind < argc) {
        if (is_long_option(argv[optind])) {
            optarg = argv[optind] + 2;
            next_argument();
            last_optind = 0;  // a long option takes no word after it: that word is scanned
            return kLongOption;
        }
        if (is_option_group(argv[optind])) {
            result = scan_group(argc, argv, optstring);
            if (result != kNextWord) break;
            result = kEnd;
        } else if (optind != last_optind) {
            optarg = argv[optind];  // the first word of the command
            break;
        } else {
            next_argument();  // the argument the previous call consumed
        }
    }
    last_optind = optind;
    return result;
}

}  // namespace qorvel::opt
