#include "launcher/option_loop.h"

#include <cerrno>
#include <cstdio>

#include "launcher/console.h"

namespace qorvel {
namespace {

// The parser's messages go to standard error directly, in every mode.
void report_fault(const OptionUse& use, char** argv) {
    switch (use.fault) {
        case OptionFault::kIllegal:
            std::fprintf(stderr, "%s: illegal option -- %c\n", argv[0], use.letter);
            break;
        case OptionFault::kMissingValue:
            if (use.letter == '\0') {
                std::fprintf(stderr, "%s: option '%s' requires an argument\n", argv[0],
                             argv[use.word]);
            } else {
                std::fprintf(stderr, "%s: option requires an argument -- %c\n", argv[0],
                             use.letter);
            }
            break;
        case OptionFault::kUnknownLong:
            std::fprintf(stderr, "%s: unrecognized option '%s'\n", argv[0], argv[use.word]);
            break;
        case OptionFault::kSilent:
        case OptionFault::kNone:
            break;
    }
}

}  // namespace

int scan_options(const OptionParser& parser, char** argv, LaunchSettings& launch) {
    trace("FCN: processConfig() - process Configuration/Startup options.\n");
    bool bad = false;
    for (const OptionUse& use : parser.uses()) {
        int rc = kBadOption;
        if (use.row) {
            rc = use.row->handler(launch, OptionParser::value(use, argv));
        } else {
            report_fault(use, argv);
        }
        // A faulty option shows every later failure, whatever -m said before it.
        if (rc == kBadOption) {
            console.verbose = true;
            bad = true;
        } else if (rc != 0) {
            return rc;
        }
    }
    return bad ? kBadOption : 0;
}

}  // namespace qorvel
