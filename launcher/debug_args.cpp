#include "launcher/debug_args.h"

#include <string.h>

#include <cstring>
#include <string_view>
#include <vector>

#include "launcher/console.h"
#include "launcher/getopt.h"
#include "launcher/settings.h"
#include "launcher/user_spec.h"

namespace qorvel {
namespace {

int count_words(char** argv) {
    int argc = 0;
    while (argv[argc]) ++argc;
    return argc;
}

// For each word, the offset at which a -u value starts within it, or npos.
// The real parser finds them, so attached values ("-ualice:...") and values
// inside groups ("-du alice:...") are masked as reliably as separate ones.
std::vector<std::size_t> find_identity_values(int argc, char** argv) {
    std::vector<std::size_t> starts(argc, std::string_view::npos);
    int saved_opterr = opt::opterr;
    opt::opterr = 0;
    opt::optind = 0;
    for (int c; (c = opt::getopt(argc, argv, opt::kOptionString)) != -1;) {
        // The parser leaves optind on the word that holds the value it returned.
        if (c == 'u')
            starts[opt::optind] = static_cast<std::size_t>(opt::optarg - argv[opt::optind]);
    }
    opt::opterr = saved_opterr;
    return starts;
}

}  // namespace

void setDebug(int argc, char** argv) {
    for (int i = 0; i < argc && argv[i]; ++i) {
        if (std::strcmp(argv[i], "-g") == 0) {
            settings.fDebug = 1;
            return;
        }
    }
}

const char* getLogFileName(int argc, char** argv) {
    opt::optind = 0;
    for (int c; (c = opt::getopt(argc, argv, opt::kOptionString)) != -1;) {
        if (c == 'l') return opt::optarg;
    }
    return kDefaultLogName;
}

void hide_passwords(int argc, char** argv) {
    std::vector<std::size_t> value_starts = find_identity_values(argc, argv);
    for (int i = 0; i < argc; ++i) {
        if (value_starts[i] == std::string_view::npos) continue;
        // The scan reads the copy; what the system shows of our arguments is
        // the original, masked.
        char* copy = strdup(argv[i]);
        if (!copy) continue;
        mask_password(argv[i] + value_starts[i]);
        argv[i] = copy;
    }
}

void dump_argv(char** argv) {
    int argc = count_words(argv);
    std::vector<std::size_t> value_starts = find_identity_values(argc, argv);
    bool after_u = false;  // the previous word was shown as exactly "-u"
    for (int i = 0; i < argc; ++i) {
        std::string_view word = argv[i];
        std::size_t masked_from = after_u ? 0 : value_starts[i];
        if (masked_from == std::string_view::npos) {
            trace("arg[%d] = (%s)\n", i, argv[i]);
        } else {
            trace("arg[%d] = (%.*s%s)\n", i, static_cast<int>(masked_from), argv[i], kIdentityMask);
        }
        after_u = masked_from == std::string_view::npos && word == "-u";
    }
}

}  // namespace qorvel
