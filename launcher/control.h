// --stop and --status: the pid file's process signalled, or its state told,
// instead of a launch.
#pragma once

#include "launcher/option_parser.h"
#include "launcher/settings.h"

namespace qorvel {

// LSB status codes of --status.
inline constexpr int kStatusRunning = 0;
inline constexpr int kStatusStale = 1;  // the file names no live process
inline constexpr int kStatusNoFile = 3;
inline constexpr int kStatusUnknown = 4;  // the file cannot be read
inline constexpr int kStopFailed = 1;

// The number of the signal `name` names as `kill -l` lists it, with or
// without "SIG", in any case ("TERM", "sigusr1", "RTMIN+2"), or 0.
int signal_number(const char* name);

// After the scan: --stop and --status need --pidfile and take no other option
// (--stop also --timeout and --signal) and no command; --timeout and --signal
// need --stop. Returns 0, or kBadOption with a message on standard error.
int check_control_options(const OptionParser& parser, int argc, char* const* argv,
                          const LaunchSettings& launch);

// Runs --stop or --status on launch.pidfile. --stop: sends launch.stopSignal
// to the file's process (its group when it leads one), waits up to
// launch.stopTimeout seconds for it to end, then sends KILL and waits again
// (at least a second); returns 0 once it ended or when nothing ran, else
// kStopFailed. --status: prints the state on standard output and returns its
// LSB code.
int run_control(const LaunchSettings& launch);

}  // namespace qorvel
