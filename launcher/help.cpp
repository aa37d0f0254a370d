#include "launcher/help.h"

#include <cstdio>
#include <cstring>

namespace qorvel {
namespace {

constexpr const char* kHelp =
    "Use qorvel to setup a working environment prior to invoking the JVM\n"
    "\n"
    "Usage: qorvel [options] program [program arguments]\n"
    "\n"
    "  -c classpath            set CLASSPATH (environment references expanded)\n"
    "  -w directory            working directory of the JVM\n"
    "  -e count                read up to 60 NAME=value lines from standard input\n"
    "  -0 file                 file that becomes standard input\n"
    "  -1 file[::append]       file that becomes standard output (appended to after ::)\n"
    "  -2 file[::append]       file that becomes standard error (appended to after ::)\n"
    "  -o stderr|stdout|other  console: plain on stderr, tagged on stdout, or none\n"
    "  -m silent|verbose       hide or show progress and failure messages\n"
    "  -u user:group:password  identity of the daemon child\n"
    "  -d                      start the JVM in a detached daemon child\n"
    "  -s                      with -d, wait for the child and exit with its status\n"
    "  -r mask                 octal file-creation mask of the daemon child (default: inherited)\n"
    "  -a file::section        class path, JVM options and policy file from a section\n"
    "  -x file::section        like -a, with the class path put into CLASSPATH\n"
    "  -g                      append a debug log\n"
    "  -l file                 name of the debug log (default qorvel.log)\n"
    "  --pidfile=FILE          write the id of the process that becomes the JVM to FILE\n"
    "  --password-file=FILE    take the -u password from the first line of FILE\n"
    "  --dry-run               check as the start would, print what it would use, start nothing\n"
    "  --no-password-check     as root, switch to -u's user without its password\n"
    "  --help, --version       this text, or the version\n";

}  // namespace

bool answer_help(const char* word) {
    if (std::strcmp(word, "--help") == 0) {
        std::fputs(kHelp, stdout);
    } else if (std::strcmp(word, "--version") == 0) {
        std::printf("qorvel %s\n", QORVEL_VERSION);
    } else {
        return false;
    }
    return true;
}

}  // namespace qorvel
