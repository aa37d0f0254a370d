#include "launcher/debug_args.h"

#include <string.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "launcher/console.h"

namespace qorvel {
namespace {

int count_words(char** argv) {
    int argc = 0;
    while (argv[argc]) ++argc;
    return argc;
}

// For each word, the offset at which a secret value starts within it, or npos.
// The parser finds them, so attached values ("-ualice:...") and values inside
// groups ("-du alice:...") are masked as reliably as separate ones.
std::vector<std::size_t> secret_values(const OptionParser& parser, int argc) {
    std::vector<std::size_t> starts(static_cast<std::size_t>(argc), std::string_view::npos);
    for (const OptionUse& use : parser.uses()) {
        if (use.row && use.row->mask && use.value_word >= 0) starts[use.value_word] = use.value_at;
    }
    return starts;
}

// A word that is exactly a secret option's letter ("-u"): the word after it is
// masked even when the parser did not take it as the value.
bool names_secret_option(std::string_view word) {
    const OptionRow* row = word.size() == 2 && word[0] == '-' ? find_letter(word[1]) : nullptr;
    return row && row->mask;
}

}  // namespace

void setDebug(int argc, char** argv) {
    for (int i = 0; i < argc && argv[i]; ++i) {
        if (std::strcmp(argv[i], "-g") == 0) {
            console.fDebug = 1;
            return;
        }
    }
}

const char* getLogFileName(const OptionParser& parser, char** argv) {
    for (const OptionUse& use : parser.uses()) {
        if (use.row && use.row->letter == 'l') return OptionParser::value(use, argv);
    }
    return kDefaultLogName;
}

void hide_passwords(const OptionParser& parser, char** argv) {
    for (const OptionUse& use : parser.uses()) {
        if (!use.row || !use.row->mask || use.value_word < 0) continue;
        // The scan reads the copy; what the system shows of our arguments is
        // the original, masked.
        char* word = argv[use.value_word];
        char* copy = strdup(word);
        if (!copy) continue;
        use.row->mask(word + use.value_at);
        argv[use.value_word] = copy;
    }
}

void dump_argv(const OptionParser& parser, char** argv) {
    int argc = count_words(argv);
    std::vector<std::size_t> value_starts = secret_values(parser, argc);
    bool after_secret = false;  // the previous word was shown as exactly "-u"
    for (int i = 0; i < argc; ++i) {
        std::size_t masked_from = after_secret ? 0 : value_starts[static_cast<std::size_t>(i)];
        if (masked_from == std::string_view::npos) {
            trace("arg[%d] = (%s)\n", i, argv[i]);
        } else {
            trace("arg[%d] = (%.*s%s)\n", i, static_cast<int>(masked_from), argv[i], kIdentityMask);
        }
        after_secret = masked_from == std::string_view::npos && names_secret_option(argv[i]);
    }
}

}  // namespace qorvel
