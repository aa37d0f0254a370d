#include "launcher/process_config.h"

#include "launcher/console.h"
#include "launcher/getopt.h"
#include "launcher/option_loop.h"

namespace qorvel {

void usage() {
    outMessage(0, "Use qorvel to setup a working environment prior to invoking the JVM\n\n");
    outMessage(0,
               "Usage: qorvel -r umask -d -s -u [User:Group:Password] -w [Start in Directory] "
               "-c classpath -o [stdout|stderr] -e [envCount] -m [silent|verbose] "
               "-a [property-file::section] -x [property-file::section] -0 [stdin file] "
               "-1 [stdout file] -2 [stderr file] ...\n");
}

int processConfig(int argc, char** argv) {
    int rc = scan_options(argc, argv);
    if (rc == kBadOption) {
        trace("Bad option specified.\n");
        usage();
    }
    if (rc != 0) return rc;
    if (opt::optind >= argc) {
        report("Incomplete argument list. No action taken\n");
        return kNoCommand;
    }
    return 0;
}

}  // namespace qorvel
