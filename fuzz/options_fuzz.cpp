// Scans an arbitrary argument vector: the input's NUL-separated words follow
// the program name.
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "launcher/console.h"
#include "launcher/option_loop.h"
#include "launcher/option_parser.h"
#include "util/bounded_text.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // -e reads standard input; give it an end of input, never a terminal.
    if (!std::freopen("/dev/null", "r", stdin)) return 1;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> words = {"qorvel"};
    for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
        end = input.find('\0', start);
        words.push_back(input.substr(start, end - start));
    }
    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);

    qorvel::console = qorvel::ConsoleState{};
    qorvel::bounded_copy(qorvel::console.outputDesc, "none");
    const qorvel::OptionParser parser(static_cast<int>(words.size()), argv.data());
    qorvel::LaunchSettings launch;
    qorvel::scan_options(parser, argv.data(), launch);
    return 0;
}
