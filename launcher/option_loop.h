// The option loop: turns the command-line options into the launch settings.
#pragma once

namespace qorvel {

// Result codes of the option scan (process exit status in its low eight bits).
inline constexpr int kClasspathFailed = -2;
inline constexpr int kWorkDirFailed = -3;
inline constexpr int kUserFormat = -4;
inline constexpr int kNoMemory = -6;
inline constexpr int kBadOption = -8;
inline constexpr int kRedirectFailed = -12;

// Scans every option in command-line order. Returns 0 when all were accepted,
// the code of the first failing option, or kBadOption after the whole scan
// when some option was faulty. Afterwards opt::optind indexes the command.
int scan_options(int argc, char** argv);

}  // namespace qorvel
