// The launcher's own option parser. It lives in its own namespace so that its
// state never clashes with the C library's getopt, optind and optarg.
#pragma once

namespace qorvel::opt {

inline constexpr const char* kOptionString = "dsgu:w:c:o:e:m:0:1:2:l:a:x:r:";

extern int optind;    // argv index being examined; 0 or less restarts the scan
extern char* optarg;  // argument of the option just returned, or the first command word
extern int opterr;    // non-zero: report faulty options on standard error

// What getopt returns for a "--name[=value]" word; optarg is then "name[=value]".
inline constexpr int kLongOption = 1;

// Next option letter, kLongOption, '?' for a faulty option, -1 at the end of the options.
// Afterwards optind indexes the first word of the command, or equals argc.
int getopt(int argc, char* const argv[], const char* optstring);

}  // namespace qorvel::opt
